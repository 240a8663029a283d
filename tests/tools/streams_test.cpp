#include "generator/prediction.h"
#include "support/results.h"

#include <pdf/tools/streams.h>

namespace {

using namespace Support;
using Generator::Prediction;

/// The kinds of PNG's rows 0 to 4 in turn, from `first` on.
auto inTurn(unsigned first) {
    return [first](std::size_t row) { return (first + static_cast<unsigned>(row)) % 5; };
}

/// A document with stream 5.
Ref<Document> with(std::string_view entries, std::string_view data) {
    return open(DocumentBuilder::minimal().stream(5, entries, data));
}

/// The dictionary and the data of stream 5, after the document was written and read.
std::string storedOf(Document& document) {
    const auto again = open(write(document));
    if (!again) return "(does not open)";
    const auto stream = streamOf(*again, 5);
    return textOf(stream->dict()) + contentsOf(again->readStreamData(stream, false));
}

TEST(ExpandStreams, UndoesEveryPredictor) {
    for (const unsigned colors : {1U, 2U, 3U, 4U, 5U}) {
        for (const unsigned bits : {1U, 2U, 4U, 8U, 16U}) {
            for (const unsigned columns : {1U, 3U, 7U, 64U}) {
                const Prediction made(colors, bits, columns);
                const std::string rows = noiseText(made.rowSize() * 6);
                const std::string parameters = "/Colors " + std::to_string(colors) +
                                               " /BitsPerComponent " + std::to_string(bits) +
                                               " /Columns " + std::to_string(columns);
                const std::pair<std::string, std::string> kinds[] = {
                    {"2", made.tiff(rows)},
                    {"10", made.png(rows, inTurn(0))},
                    {"15", made.png(rows, inTurn(3))}};
                for (const auto& [kind, data] : kinds) {
                    const auto document = with("/Filter /FlateDecode /DecodeParms << " +
                                                   parameters + " /Predictor " + kind + " >> ",
                                               deflated(data));
                    ASSERT_TRUE(Tools::expandStreams(document));
                    ASSERT_EQ(storedOf(*document),
                              "<< Length -> " + std::to_string(rows.size()) + ".0 >>" + rows)
                        << parameters << " Predictor " << kind;
                }
            }
        }
    }
}

/// A document whose objects 6 to 11 are what entries refer to.
DocumentBuilder withShared() {
    return DocumentBuilder::minimal()
        .object(6, "/FlateDecode")
        .object(7, "[ /FlateDecode ]")
        .object(8, "[ 6 0 R ]")
        .object(9, "<< /Predictor 1 >>")
        .object(10, "[ null ]")
        .object(11, "/Metadata");
}

TEST(Streams, TouchOnlyWhatComesBackTheSame) {
    enum Task { Compress, Expand };
    const std::string plain = "one two one two one two one two one two one two one two one two";
    const std::string flate = deflated(plain);
    const std::string big = noiseText(300);
    const std::string png = deflated(Prediction(1, 8, 4).png("12345678", inTurn(2)));
    std::string damaged = flate;
    damaged.back() = static_cast<char>(damaged.back() ^ 1);
    const std::string parms = "/Filter /FlateDecode /DecodeParms ";
    const struct {
        Task task;
        std::string entries, data;
        std::string result; ///< data; empty where all stays as it is
    } rows[] = {
        {Compress, "", plain, flate},
        {Compress, "/Filter null ", plain, flate},
        {Compress, "/Filter 99 0 R ", plain, flate},
        {Compress, "/Filter [ ] /DecodeParms << /Predictor 12 >> ", plain, flate},
        {Compress, "", big, ""},
        {Compress, "", "short short short", ""},
        {Compress, "", "", ""},
        {Compress, "/Type /Metadata ", plain, ""},
        {Compress, "/Type 11 0 R ", plain, ""},
        {Compress, "/Filter /DCTDecode ", plain, ""},
        {Compress, "/Filter /JPXDecode ", plain, ""},
        {Compress, "/Filter [ /ASCII85Decode /FlateDecode ] ", plain, ""},
        {Compress, "/Filter /FlateDecode ", flate, ""},
        {Compress, "/Filter 12 ", plain, ""},
        {Compress, "/F (file) ", plain, ""},
        {Expand, "/Filter /FlateDecode ", flate, plain},
        {Expand, "/Filter [ /FlateDecode ] ", flate, plain},
        {Expand, "/Filter 6 0 R ", flate, plain},
        {Expand, "/Filter 7 0 R /DecodeParms 9 0 R ", flate, plain},
        {Expand, "/Filter 8 0 R /DecodeParms 10 0 R ", flate, plain},
        {Expand, "/Type /Metadata /Filter /FlateDecode ", flate, plain},
        {Expand, parms + "<< /Predictor 12 /Columns 4 >> ", png, "12345678"},
        {Expand, parms + "[ << /Predictor 12 /Columns 4 >> ] ", png, "12345678"},
        {Expand, parms + "<< /Predictor 12 /Columns 3 >> ", png, ""},
        {Expand, parms + "<< /Predictor 12 /Columns 3 /Colors 0 >> ", png, ""},
        {Expand, parms + "<< /Predictor 12 /Columns 4 /BitsPerComponent 3 >> ", png, ""},
        {Expand, parms + "<< /Predictor 12 /Columns 4.5 >> ", png, ""},
        {Expand, parms + "<< /Predictor 2 /Columns 4000000000 /Colors 4000000000 >> ", png, ""},
        {Expand, parms + "<< /Predictor 2 /Columns 2147483648 /Colors 65535 >> ", png, ""},
        {Expand, parms + "<< /Predictor 3 >> ", flate, ""},
        {Expand, parms + "<< /Predictor /Up >> ", flate, ""},
        {Expand, parms + "<< /Predictor 10 >> ", deflated("\5a"), ""},
        {Expand, "/Filter /FlateDecode ", damaged, ""},
        {Expand, "/Filter /FlateDecode ", flate.substr(0, 12), ""},
        {Expand, "/Filter /LZWDecode ", flate, ""},
        {Expand, "/Filter [ /FlateDecode /DCTDecode ] ", flate, ""},
        {Expand, "", plain, ""},
    };
    for (const auto& row : rows) {
        for (const bool cached : {false, true}) {
            const auto document = open(withShared().stream(5, row.entries + "/K 1 ", row.data));
            ASSERT_TRUE(document) << row.entries;
            EXPECT_TRUE(!cached || document->cacheStreamData());
            const std::string before = write(*document);
            // The content of the page is short, so that it stays as it is.
            EXPECT_TRUE(row.task == Compress ? Tools::compressStreams(document)
                                             : Tools::expandStreams(document));
            if (row.result.empty()) {
                EXPECT_EQ(write(*document), before) << row.entries;
                EXPECT_FALSE(document->changed()) << row.entries;
                continue;
            }
            const std::string filter = row.task == Compress ? "Filter -> FlateDecode " : "";
            const std::string type = row.entries.starts_with("/Type") ? "Type -> Metadata " : "";
            EXPECT_EQ(storedOf(*document), "<< " + filter + "K -> 1.0 Length -> " +
                                               std::to_string(row.result.size()) + ".0 " + type +
                                               ">>" + row.result)
                << row.entries;
            EXPECT_TRUE(document->changed()) << row.entries;
        }
    }
}

TEST(Streams, LeaveWhatIsShared) {
    const std::string plain(300, 'a');
    const std::string body = "\nstream\n" + plain + "\nendstream";
    DocumentBuilder file = DocumentBuilder::minimal();
    file.object(5, "<< /Length 7 0 R >>" + body).object(6, "<< /Length 7 0 R >>" + body);
    const auto document = open(file.object(7, "300").object(8, "<< /N 7 0 R >>"));
    const auto shared = Dictionary::create({{"Length", number(300)}});
    for (int times = 0; times < 2; ++times)
        EXPECT_TRUE(Tools::addObject(document, Host::make<StreamObj>(shared, stripeOf(plain))));
    EXPECT_TRUE(Tools::addObject(document, streamOf(*document, 5)));
    ASSERT_TRUE(Tools::compressStreams(document));
    EXPECT_EQ(textOf(valueOf(*document, 7)), "300.0");
    EXPECT_EQ(textOf(shared), "<< Length -> 300.0 >>");
    const auto again = open(write(*document));
    for (const std::uint32_t id : {5U, 6U, 11U}) {
        const auto stream = streamOf(*again, id);
        EXPECT_EQ(stream->compression(), Compression::FlateDecode) << id;
        EXPECT_EQ(contentsOf(again->readStreamData(stream, true)), plain) << id;
    }
}

TEST(Streams, KeepALineFeedThatWouldBeLost) {
    for (const std::string_view ending : {"\n", "\r", "\r\n"}) {
        const std::string data = "\nq Q";
        const auto document = open(DocumentBuilder::minimal().lineEnding(ending).stream(
            5, "/Filter /FlateDecode ", deflated(data)));
        ASSERT_TRUE(Tools::expandStreams(document));
        const auto again = open(write(*document));
        const auto stream = streamOf(*again, 5);
        EXPECT_EQ(contentsOf(again->readStreamData(stream, true)), data);
        EXPECT_EQ(stream->compression(),
                  ending == "\r" ? Compression::FlateDecode : Compression::None);
    }
}

TEST(Streams, AreBoundedAndAllOrNothing) {
    const std::string zeros = deflated(std::string(3'000'000, '\0'));
    const std::string flate = "/Filter /FlateDecode ";
    const auto sound = DocumentBuilder::minimal().stream(5, flate, deflated("q Q q Q"));
    DocumentBuilder nested = sound; // streams whose data is all that follows
    for (std::uint32_t id = 6; id < 206; ++id)
        nested.object(id, "<< /Length 100000 >>\nstream\n");
    nested.object(206, "(" + std::string(100'000, 'a') + ")");
    const std::string bomb = DocumentBuilder(sound).stream(6, flate, zeros).bytes();
    const auto withSix = [&](const char* body) {
        return DocumentBuilder(sound).object(6, body).bytes();
    };
    const std::optional<std::uint64_t> usual;
    const std::string tooBig = told(
        ExpansionTooBig, "Object 6: Streams, up to this one, expand to more than is allowed", 6);
    const struct {
        std::string name, file;
        std::optional<std::uint64_t> limit;
        std::string expanding, compressing{}; ///< what is told
    } rows[] = {
        {"a bomb", bomb, usual, tooBig},
        {"allowed", bomb, 3'000'007, ""},
        {"one too many", bomb, 3'000'006, tooBig},
        {"no Length", withSix("<< /Filter /FlateDecode >>\nstream\n"), usual,
         told(LengthInvalid, "Object 6: Stream has no Length entry", 6)},
        {"behind the end", withSix("<< /Length 9999 >>\nstream\n"), usual, "",
         told(LengthInvalid,
              "Object 6: Stream end 28A1h (10401) is out of range of underlying file: 265h (613)",
              6)},
        {"nested", nested.bytes(), usual, "",
         told(ExpansionTooBig, "Streams lie in each other: they have 20000012 bytes together")},
    };
    for (const auto& row : rows) {
        for (const bool expanding : {true, false}) {
            const auto document = open(row.file);
            ASSERT_TRUE(document) << row.name;
            const std::string before = write(*document);
            const auto done = resultOf([&] {
                return expanding ? Tools::expandStreams(document, {row.limit})
                                 : Tools::compressStreams(document);
            });
            EXPECT_EQ(told(done), expanding ? row.expanding : row.compressing) << row.name;
            EXPECT_TRUE(done || write(*document) == before) << row.name;
        }
    }
    expectRefusal(resultOf([] { return Tools::compressStreams(nullptr); }), NullArgument);
    const auto encrypted = open(DocumentBuilder(sound).trailer("/Root 1 0 R /Encrypt 1 0 R"));
    EXPECT_TRUE(Tools::expandStreams(encrypted));
    EXPECT_FALSE(encrypted->changed()) << "ciphertext cannot be expanded";
}

} // namespace
