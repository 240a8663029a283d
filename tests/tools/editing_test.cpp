#include "support/testing.h"

#include <pdf/tools/editing.h>

#include <functional>

namespace {

using namespace Libraries::Files::PDF;
using namespace Support;

TEST(ParseValue, GivesOneValueOrSaysWhereItFails) {
    const std::pair<std::string_view, std::string_view> values[] = {
        {"12", "12.0"},     {" null ", "Null"},
        {"7 0 R", "7 (0)"}, {"% one\n -1.50 % two", "-1.50"},
        {"(a\\)b)", "a)b"}, {"<< /B [ 1 0 R true ] /A /N >>", "<< A -> N B -> [1 (0)true ] >>"},
    };
    for (const auto& [syntax, text] : values) {
        const AnyValue value = Tools::parseValue(syntax);
        EXPECT_EQ(textOf(value), text) << syntax;
        EXPECT_FALSE(value && value->changed()) << syntax;
    }
    const std::tuple<std::string_view, std::uint64_t, std::string_view> rows[] = {
        {"", 0, "there is no value"},
        {"% 1", 3, "there is no value"},
        {"1 2", 3, "there is more than one value"},
        {"1 ] [ 2", 2, "this bracket closes nothing"},
        {"1 ] ]", 2, "this bracket closes nothing"},
        {"]", 0, "this bracket closes nothing"},
        {"(abc", 4, "the text ends inside a value"},
        {"[ 1", 3, "the text ends inside a value"},
        {"<< /A 1", 7, "the text ends inside a value"},
        {"<41", 3, "the text ends inside a value"},
        {"[ 1 foo 2 ]", 4, "this word is no value"},
        {"12x", 0, "this word is no value"},
        {"<< /A 0 R >>", 8, "this word is no value"},
        {"<< /A 1 >> stream", 11, "this word is no value"},
        {"<< /A 1 /B >>", 12, "what ends here is no value"},
        {"[ / ]", 2, "what ends here is no value"},
    };
    for (const auto& [syntax, offset, cause] : rows) {
        SyntaxError error;
        const RecordingLog log;
        expectFailure(Tools::parseValue(syntax, &error), InvalidArgument);
        EXPECT_EQ(error.offset, offset) << syntax;
        EXPECT_EQ(error.cause, cause) << syntax;
        EXPECT_NE(log.text().find(cause), std::string::npos) << syntax;
    }
    const RecordingLog log;
    const std::string deep = std::string(600, '[') + std::string(600, ']');
    expectFailure(Tools::parseValue(deep), InvalidArgument);
    expectFailure(Tools::as<Name>(Tools::parseValue("1")), UnexpectedKind);
}

TEST(Factories, MakeWhatFilesHold) {
    const auto made = Dictionary::create({{"Z", Null::create()},
                                          {"B", Boolean::create(true)},
                                          {"N", Number::create(-3, 25)},
                                          {"R", ObjectRef::create(7, 1)},
                                          {"S", String::create("caf\xC3\xA9")},
                                          {"N", Name::create("last")}});
    EXPECT_EQ(textOf(made), "<< B -> true N -> last R -> 7 (1) S -> caf\xC3\xA9 Z -> Null >>");
    EXPECT_FALSE(made->changed());
    Host::Error::set(OutOfRange);
    expectFailure(Dictionary::create({{"A", nullptr}}), OutOfRange);
    expectFailure(Dictionary::create({{"", Null::create()}}), InvalidArgument);
    expectFailure(made->find(""), InvalidArgument);
    EXPECT_TRUE(made->set("caf\xC3\xA9", Null::create()) && made->find("caf\xC3\xA9"));
}

TEST(Objects, ComeAndGoWithoutGaps) {
    // Number 5 is free: what is written could not be read with a gap there.
    std::string bytes = DocumentBuilder::minimal().object(5, "9").bytes();
    bytes.replace(bytes.rfind(" n"), 2, " f");
    const auto document = Support::open(bytes);
    ASSERT_TRUE(document);
    expectFailure(Tools::addObject(*document, nullptr), NullArgument);
    expectFailure(Tools::referenceTo(nullptr), NullArgument);
    expectFailure(Tools::addObject(*document, null()), InvalidArgument);
    expectFailure(Tools::addObject(*document, reference(1, 0)), InvalidArgument);
    EXPECT_FALSE(document->changed());
    const auto first = Tools::addObject(*document, number(6));
    const auto second = Tools::addObject(*document, name("Seven"));
    EXPECT_EQ(textOf(first) + textOf(second), "6 (0)7 (0)");
    EXPECT_TRUE(document->changed());

    const auto kept = document->getObject(first);
    EXPECT_TRUE(Tools::removeObject(*document, first));
    EXPECT_EQ(textOf(kept->value()), "6.0");
    EXPECT_EQ(textOf(valueOf(*document, 6)), "<< >>");
    EXPECT_FALSE(document->removeObject(kept)) << "it is none of the document any more";
    EXPECT_TRUE(Tools::removeObject(*document, second));
    EXPECT_EQ(textOf(Tools::addObject(*document, name("Again"))), "7 (0)");
    expectFailure(Tools::removeObject(*document, ObjectRef::create(8)), ObjectNotFound);

    const auto again = Support::open(write(*document));
    ASSERT_TRUE(again);
    EXPECT_EQ(textOf(valueOf(*again, 5)), "<< >>");
    EXPECT_EQ(textOf(valueOf(*again, 7)), "Again");
    EXPECT_FALSE(again->removeObject(document->getObjects()[0])) << "of another document";

    const auto other = Support::open(bytes);
    const std::string before = write(*other);
    const auto one = Tools::addObject(*other, number(6)), two = Tools::addObject(*other, number(7));
    EXPECT_TRUE(Tools::removeObject(*other, one) && Tools::removeObject(*other, two));
    EXPECT_EQ(write(*other), before) << "as if nothing had come";
}

TEST(Resolve, FollowsReferencesAndNoFurther) {
    const auto document = Support::open(DocumentBuilder::minimal().object(5, "(end)").bytes());
    EXPECT_EQ(textOf(Tools::resolve(*document, reference(5, 0))), "end");
    EXPECT_EQ(textOf(Tools::resolve(*document, number(1))), "1.0");
    expectFailure(Tools::resolve(*document, reference(6, 0)), ReferenceNotResolved);
    expectFailure(Tools::resolve(*document, document->trailer()->find("Absent")), KeyNotFound);
}

/// A document of one stream: object 5, with object 6 a number and 7 a page's Rotate.
Ref<Document> withStream(std::string_view entries, std::string_view data) {
    const std::string dict = "<< " + std::string(entries) + " >>\nstream\n";
    return Support::open(DocumentBuilder::minimal()
                             .object(5, dict + std::string(data) + "\nendstream")
                             .object(6, std::to_string(data.size()))
                             .object(7, "<< /Rotate 6 0 R >>")
                             .bytes());
}

TEST(SetStreamData, SetsLengthWhateverItWas) {
    const std::string zipped = deflated("old");
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"/Length 3", "old", "<< Length -> 5.0 >>"},
        {"/Length 6 0 R", "old", "<< Length -> 5.0 >>"},
        {"", "old", "<< Length -> 5.0 >>"},
        {"/Length /Wrong /K 1", "old", "<< K -> 1.0 Length -> 5.0 >>"},
        {"/Length 6 0 R /Filter /FlateDecode /DecodeParms << /Predictor 12 >>", zipped,
         "<< Filter -> FlateDecode Length -> " + std::to_string(deflated("fresh").size()) +
             ".0 >>"},
        {"/Length 3 /Filter /LZWDecode /F (file) /DL 9", "old", "<< Length -> 5.0 >>"},
        {"/Length 3 /Filter [ /FlateDecode ]", "old", "<< Length -> 5.0 >>"},
    };
    for (const auto& [entries, data, after] : rows) {
        const auto document = withStream(entries, data);
        ASSERT_TRUE(document) << entries;
        const auto stream = streamOf(*document, 5);
        EXPECT_TRUE(Tools::setStreamData(*document, stream, "fresh")) << entries;
        EXPECT_EQ(textOf(stream->dict()), after) << entries;
        EXPECT_TRUE(document->changed()) << entries;
        EXPECT_TRUE(document->setCompression(Compression::None));
        EXPECT_EQ(textOf(valueOf(*document, 6)), std::to_string(data.size()) + ".0") << entries;
        const auto again = Support::open(write(*document));
        ASSERT_TRUE(again) << entries;
        const auto bytes = Tools::decodedBytes(*again, streamOf(*again, 5));
        EXPECT_EQ(contentsOf(bytes), "fresh") << entries;
    }
    const auto document = withStream("/Length 3", "old");
    const auto bare = Host::make<StreamObj>(Ref<Dictionary>(), std::uint64_t{0});
    expectFailure(Tools::setStreamData(*document, bare, "x"), StreamDictionaryMissing);
    expectFailure(Tools::setStreamData(*document, nullptr, "x"), NullArgument);
}

TEST(MakeStream, StoresWhatItSays) {
    const auto document = Support::open(DocumentBuilder::minimal().bytes());
    const Bytes data = noise(70000);
    const auto entries = Dictionary::create({{"Type", name("XObject")}, {"Length", null()}});
    const auto plain = Tools::makeStream(*document, data, false, entries);
    const auto zipped = Tools::makeStream(*document, std::string(200000, 'a'), true);
    EXPECT_EQ(textOf(entries), "<< Length -> 70000.0 Type -> XObject >>");
    const auto again = Support::open(write(*document));
    ASSERT_TRUE(again);
    const auto first = Tools::decodedBytes(*again, streamOf(*again, plain->id()));
    EXPECT_EQ(contentsOf(first), std::string(data.begin(), data.end()));
    const auto second = streamOf(*again, zipped->id());
    EXPECT_EQ(second->compression(), Compression::FlateDecode);
    EXPECT_EQ(contentsOf(Tools::decodedBytes(*again, second)), std::string(200000, 'a'));
    expectFailure(Tools::decodedBytes(*again, second, 199999), OutOfRange);

    const std::string before = write(*document);
    for (const char* key : {"Filter", "DecodeParms", "F", "FFilter", "FDecodeParms"}) {
        for (const bool deflate : {false, true}) {
            const auto coded = Dictionary::create({{key, name("DCTDecode")}});
            expectFailure(Tools::makeStream(*document, data, deflate, coded), InvalidArgument);
            EXPECT_EQ(textOf(coded), "<< " + std::string(key) + " -> DCTDecode >>");
        }
    }
    EXPECT_EQ(write(*document), before);
    EXPECT_TRUE(
        Tools::makeStream(*document, data, false, Dictionary::create({{"Filter", null()}})));
}

TEST(DecodedBytes, AreDecodedWhateverWasDoneBefore) {
    const std::string zipped = deflated("data");
    const std::string length = "/Length " + std::to_string(zipped.size());
    const std::pair<const char*, std::function<void(Document&)>> befores[] = {
        {"nothing", [](Document&) {}},
        {"cached", [](Document& document) { EXPECT_TRUE(document.cacheStreamData()); }},
        {"read",
         [](Document& document) {
             EXPECT_TRUE(document.readStreamData(streamOf(document, 5), false));
         }},
        {"plain",
         [](Document& document) { EXPECT_TRUE(document.setCompression(Compression::None)); }},
        {"decoded before",
         [](Document& document) {
             EXPECT_TRUE(Tools::decodedBytes(document, streamOf(document, 5)));
         }},
    };
    for (const auto& [name, before] : befores) {
        const auto document = withStream("/Filter /FlateDecode " + length, zipped);
        before(*document);
        const auto stream = streamOf(*document, 5);
        EXPECT_EQ(contentsOf(Tools::decodedBytes(*document, stream)), "data") << name;
        EXPECT_EQ(document->changed(), std::string_view(name) == "plain") << name;
    }
    const auto document = withStream("/Filter /FlateDecode " + length, zipped);
    EXPECT_TRUE(Tools::decodedBytes(*document, streamOf(*document, 5)));
    EXPECT_EQ(contentsOf(document->readStreamData(streamOf(*document, 5), true)), "data")
        << "nothing stays attached";

    const std::tuple<const char*, std::string, std::uint32_t> rows[] = {
        {"/Filter [ /FlateDecode ]", zipped, 0},
        {"/Filter [ ]", "data", 0},
        {"/Filter null", "data", 0},
        {"/Filter /FlateDecode /DecodeParms << /Predictor 1 >>", zipped, 0},
        {"/Filter /FlateDecode /DecodeParms << /Predictor 12 >>", zipped, FilterUnsupported},
        {"/Filter /LZWDecode", "data", FilterUnsupported},
        {"/Filter 12", "data", FilterUnsupported},
        {"/Filter [ /FlateDecode /FlateDecode ]", zipped, FilterUnsupported},
        {"/Filter /FlateDecode", "no zlib data", CodingFailed},
        {"/Filter /FlateDecode", zipped.substr(0, 6), CodingFailed},
    };
    for (const auto& [entries, data, code] : rows) {
        const auto row = withStream(entries + std::string(" /Length 6 0 R"), data);
        const auto bytes = Tools::decodedBytes(*row, streamOf(*row, 5));
        if (code == 0) {
            EXPECT_EQ(contentsOf(bytes), "data") << entries;
        } else {
            expectFailure(bytes, code);
        }
    }
    const auto cut = withStream("/Length 999999", "data");
    expectFailure(Tools::decodedBytes(*cut, streamOf(*cut, 5)), LengthInvalid);
    expectFailure(Tools::decodedBytes(*cut, nullptr), NullArgument);
}

} // namespace
