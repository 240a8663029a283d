#include "reader/scanner.h"
#include "support/testing.h"
#include "values/sub_stripe.h"

#include <map>

namespace {

using namespace Support;

AnyValue string(std::string_view utf8) {
    return String::create(text(utf8));
}

TEST(Scalar, HasATextForm) {
    const std::pair<AnyValue, const char*> rows[] = {
        {number(INT64_MIN, UINT64_MAX), "-9223372036854775808.18446744073709551615"},
        {reference(UINT32_MAX, 65535), "4294967295 (65535)"},
        {string("a\x7F\u00E9\U0001F600"), "a\x7F\u00E9\U0001F600"},
        {byteString({}), ""},
        {byteString({0xFE, 0xFF, 0x0A}), "FEFF0A"}, // an odd number of bytes
        {byteString({0x01, 0xAB}), "01AB"},         // no mark
        {byteString({0xFE, 0xFF}), ""},
        {byteString({0xFF, 0xFE, 'A', 0}), "A"},
        {byteString({0xFE, 0xFF, 0, 'A'}), "A"},
    };
    for (const auto& [value, expected] : rows)
        EXPECT_EQ(textOf(value), expected);
}

TEST(Scalar, IsMadeOfSomething) {
    expectFailure(String::create(Ref<Host::String>()), NullArgument);
    expectFailure(String::create(Ref<Host::TConstArray<unsigned char>>()), NullArgument);
    expectFailure(Name::create(nullptr), NullArgument);
    expectFailure(Name::create(""_str), InvalidArgument);
}

/// Values of which no two are equal, made anew at each call.
Ref<Array> differentValues() {
    const auto source = stripeOf("[ null true false 1 1.5 1.50 /A /a (A) (A ) <41> <4100> <> 5 0 R "
                                 "5 1 R 6 0 R [] [1] [1 2] [2 1] << >> << /A 1 >> << /A 2 >> "
                                 "<< /B 1 >> << /A 1 /B [null] >> ]");
    Host::Cursor cursor(*source);
    return castTo<Array>(scanValue(cursor));
}

TEST(Value, EqualsItsLikeAndNothingElse) {
    const Ref<Array> values = differentValues();
    const Ref<Array> others = differentValues();
    ASSERT_EQ(values->size(), 25U);
    for (std::uint64_t left = 0; left < values->size(); ++left) {
        const AnyValue value = values->get(left);
        for (std::uint64_t right = 0; right < others->size(); ++right)
            EXPECT_EQ(value->equal(others->get(right)), left == right) << left << ", " << right;
        EXPECT_FALSE(value->equal(nullptr)) << left;
        EXPECT_FALSE(value->equal(foreign(static_cast<std::uint32_t>(value->type())))) << left;
        EXPECT_FALSE(value->changed()) << left;
    }
}

TEST(Stream, KnowsItsPlaceAndItsChange) {
    const auto dict = dictionary({{"Length", number(12)}});
    const auto stream = makeOrThrow<StreamObj>(dict, std::uint64_t{1024});
    EXPECT_EQ(textOf(stream), "@1024 << Length -> 12.0 >>");
    const auto holder = dictionary({{"S", stream}});
    dict->set(text("A"), number(1));
    EXPECT_FALSE(stream->changed() || holder->changed()) << "its dictionary does not count";
    stream->strmData(stripeOf("new"));
    EXPECT_TRUE(stream->changed() && holder->changed());
}

TEST(Dictionary, HasKeysToWalkWithoutNamingThem) {
    std::string keys;
    for (const auto& key : dictionary({{"B", null()}, {"A", null()}})->keys())
        keys += key->narrow();
    for (const auto& key : Host::Ref<Host::TVector<Host::Ref<Host::String>>>())
        keys += key->narrow();
    EXPECT_EQ(keys, "AB");
}

TEST(SubStripe, ReadsItsRangeOnly) {
    for (const std::uint64_t start : {0U, 3U}) {
        const auto base = stripeOf("0123456789ABCDEF");
        const auto view = makeOrThrow<SubStripe>(base, start, 10U, Host::Mon::create());
        std::uint32_t elements[7] = {0, 0, 0, 0, 0, 0, 77}; // room for what is left, and a guard
        EXPECT_EQ(view->position(4), 4U);
        EXPECT_EQ(view->read(elements, start == 0 ? 100 : UINT64_MAX), 6U);
        EXPECT_EQ(elements[6], 77U);
        Host::Error::set(77);
        EXPECT_EQ(view->position(11), 10U);
        EXPECT_EQ(view->read(elements, 1), 0U);
        // The bound counts the start of the view in.
        EXPECT_EQ(Host::Error::get(), start == 0 ? std::uint32_t{OutOfRange} : 77U);
        EXPECT_EQ(contentsOf(view), start == 0 ? "0123456789" : "3456789ABC");
        const auto window = view->window(8);
        EXPECT_EQ(std::string(window.begin(), window.end()), start == 0 ? "89" : "BC");
        EXPECT_TRUE(view->window(10).empty());
        EXPECT_EQ(view->write(elements, 1) + view->writeBytes(nullptr, 0), 0U);
        EXPECT_EQ(Host::Error::get(), NotSupported);
        EXPECT_EQ(contentsOf(base), "0123456789ABCDEF") << start;
        EXPECT_EQ(view->read(elements, 0), 0U);
        expectFailure(view->read(nullptr, 1), InvalidArgument);
    }
}

TEST(SubStripe, SurvivesItsBase) {
    const auto base = Host::make<FailingStripe>(stripeOf("0123456789"));
    SubStripe view(base, 2, 6, Host::Mon::create());
    const RecordingLog log;
    std::uint32_t elements[6] = {};
    Host::Error::set(77);
    base->failAt(FailingStripe::Call::Seek, 1, FailingStripe::Fault::Misplaced);
    EXPECT_EQ(view.read(elements, 6), 0U);
    base->failAt(FailingStripe::Call::Read, 1, FailingStripe::Fault::Short);
    EXPECT_EQ(view.read(elements, 6), 3U);
    ASSERT_EQ(log.text(), "Read from base 3h (3) of requested 6h (6)\n");
    EXPECT_EQ(log.entries()[0].level, Host::LogLevel::Warning);
    EXPECT_EQ(Host::Error::get(), 77U);
    EXPECT_EQ(view.read(elements, 6), 3U);
    EXPECT_EQ(elements[0], std::uint32_t{'5'});
}

TEST(Errors, HaveATextWhateverTheCode) {
    EXPECT_STREQ(errorText(Host::NoError), "no error");
    EXPECT_STREQ(errorText(ForeignTreeInvalid), errorText(NoTrailer + 256));
    EXPECT_STREQ(errorText(NoTrailer + 512), "unknown error");
}

template <auto accessor>
AnyValue inArray(const AnyValue& value) {
    return (array({value}).get()->*accessor)(0);
}
template <class Interface>
using ByText = Ref<Interface> (Dictionary::*)(std::string_view, bool) const noexcept;
template <class Interface, ByText<Interface> accessor>
AnyValue inDictionary(const AnyValue& value) {
    return (dictionary({{"K", value}}).get()->*accessor)("K", true);
}
template <auto accessor>
AnyValue inObject(const AnyValue& value) {
    return (ObjectObj(1, 0, value).*accessor)();
}

TEST(TypedAccess, GivesItsKindAndNoOther) {
    const AnyValue string = String::create(text("s"));
    const AnyValue stream = makeOrThrow<StreamObj>(dictionary({}), std::uint64_t{9});
    const std::tuple<std::string, AnyValue, AnyValue (*)(const AnyValue&)> rows[] = {
        {"ObjectRef", reference(1, 0), inArray<&Array::getAsObjectRef>},
        {"Name", name("N"), inArray<&Array::getAsName>},
        {"String", string, inArray<&Array::getAsString>},
        {"ObjectRef", reference(1, 0), inDictionary<ObjectRef, &Dictionary::findAsObjectRef>},
        {"Array", array({}), inDictionary<Array, &Dictionary::findAsArray>},
        {"Dictionary", dictionary({}), inDictionary<Dictionary, &Dictionary::findAsDictionary>},
        {"Name", name("N"), inDictionary<Name, &Dictionary::findAsName>},
        {"Number", number(1), inDictionary<Number, &Dictionary::findAsNumber>},
        {"String", string, inDictionary<String, &Dictionary::findAsString>},
        {"Dictionary", dictionary({}), inObject<&Object::valueAsDictionary>},
        {"Dictionary", array({}), inObject<&Object::valueAsArray>}, // spelled so
        {"Stream", stream, inObject<&Object::valueAsStream>},
    };
    for (const auto& [kind, right, get] : rows) {
        const auto type = std::to_string(static_cast<std::uint32_t>(right->type()));
        const RecordingLog log;
        Host::Error::set(Host::NoError);
        EXPECT_EQ(get(right), right) << kind;
        EXPECT_FALSE(get(null()) || Host::Error::get() != UnexpectedKind) << kind;
        Host::Error::set(Host::NoError);
        EXPECT_FALSE(get(foreign(static_cast<std::uint32_t>(right->type())))) << kind;
        EXPECT_EQ(Host::Error::get(), UnexpectedKind) << kind;
        EXPECT_EQ(log.text(),
                  (right == stream ? "Unexpected type of value; expected = 7h (7), got = 9h (9)\n"
                                   : "Expected value of type " + type + "h (" + type +
                                         ")\n, but got one of type 9h (9)\n") +
                      "Failed to cast value to " + kind + "\n")
            << kind;
        EXPECT_EQ(log.entries()[0].level, Host::LogLevel::Error);
        EXPECT_EQ(log.entries()[0].filter, Host::SysLogFilter::id("PDF"));
    }
}

TEST(Array, LeavesTheCodeAloneBehindItsEnd) {
    const Ref<Array> values = array({number(1), nullptr, name("N")});
    EXPECT_EQ(textOf(values), "[1.0 nullN ]");
    EXPECT_FALSE(values->equal(values)) << "a null element equals nothing";
    const RecordingLog log;
    Host::Error::set(77);
    EXPECT_FALSE(values->get(3) || values->getAsName(1) || values->getAsString(18));
    EXPECT_EQ(Host::Error::get(), 77U);
    EXPECT_EQ(log.text(), "Index out of range in array: 1h (1)\n"
                          "Index out of range in array: 12h (18)\n");
    EXPECT_EQ(ObjectObj(12, 3, nullptr).valueType(), Value::Type::Invalid);
    EXPECT_EQ(Host::Error::get(), NoValue);
    expectFailure(values->add(nullptr), NullArgument);
    EXPECT_TRUE(values->add(foreign(3)) && values->size() == 4);
    EXPECT_FALSE(values->changed()) << "not even when an element is";
}

TEST(Dictionary, ReportsMissingKeysUnlessQuiet) {
    const std::tuple<Ref<Host::String>, std::uint32_t, const char*> rows[] = {
        {"Absent"_str, KeyNotFound, "Key not found in dictionary: Absent\n"},
        {nullptr, NullArgument, "Key not found in dictionary: \n"},
        {text(""), InvalidArgument, "Key not found in dictionary: \n"}};
    const auto dict = dictionary({{"K", null()}});
    for (const auto& [key, code, message] : rows) {
        const RecordingLog log;
        for (const bool quiet : {false, true}) {
            Host::Error::set(Host::NoError);
            EXPECT_FALSE(dict->findAsName(key, quiet)) << message;
            EXPECT_EQ(Host::Error::get(), code) << message;
        }
        EXPECT_EQ(log.text(), message) << "once";
        EXPECT_EQ(dict->set(key, nullptr), code == KeyNotFound) << message;
        EXPECT_EQ(Host::Error::get(), code) << message;
    }
}

TEST(Dictionary, KeepsTheLastOfEqualKeysInOrder) {
    std::uint32_t state = 1;
    for (const std::uint32_t size : {2U, 10U, 24U, 25U, 300U}) {
        std::map<std::string, std::uint32_t> last;
        DictionaryObj::Entries entries;
        const auto built = dictionary({});
        for (std::uint32_t index = 0; index < size; ++index) {
            state = state * 1664525U + 1013904223U;
            const std::uint32_t choice = (state >> 16) % (size * 2 / 3);
            const std::string key = (choice % 5 == 4 ? "\u4E2D" : "K") + std::to_string(choice);
            last[key] = index;
            entries.push_back({text(key), number(index)});
            built->set(text(key), number(index));
        }
        std::string expected = "<<";
        for (const auto& [key, index] : last)
            expected += " " + key + " -> " + std::to_string(index) + ".0";
        const auto dict = makeOrThrow<DictionaryObj>(std::move(entries));
        EXPECT_EQ(textOf(dict), expected + " >>") << size;
        EXPECT_EQ(textOf(built), expected + " >>") << size;
        EXPECT_FALSE(dict->changed());
        for (const auto& [key, index] : last)
            built->set(text(key), nullptr);
        EXPECT_EQ(textOf(built), "<< >>") << size;
    }
}

TEST(Dictionary, KnowsWhetherItChanged) {
    const auto inner = dictionary({});
    const auto listed = dictionary({});
    const auto outer = dictionary({{"A", array({listed})}, {"D", inner}});
    listed->set("X"_str, number(1));
    EXPECT_FALSE(outer->changed()) << "arrays do not report";
    inner->set("Absent"_str, nullptr);
    EXPECT_TRUE(outer->changed()) << "removing what is not there is a change";
}

TEST(Nesting, EndsAfter512Levels) {
    for (int repeat = 0; repeat < 2; ++repeat) { // a walk that failed leaves no trace
        EXPECT_TRUE(nested(512)->asText() && nested(512)->equal(nested(512)));
        expectFailure(nested(513)->asText(), StepFailed);
        EXPECT_FALSE(nested(513)->equal(nested(513)));
    }
    AnyValue chain = foreign(3); // which reports a change
    for (int depth = 1; depth <= 513; ++depth) {
        chain = dictionary({{"K", chain}});
        EXPECT_EQ(chain->changed(), depth <= 512) << depth;
    }
    const auto endless = dictionary({});
    endless->set("A"_str, endless);
    endless->set("B"_str, endless);
    EXPECT_FALSE(endless->asText() || endless->equal(endless));
    endless->set("B"_str, nullptr);
    endless->set("A"_str, nullptr);
}

} // namespace
