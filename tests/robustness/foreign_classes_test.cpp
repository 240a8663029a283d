// Values of classes that an application made itself, sound ones and ones that break their promises.

#include "compose/background_streams.h"
#include "compose/contents.h"
#include "compose/resources.h"
#include "document/document_obj.h"
#include "support/testing.h"
#include "writer/serializer.h"

namespace {

using namespace Support;
using Text = Ref<Host::String>;

using Keys = Ref<Host::TVector<Text>>;

constexpr std::uint32_t unsettable = 4711;

/// Has these keys, and under all but Filter the same value. Nothing can be set.
class OwnDictionary final : public Foreign<Dictionary> {
public:
    OwnDictionary(Keys keys, AnyValue value)
        : Foreign(Type::Dictionary), keys_(std::move(keys)), value_(std::move(value)) {}

    [[nodiscard]] Keys keys() const noexcept override { return keys_; }
    [[nodiscard]] AnyValue find(const Text& key) const noexcept override {
        return key && key->equals("Filter") ? nullptr : value_;
    }
    bool set(Text, AnyValue) noexcept override {
        Host::Error::set(unsettable);
        return false;
    }

private:
    Keys keys_;
    AnyValue value_;
};

class OwnNumber final : public Foreign<Number> {
public:
    OwnNumber() : Foreign(Type::Number) {}
    [[nodiscard]] std::int64_t integer() const noexcept override { return 12; }
    [[nodiscard]] std::uint64_t fraction() const noexcept override { return 0; }
};

class OwnStream final : public Foreign<Stream> {
public:
    OwnStream() : Foreign(Type::Stream) {}
    [[nodiscard]] std::uint64_t strmOfs() const noexcept override { return noOffset; }
    [[nodiscard]] Ref<Dictionary> dict() const noexcept override { return nullptr; }
    [[nodiscard]] Compression compression() const noexcept override { return Compression::None; }
};

AnyValue ownDictionary(std::vector<Text> keys, AnyValue value) {
    return makeOrThrow<OwnDictionary>(makeOrThrow<Host::TVector<Text>>(std::move(keys)),
                                      std::move(value));
}

/// A small document with one more object, number 5.
Ref<Document> with(AnyValue value) {
    auto document = open(DocumentBuilder::minimal());
    auto& objects = dynamic_cast<DocumentObj&>(*document).state().objects;
    objects.append(5, 0, std::move(value));
    return document;
}

TEST(ForeignClasses, StreamsAreNotReencoded) {
    const auto stream = [](Ref<Dictionary> dict) {
        return makeOrThrow<StreamObj>(std::move(dict), stripeOf("abc"));
    };
    const struct {
        AnyValue value;
        std::string outcome;
        bool cached = false;
    } rows[] = {
        {foreign(7), failure(NoValue, "Failed to cast value of object 5h (5) to stream\n")},
        {makeOrThrow<OwnStream>(),
         failure(StreamObjectInvalid, "Failed to cast Stream to StreamObj for 5h (5)\n")},
        {stream(dictionary({{"Length", makeOrThrow<OwnNumber>()}})),
         failure(StreamObjectInvalid,
                 "Failed to cast Length number to LengthObj for stream 5h (5)\n"),
         true},
        // Undoing the change sets a code as well.
        {stream(castTo<Dictionary>(ownDictionary({"Length"_str}, number(3)))),
         failure(FilterNotUpdated, "Failed to update Filter in dictionary of stream 5h (5)\n"),
         true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.outcome);
        const auto document = with(row.value);
        EXPECT_EQ(outcomeOf([&] { return document->setCompression(Compression::FlateDecode); }),
                  row.outcome);
        EXPECT_EQ(document->changed(), row.value->changed());
        EXPECT_EQ(outcomeOf([&] { return document->cacheStreamData(); }),
                  row.cached ? ""
                             : failure(StepFailed, "Failed to cast to stream object: 5 (0)\n"));
    }
}

/// A name without characters, as no file has one.
class OwnName final : public Foreign<Name> {
public:
    OwnName() : Foreign(Type::Name) {}
    [[nodiscard]] Text name() const noexcept override { return nullptr; }
};

using Rows = std::initializer_list<std::pair<AnyValue, std::string>>;

/// Expects that a step fails with each of the values: with this code and the message.
template <class Step>
void expectFailures(std::uint32_t code, Step step, Rows rows) {
    for (const auto& [value, message] : rows) {
        const AnyValue& given = value;
        EXPECT_EQ(outcomeOf([&] { return bool(step(given)); }), failure(code, message));
    }
}

/// A document with objects that claim a kind, 6 to 8, and object 5 without a value.
struct Odd {
    Odd() {
        for (const std::uint32_t type : {6U, 7U, 8U})
            state.objects.append(type, 0, foreign(type));
    }
    Ref<Document> document = with(nullptr);
    DocumentState& state = dynamic_cast<DocumentObj&>(*document).state();
    Cloner cloner{dynamic_cast<DocumentObj&>(*document)};
};

const AnyValue keyless = makeOrThrow<OwnDictionary>(nullptr, nullptr);
const AnyValue nullKey = ownDictionary({nullptr}, null());
const AnyValue nullValue = ownDictionary({"K"_str}, nullptr);
const AnyValue unset = ownDictionary({}, array({}));
Ref<Dictionary> under(const char* key, const AnyValue& value) {
    const auto whole = Host::cast<OwnDictionary>(value);
    return whole ? Ref<Dictionary>(whole) : dictionary({{key, value}});
}

TEST(ForeignClasses, SoundOnesAreTakenLikeOurOwn) {
    Odd odd;
    const AnyValue own = ownDictionary({"K"_str, text("\u4E2D")}, number(1));
    const auto document = with(own);
    EXPECT_NE(write(*document).find("<< /K 1 /- 1 >>"), std::string::npos) << "cut to 8 bits";
    EXPECT_EQ(textOf(odd.cloner.cloneValue(own, document)), "<< K -> 1.0 \u4E2D -> 1.0 >>");
    const auto target = dictionary({});
    ResourceMerge merge(*odd.document, odd.cloner);
    EXPECT_TRUE(merge.merge(*target, *dictionary({{"Font", own}}), document));
    EXPECT_EQ(textOf(target), "<< Font -> << K -> 1.0 \u4E2D -> 1.0 >> >>");
}

TEST(ForeignClasses, FailTheStepThatMeetsThem) {
    const Odd odd;
    const auto& document = odd.document;
    const auto read = [&](const char* key, const AnyValue& value) {
        const auto dict = dictionary({{"Length", number(1)}, {key, value}});
        return document->readStreamData(makeOrThrow<StreamObj>(dict, std::uint64_t{1}), true);
    };
    const auto asDictionary = [&](const auto& value) { return document->valueAsDict(value); };
    expectFailures(BadReference, asDictionary,
                   {{foreign(5), "Failed to object reference value to ObjectRef\n"},
                    {foreign(6), "Failed to cast dictionary value to Dictionary\n"}});
    expectFailures(ObjectUnreadable, asDictionary,
                   {{reference(5, 0), "Value of resolved object is NULL\n"}});
    expectFailures(LengthInvalid, [&](const auto& value) { return read("Length", value); },
                   {{foreign(3), "Stream Length attribute is not a Number\n"},
                    {reference(5, 0), "Resolved Length object reference has no value\n"}});
    expectFailures(InvalidArgument,
                   [&](const auto& value) {
                       return document->writeStreamData(castTo<Stream>(value), stripeOf(""), true);
                   },
                   {{makeOrThrow<OwnStream>(), "Failed to cast Stream to StreamObj\n"}});
    EXPECT_EQ(outcomeOf([&] { return bool(read("Filter", makeOrThrow<OwnName>())); }),
              "Got filter entry, but no name\n");
    expectFailure(makeOrThrow<StringObj>(Text())->asText(), StepFailed);
}

TEST(ForeignClasses, AreNotCopied) {
    Odd odd;
    const auto clone = [&](const auto& value) {
        return odd.cloner.cloneValue(value, odd.document);
    };
    expectFailures(InvalidArgument, clone,
                   {{reference(5, 0), "To be cloned object has no value: 5 (0)\n"},
                    {makeOrThrow<StreamObj>(nullptr, stripeOf("")),
                     "Failed to retrieve to be cloned stream's dictionary\n"},
                    {keyless, "Failed to retrieve keys of the be cloned dictionary\n"},
                    {nullKey, "Key in to be cloned dictionary is NULL: 0h (0)\n"},
                    {nullValue, "Failed to retrieve value of key in to be cloned dictionary: K\n"},
                    {array({nullptr}), "Element of to be cloned array is NULL: 0h (0)\n"},
                    {makeOrThrow<StringObj>(Text()), "Invalid String value to be cloned\n"}});
    std::uint32_t type = 0;
    for (const std::string kind :
         {"name to Name", "boolean to Boolean", "number to Number", "string to String",
          "object reference to ObjectRef", "dictionary to Dictionary", "stream to Stream",
          "array to Array", "value to Null"})
        expectFailures(InvalidArgument, clone,
                       {{foreign(++type), "Failed to convert to be cloned " + kind + "\n"}});
}

TEST(ForeignClasses, AreNotWritten) {
    const auto write = [](const AnyValue& value) {
        const auto target = Host::MemoryStripe::create();
        Output output(*target);
        const DocumentState state;
        return Serializer(output, state).write(value);
    };
    expectFailures(InvalidArgument, write,
                   {{keyless, "Failed to retrieve keys of dictionary\n"},
                    {nullKey, "Failed to retrieve dictionary key 0h (0)\n"},
                    {nullValue, "Failed to retrieve value for dictionary key K\n"},
                    {makeOrThrow<OwnName>(), "Failed to cast name to Name\n"}});
}

TEST(ForeignClasses, ArePartsOfNoPage) {
    Odd odd;
    const auto collect = [&](const AnyValue& value) {
        ForeignPage page;
        page.dict = under("Contents", value);
        StreamTable table;
        return collectContents(*odd.document, page, table);
    };
    const auto replace = [&](const AnyValue& value) {
        SavedContents saved;
        return replacePageContents(under("Contents", value), {}, saved);
    };
    const std::string noValue = "Referenced content object of the page has no value";
    const std::string noStream = "Failed to cast content stream of foreign page to Stream";
    const std::string element = " element 0h (0)\n";
    expectFailures(
        ForeignPageInvalid, collect,
        {{foreign(8), "Failed to cast page content array to Array\n"},
         {array({nullptr}), "Content element 0h (0) of foreign page has unexpected type: 0h (0)\n"},
         {reference(5, 0), noValue + "\n"},
         {array({reference(5, 0)}), noValue + " in" + element},
         {reference(7, 0), noStream + "\n"},
         {array({reference(7, 0)}), noStream + " for" + element},
         {nullValue, "Failed to retrieve foreign page contents\n"}});
    expectFailures(PageInvalid, replace,
                   {{foreign(8), "Failed to cast contents array to Array\n"},
                    {array({nullptr}), "Contents element is NULL: 0h (0)\n"}});
    expectFailures(StepFailed, replace, {{unset, "Failed to set Contents entry\n"}});
    expectFailures(ObjectUnreadable,
                   [&](const auto& value) {
                       Ref<Dictionary> found;
                       return findResources(*under("Resources", value), *odd.document, found);
                   },
                   {{nullValue, "Failed to retrieve resources of dictionary\n"},
                    {foreign(6), "Failed to cast dictionary to Dictionary\n"},
                    {reference(99, 0), "Failed to retrieve resource object\n"},
                    {reference(6, 0), "Failed to cast value to Dictionary\n"
                                      "Failed to retrieve resource object dictionary\n"}});
}

TEST(ForeignClasses, AreNotMerged) {
    Odd odd;
    const auto merge = [&](const Ref<Dictionary>& target, const Ref<Dictionary>& added) {
        return ResourceMerge(*odd.document, odd.cloner).merge(*target, *added, odd.document);
    };
    const auto into = [&](const AnyValue& value) {
        return merge(under("Font", value), dictionary({}));
    };
    const auto from = [&](const AnyValue& value) {
        return merge(dictionary({}), under("Font", value));
    };
    const std::string failed = "Failed to cast value to Dictionary\nFailed to retrieve ";
    expectFailures(UnexpectedKind, into,
                   {{reference(6, 0), failed + "object dictionary of Font\n"},
                    {reference(8, 0), failed + "object array of Font\n"}});
    expectFailures(UnexpectedKind, from,
                   {{reference(6, 0), failed + "dictionary of object 6 (0)\n"},
                    {reference(8, 0), failed + "array of object 8 (0)\n"}});
    expectFailures(Host::NoError, into,
                   {{keyless, "Failed to retrieve keys of original resources\n"},
                    {nullKey, "Key or original resource is NULL: 0h (0)\n"},
                    {nullValue, "Key not available in original resources: K\n"}});
    expectFailures(Host::NoError, from,
                   {{keyless, "Failed to retrieve keys of resources to add\n"},
                    {nullKey, "Key of resources to add is NULL: 0h (0)\n"},
                    {nullValue, "Key not available in resources to add: K\n"}});
    const auto names = dictionary({{"Font", dictionary({{"A", number(1)}})}});
    const auto elements = dictionary({{"Font", array({number(1)})}});
    const auto within = [&](const AnyValue& value) {
        const bool list = value->type() == Value::Type::Array;
        return merge(dictionary({{"Font", value}}), list ? elements : names);
    };
    const auto adding = [&](const AnyValue& value) {
        return merge(dictionary({}), dictionary({{"Font", value}}));
    };
    expectFailures(
        Host::NoError, within,
        {{keyless, "Failed to retrieve keys of resource dictionary Font\n"},
         {nullKey, "Failed to retrieve resource key 0h (0) of resoure Font\n"},
         {array({nullptr}), "Array value 0h (0) is invalid of original resource Font\n"}});
    expectFailures(unsettable, within, {{nullValue, "Failed to add cloned value of A\n"}});
    expectFailures(
        Host::NoError, adding,
        {{keyless, "Failed to retrieve resource keys of resource to add Font\n"},
         {nullKey, "Failed to retrieve resource key\n"},
         {nullValue, "Failed to retrieve value of K of resource to add Font\n"},
         {array({nullptr}), "Array value 0h (0) is invalid of resource to add: Font\n"}});
    expectFailures(unsettable,
                   [&](const AnyValue& added) {
                       return merge(Host::cast<OwnDictionary>(unset), castTo<Dictionary>(added));
                   },
                   {{names, "Failed to add resource dictionary for Font\n"},
                    {elements, "Failed to add resource array for Font\n"}});
}

TEST(ForeignClasses, FormsRefuseThem) {
    const auto document = open(
        formFile("<< /Fields [ 10 0 R 11 0 R 12 0 R ] >>", {{10, "<< /FT /Tx /MaxLen 3 >>"},
                                                            {11, "<< /FT /Btn >>"},
                                                            {12, "<< /FT /Ch /Ff 2097152 >>"}}));
    const auto form = document->form();
    const auto acroForm = castTo<Dictionary>(valueOf(*document, 5));
    const std::tuple<const char*, std::uint32_t, const char*, bool (*)(const Form&)> entries[] = {
        {"NeedAppearances", 2, "Boolean", [](const Form& f) { return bool(f.needAppearances()); }},
        {"DA", 4, "String", [](const Form& f) { return bool(f.defaultAppearance()); }},
        {"DR", 6, "Dictionary", [](const Form& f) { return bool(f.defaultResources()); }},
        {"CO", 8, "Array", [](const Form& f) { return bool(f.calculationOrder()); }}};
    for (const auto& [key, type, kind, get] : entries) {
        ASSERT_TRUE(acroForm->set(text(key), foreign(type)));
        const RecordingLog log;
        EXPECT_FALSE(get(*form)) << key;
        EXPECT_EQ(log.text(), std::string("Failed to cast value to ") + kind + ": " + key + "\n");
    }
    const auto field = [&](std::uint64_t index) { return form->field(index); };
    EXPECT_EQ(outcomeOf([&] {
                  return Host::cast<Fields::Text>(field(0))->setValue(
                      makeOrThrow<StringObj>(Text()));
              }),
              failure(InvalidArgument));
    EXPECT_EQ(outcomeOf([&] {
                  return Host::cast<Fields::Button>(field(1))->setValue(makeOrThrow<OwnName>());
              }),
              failure(InvalidArgument));
    EXPECT_EQ(outcomeOf([&] { return Host::cast<Fields::Choice>(field(2))->setValue(foreign(8)); }),
              failure(InvalidArgument, "Failed to cast value to array for field: 2\n"));
}

} // namespace
