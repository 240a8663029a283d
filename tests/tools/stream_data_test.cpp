#include "support/results.h"

#include <functional>

namespace {

using namespace Support;
using Tools::Storing;

/// A document of one stream: object 5, with object 6 a number and 7 a page's Rotate.
Ref<Document> withStream(std::string_view entries, std::string_view data) {
    const std::string dict = "<< " + std::string(entries) + " >>\nstream\n";
    return open(DocumentBuilder::minimal()
                    .object(5, dict + std::string(data) + "\nendstream")
                    .object(6, std::to_string(data.size()))
                    .object(7, "<< /Rotate 6 0 R >>"));
}

TEST(SetStreamData, SetsLengthWhateverItWas) {
    const std::string zipped = deflated("old");
    const std::tuple<std::string, std::string, std::string> rows[] = {
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
        EXPECT_TRUE(Tools::setStreamData(document, stream, "fresh")) << entries;
        EXPECT_EQ(textOf(stream->dict()), after) << entries;
        EXPECT_TRUE(document->changed()) << entries;
        EXPECT_TRUE(document->setCompression(Compression::None));
        EXPECT_EQ(textOf(valueOf(*document, 6)), std::to_string(data.size()) + ".0") << entries;
        const auto again = open(write(*document));
        ASSERT_TRUE(again) << entries;
        EXPECT_EQ(decoded(again, streamOf(*again, 5)), "fresh") << entries;
    }
    const auto document = withStream("/Length 3", "old");
    const Ref<Stream> bare = Host::make<StreamObj>(Ref<Dictionary>(), std::uint64_t{0});
    const auto set = [&](const Ref<Stream>& stream) {
        return resultOf([&] { return Tools::setStreamData(document, stream, "x"); });
    };
    EXPECT_EQ(told(set(bare)), told(StreamDictionaryMissing, "The stream has no dictionary"));
    expectRefusal(set(nullptr), NullArgument);
}

TEST(AddStream, StoresWhatItSays) {
    const auto document = open(DocumentBuilder::minimal());
    const std::string data = noiseText(70000);
    const std::string zeros(200000, 'a'), jpeg = "\xFF\xD8\xFF\xE0 no zlib \r\n";
    const auto entries = Dictionary::create({{"Type", name("XObject")}, {"Length", null()}});
    const auto image = dictionary({{"Filter", name("DCTDecode")}, {"DecodeParms", null()}});
    const auto plain = Tools::addStream(document, data, Storing::Plain, entries).value();
    const auto zipped = Tools::addStream(document, zeros).value();
    const auto encoded = Tools::addEncodedStream(document, jpeg, image).value();
    const auto unfiltered = dictionary({{"Filter", null()}});
    EXPECT_TRUE(Tools::addStream(document, "", Storing::Plain, unfiltered));
    EXPECT_EQ(textOf(entries), "<< Length -> 70000.0 Type -> XObject >>");
    const auto again = open(write(*document));
    ASSERT_TRUE(again);
    EXPECT_EQ(decoded(again, valueOf(*again, plain->id())), data);
    const auto second = streamOf(*again, zipped->id()), third = streamOf(*again, encoded->id());
    EXPECT_EQ(second->compression(), Compression::FlateDecode);
    EXPECT_LT(second->dict()->findAsNumber("Length")->integer(), 2000);
    EXPECT_EQ(decoded(again, second), zeros);
    EXPECT_EQ(told(resultOf([&] { return Tools::decodedBytes(again, second, 199999); })),
              told(OutOfRange, "The stream holds more bytes than 199999"));
    EXPECT_EQ(textOf(third->dict()), "<< DecodeParms -> Null Filter -> DCTDecode Length -> " +
                                         std::to_string(jpeg.size()) + ".0 >>");
    EXPECT_EQ(contentsOf(again->readStreamData(third, false)), jpeg) << "byte by byte";
}

TEST(AddStream, RefusesEntriesThatSayOtherwise) {
    const char* const stored = "The entries of a stream to be added say how it is stored";
    const char* const unsaid = "The entries of an encoded stream have no Filter, or name a file";
    const auto document = open(DocumentBuilder::minimal());
    const std::string before = write(*document);
    const std::string filter = "/Filter /DCTDecode ";
    const std::tuple<bool, std::string> rows[] = {
        {false, filter},
        {false, "/DecodeParms << >>"},
        {false, "/F (file)"},
        {false, "/FFilter /A"},
        {false, "/FDecodeParms << >>"},
        {true, ""},
        {true, "/Filter null"},
        {true, "/DecodeParms << >>"},
        {true, filter + "/F (file)"},
        {true, filter + "/FFilter /A"},
        {true, filter + "/FDecodeParms << >>"},
    };
    for (const auto& [encoded, syntax] : rows) {
        const auto entries = castTo<Dictionary>(*Tools::parseValue("<< " + syntax + " >>"));
        const std::string given = textOf(entries);
        const auto added = resultOf([&, encoded = encoded] {
            return encoded ? Tools::addEncodedStream(document, "x", entries)
                           : Tools::addStream(document, "x", Storing::Deflated, entries);
        });
        EXPECT_EQ(told(added), told(InvalidArgument, encoded ? unsaid : stored)) << syntax;
        EXPECT_EQ(textOf(entries), given);
    }
    const auto none = resultOf([&] { return Tools::addEncodedStream(document, "x", nullptr); });
    expectRefusal(none, NullArgument);
    EXPECT_EQ(write(*document), before);
}

TEST(DecodedBytes, AreDecodedWhateverWasDoneBefore) {
    const std::string zipped = deflated("data");
    const std::string length = "/Length " + std::to_string(zipped.size());
    const std::pair<const char*, std::function<void(Document&)>> befores[] = {
        {"cached", [](Document& document) { EXPECT_TRUE(document.cacheStreamData()); }},
        {"read",
         [](Document& document) {
             EXPECT_TRUE(document.readStreamData(streamOf(document, 5), false));
         }},
        {"plain",
         [](Document& document) { EXPECT_TRUE(document.setCompression(Compression::None)); }},
    };
    for (const auto& [name, before] : befores) {
        const auto document = withStream("/Filter /FlateDecode " + length, zipped);
        before(*document);
        EXPECT_EQ(decoded(document, streamOf(*document, 5)), "data") << name;
        EXPECT_EQ(document->changed(), std::string_view(name) == "plain") << name;
    }
    const auto document = withStream("/Filter /FlateDecode " + length, zipped);
    const auto stream = streamOf(*document, 5);
    EXPECT_EQ(decoded(document, stream) + decoded(document, stream), "datadata");
    EXPECT_EQ(contentsOf(document->readStreamData(stream, true)), "data") << "nothing is attached";
}

TEST(DecodedBytes, KnowOneFilter) {
    const std::string zipped = deflated("data");
    const std::string unknown =
        told(FilterUnsupported,
             "The stream is stored neither plainly nor by FlateDecode without a predictor");
    const std::string damaged = told(CodingFailed, "Failed to inflate the data of a stream");
    const std::string predicted = "/Filter /FlateDecode /DecodeParms << /Predictor ";
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"/Filter [ /FlateDecode ]", zipped, "data"},
        {"/Filter [ ]", "data", "data"},
        {"/Filter null", "data", "data"},
        {predicted + "1 >>", zipped, "data"},
        {predicted + "12 >>", zipped, unknown},
        {"/Filter /LZWDecode", "data", unknown},
        {"/Filter 12", "data", unknown},
        {"/Filter [ /FlateDecode /FlateDecode ]", zipped, unknown},
        {"/Filter /FlateDecode", "no zlib data", damaged},
        {"/Filter /FlateDecode", zipped.substr(0, 6), damaged},
    };
    for (const auto& [entries, data, wanted] : rows) {
        const auto document = withStream(entries + " /Length 6 0 R", data);
        const Ref<Stream> stream = streamOf(*document, 5);
        const auto bytes = resultOf([&] { return Tools::decodedBytes(document, stream); });
        EXPECT_EQ(bytes ? contentsOf(*bytes) : told(bytes), wanted) << entries;
    }
    const auto cut = withStream("/Length 999999", "data");
    const Ref<Stream> stream = streamOf(*cut, 5);
    expectRefusal(resultOf([&] { return Tools::decodedBytes(cut, stream); }), LengthInvalid);
    expectRefusal(resultOf([&] { return Tools::decodedBytes(cut, nullptr); }), NullArgument);
}

} // namespace
