#include "import/modern_file.h"
#include "support/results.h"

#include <pdf/import.h>

#include <filesystem>
#include <fstream>

namespace {

using namespace Support;
using Import::normalise;

/// The import of these bytes, or the code of its failure.
std::string imported(std::string_view bytes, const Import::Options& options = {}) {
    Host::Error::set(Host::NoError);
    const auto result = normalise(stripeOf(bytes), options);
    return result ? contentsOf(result) : "code " + std::to_string(Host::Error::get());
}

/// A small document whose catalog refers to object 5, which becomes the third one.
DocumentBuilder with(std::string_view value) {
    return DocumentBuilder::minimal()
        .object(1, "<< /Type /Catalog /Pages 2 0 R /X 5 0 R >>")
        .object(5, value);
}

/// What stands between "3 0 obj" and "endobj".
std::string third(const std::string& bytes) {
    const std::size_t start = bytes.find("\n3 0 obj\n") + 9;
    return bytes.substr(start, bytes.find("\nendobj", start) - start);
}

struct Modern {
    const char* name;
    std::size_t pages;
    const char* password = "";
    const char* folder = "modern/";
};

constexpr Modern moderns[] = {
    {"encrypted-empty-password", 3, "another"},
    {"encrypted-password-secret", 2, "secret"},
    {"filter-arrays", 4},
    {"gaps-in-the-numbers", 6},
    {"incremental-update", 3},
    {"linearized", 3},
    {"object-on-one-line", 1},
    {"object-streams-office", 2},
    {"object-streams", 3},
    {"space-behind-startxref", 3},
    {"trailer-on-one-line", 3},
    {"two-subsections", 1},
    {"hyperref-form", 2, "", "users/"},
    {"inherited", 2, "", "users/"},
    {"jpeg-page", 1, "", "users/"},
    {"layers", 1, "", "users/"},
    {"stamped-ascii85", 6, "", "users/"},
    {"type3-font", 1, "", "users/"},
};

std::string modernBytes(const Modern& modern) {
    return sample(std::string(modern.folder) + modern.name + ".pdf");
}

/// Of plain filters every stream but an image can be read.
void expectOpens(const std::string& bytes, const Import::Options& options, std::size_t pages) {
    const std::string path = ::testing::TempDir() + "files-modern.pdf";
    std::ofstream(path, std::ios::binary) << bytes;
    const auto opened = resultOf([&] { return Import::open(path, options); });
    std::filesystem::remove(path);
    ASSERT_TRUE(opened) << told(opened);
    Document& document = **opened;
    EXPECT_EQ(document.getPages().size(), pages);
    EXPECT_TRUE(document.cacheStreamData());
    for (const auto& object : document.getObjects()) {
        const auto stream = streamOf(document, object->id());
        if (!options.plainFilters || !stream) continue;
        const std::string filter = textOf(stream->dict()->find("Filter"_str));
        EXPECT_TRUE(filter == "DCTDecode" || document.readStreamData(stream, true)) << filter;
    }
}

TEST(Import, MakesDocumentsThatOpen) {
    for (const Modern& modern : moderns) {
        SCOPED_TRACE(modern.name);
        const std::string bytes = modernBytes(modern);
        Import::Options options;
        options.password = modern.password;
        for (const bool plain : {false, true}) {
            options.plainFilters = plain;
            const std::string first = imported(bytes, options);
            const auto document = Support::open(first);
            ASSERT_TRUE(document) << first.substr(0, 99);
            EXPECT_EQ(document->getPages().size(), modern.pages);
            EXPECT_TRUE(Support::open(write(*document)));
            EXPECT_EQ(imported(first, {.plainFilters = plain}), first) << "imported again";
            for (const char* former : {"/Prev", "/XRefStm", "/Encrypt ", "/ObjStm", "/Linearized"})
                EXPECT_EQ(first.find(former), std::string::npos) << former;
            const auto target = Host::MemoryStripe::create();
            const auto narrow = Host::make<FailingStripe>(stripeOf(bytes)); // without a window
            EXPECT_TRUE(normalise(narrow, Host::make<FailingStripe>(target), options));
            EXPECT_EQ(contentsOf(target), first);
            expectOpens(bytes, options, modern.pages);
        }
    }
}

TEST(Import, SpellsWhatTheLibraryKeeps) {
    const std::pair<std::string, std::string> rows[] = {
        {"[ +5 007 -0 1.50 .5 5. -.5 +.5 -00.10 ]", "[ 5 7 0 1.50 .5 5. -.5 +.5 -00.10 ]"},
        {"[ 0.12345678901234567890123 1.00000000000000000000004 ]",
         "[ 0.1234567890123456789 1.00000000000000000000004 ]"},
        {"[ 18446744073709551616.5 -18446744073709551616.5 ]",
         "[ 9223372036854775807 -9223372036854775807 ]"},
        {"[ /A#20B /#41#62 /A#2f /\xE9~ /A#g ]", "[ /A#20B /Ab /A#2F /#E9~ /A#23g ]"},
        {"<< / 1 /A / /B#20 2 >>", "<< /B#20 2 >>"},
        {"[ / true ]", "[ null true ]"},
        {"[ (a\\(b\\)) (\\n\\r\\t\\b\\f) () ]", "[ (a\\(b\\)) (\\n\\r\\t\\b\\f) () ]"},
        {"[ (\\351\x93\xFF) <416263> ]", "[ (\\351\\223\\377) (Abc) ]"},
        {"[ (\\\\) (\\201) (\\000) (\\177) ]", "[ <5C> <81> <00> <7F> ]"},
        {"[ (\\376\\377NZ) (\\377\\376ZN) ]", "[ <FEFF4E5A> <FFFE5A4E> ]"},
        {"[ null 99 0 R 6 0 R 2 0 R 2 1 R ]", "[ null null null 2 0 R null ]"},
        {"<< /B null /A 99 0 R /C 6 0 R /D [ ] >>", "<< /D [ ] >>"},
        {"[ foo ]", "[ (foo) ]"},
        {"<< /A 1 /A 2 >>", "<< /A 2 >>"},
        {repeated("[ ", 499) + repeated("] ", 499),
         repeated("[ ", 498) + "[" + repeated(" ]", 499)},
        {"(text)", "(text)"},
        {"/Name#2E", "/Name."},
        {"-7.", "-7."},
    };
    for (const auto& [value, wanted] : rows) {
        const std::string bytes = imported(with(value).object(6, "null").bytes());
        EXPECT_EQ(third(bytes), wanted) << value;
        const auto document = Support::open(bytes);
        ASSERT_TRUE(document) << value;
        const bool isNumber = wanted.find('.') != std::string::npos;
        EXPECT_TRUE(isNumber || third(write(*document)) == wanted) << value;
    }
}

TEST(Import, OrdersKeysByOneSpelling) {
    EXPECT_EQ(third(imported(with("<< /#23#23 1 /#20#23 2 /#~ 3 /#21 4 /#23~ 5 >>").bytes())),
              "<< /#20#23 2 /! 4 /#23#23 1 /#23~ 5 >>");
    std::string entries; // by names of any bytes, as they may stand in a file and encoded
    for (int code = 1; code < 256; ++code) {
        const std::string plain(1, static_cast<char>(code)),
            encoded = "#" + hexed(plain).substr(0, 2);
        const bool isPlain =
            code > ' ' && std::string_view("()<>[]{}/%").find(plain) == std::string::npos;
        const std::string& usual = isPlain ? plain : encoded;
        for (const std::string& name :
             {encoded, encoded + "#", "#" + encoded, usual, "A" + usual, usual + "A"})
            entries += "/" + name + " [ /" + name + " ] ";
    }
    const std::string first = imported(with("<< " + entries + ">>").bytes());
    ASSERT_EQ(third(first).substr(0, 3), "<< ");
    EXPECT_EQ(imported(first), first);
}

TEST(Import, LeavesStorageBehind) {
    const std::string held = "9 0 [ 8 0 R 10 0 R (a) ]"; // its own stream and the table's
    ModernFile file;
    file.objectStream(8, {9}, "/First 4 /Length " + std::to_string(held.size()), held);
    EXPECT_EQ(third(imported(file.bytes())), "[ null null (a) ]");
}

TEST(Import, WritesOneHeaderAndOneTrailer) {
    const std::tuple<const char*, const char*, const char*> versions[] = {
        {"1.3", "", "1.3"},
        {"1.3", "/Version /1.6", "1.6"},
        {"1.6", "/Version /1.4", "1.6"},
        {"1.9", "", "1.7"},
        {"2.4", "", "2.0"},
        {"0.3", "", "1.0"},
        {"1.4", "/Version /x", "1.4"},
    };
    for (const auto& [header, entry, wanted] : versions) {
        DocumentBuilder file = DocumentBuilder::minimal();
        file.version(header).object(1, "<< /Pages 2 0 R " + std::string(entry) + " >>");
        EXPECT_EQ(imported(file.bytes()).substr(0, 9), std::string("%PDF-") + wanted + "\n")
            << header << entry;
    }
    const std::string trailer =
        imported(DocumentBuilder::minimal()
                     .trailer("/Root << /Pages 2 0 R >> /ID [(<<) (>>)] /Info << /A (a) >> /Own 7")
                     .bytes());
    EXPECT_NE(
        trailer.find("trailer\n<< /ID [ <3C3C> <3E3E> ] /Info << /A <61> >> /Own 7 /Root 1 0 R "
                     "/Size 5 >>\nstartxref\n"),
        std::string::npos)
        << trailer;
    EXPECT_EQ(Support::open(trailer)->getPages().size(), 1U);
}

TEST(Import, DecodesWhatTheLibraryDoesNot) {
    const std::string rows10 = "\x02HelloHello" + std::string("\x02") + std::string(10, '\0');
    const std::string predictor = "<< /Predictor 12 /Columns 10 >>";
    const std::string flated = deflated("HelloHello"), twice = "HelloHelloHelloHello";
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"/Filter /ASCIIHexDecode", "48656C6C6F>", "Hello"},
        {"/Filter [ /ASCII85Decode ]", "87cURDZ~>", "Hello"},
        {"/Filter /LZWDecode", "\x80\x0B\x60\x50\x22\x0C\x0C\x85\x01", "-----A---B"},
        {"/Filter /RunLengthDecode", "\x04Hello\x80", "Hello"},
        {"/Filter 6 0 R", deflated("HelloHello"), "HelloHello"},
        {"/Filter [ /FlateDecode ] /DecodeParms [ null ]", flated, "HelloHello"},
        {"/Filter [ /ASCIIHexDecode /RunLengthDecode ]", "0448656C6C6F80>", "Hello"},
        {"/Filter /FlateDecode /DecodeParms " + predictor, deflated(rows10), twice},
        {"/Filter [ /Crypt /FlateDecode ] /DecodeParms [ << /Name /Identity >> null ]", flated,
         "HelloHello"},
        {"/Filter /Crypt", "plain", "plain"},
        {"/Filter [ ]", "plain", "plain"},
        {"/Filter [ 6 0 R ] /DecodeParms [ 7 0 R ]", deflated(rows10), twice},
        {"/Filter [ /ASCIIHexDecode /LZWDecode ] /DecodeParms [ null << /EarlyChange 1 >> ]",
         "800B6050220C0C8501>", "-----A---B"},
        {"/Filter [ /AHx 6 0 R ] /DecodeParms [ 99 0 R 7 0 R ]", hexed(deflated(rows10)), twice},
        {"/Filter [ /AHx /Fl ] /DecodeParms [ null ]", hexed(flated), "HelloHello"},
        {"/Filter 6 0 R /DecodeParms [ null null << >> ]", flated, "HelloHello"},
        {"/Filter [ /AHx /Fl ] /DecodeParms 7 0 R", hexed(deflated(rows10)), twice},
        {"/Filter /FlateDecode /DecodeParms << /Predictor 12 >>",
         deflated(std::string("\0a\0b", 4)), "ab"},
        {"", "plain", "plain"},
        {"", std::string(300'000, 'p'), std::string(300'000, 'p')},
    };
    for (const auto& [entries, data, plain] : rows) {
        const std::string bytes = with("0")
                                      .stream(5, entries + " ", data)
                                      .objects({{6, "/FlateDecode"}, {7, predictor}})
                                      .bytes();
        const std::string result = imported(bytes, {.plainFilters = true});
        const auto document = Support::open(result);
        ASSERT_TRUE(document) << entries;
        const auto stream = streamOf(*document, 3);
        EXPECT_EQ(contentsOf(document->readStreamData(stream, true)), plain) << entries;
        EXPECT_EQ(result.find("/DecodeParms"), std::string::npos) << entries;
    }
    const std::pair<std::string, std::string> stored[] = {
        {"/Filter 6 0 R", "<< /Filter /FlateDecode /Length "},
        {"/Filter [ /Crypt /FlateDecode ] /DecodeParms [ << >> 7 ]",
         "<< /DecodeParms [ 7 ] /Filter [ /FlateDecode ] /Length "}};
    for (const auto& [entries, wanted] : stored) {
        DocumentBuilder file = with("0").stream(5, entries + " ", flated);
        const std::string result = third(imported(file.object(6, "/FlateDecode").bytes()));
        EXPECT_TRUE(result.starts_with(wanted)) << result;
    }
    const RecordingLog log;
    const std::string cut = flated.substr(0, flated.size() - 5);
    const std::string text =
        imported(with("0").stream(5, "/Filter [ /Fl ] ", cut).bytes(), {.plainFilters = true});
    EXPECT_NE(text.find("/Filter /FlateDecode"), std::string::npos);
    EXPECT_NE(log.text().find("may not be whole"), std::string::npos) << log.text();
    const std::string blown = deflated(deflated(std::string(200'000, 'x')));
    // What libqpdf does not decode, what is damaged and what holds too much stays as it is.
    const std::tuple<std::string, std::string, std::string> kept[] = {
        {"/Filter [ /ASCIIHexDecode /DCTDecode ]", "FFD8>",
         "/Filter [ /ASCIIHexDecode /DCTDecode ]"},
        {"/Filter /Unknown", "data", "/Filter /Unknown"},
        {"/Filter [ /FlateDecode /LZWDecode ]", "damaged", "/Filter [ /FlateDecode /LZWDecode ]"},
        {"/Filter [ /FlateDecode /FlateDecode ]", blown, "/Filter [ /FlateDecode /FlateDecode ]"}};
    for (const auto& [entries, data, wanted] : kept) {
        const std::string bytes = with("0").stream(5, entries + " ", data).bytes();
        const std::string result = imported(bytes, {.plainFilters = true, .streamLimit = 99'999});
        EXPECT_EQ(third(result), "<< " + wanted + " /Length " + std::to_string(data.size()) +
                                     " >>\nstream\n" + data + "\nendstream");
    }
}

TEST(Import, OpensWhatIsSoundAsItIs) {
    // What is sound keeps the order of its numbers, what is repaired has those of `normalise`.
    const std::string sound = with("[ .50 -.5 ]").bytes();
    const std::tuple<std::string, const char*, const char*> rows[] = {
        {sound, "\n5 0 obj\n[ .50 -.5 ]\n", ""},
        {std::string(sound).replace(9, 1, "  1"), "\n3 0 obj\n[ .50 -.5 ]\n", "reconstruct"}};
    for (const auto& [bytes, wanted, repaired] : rows) {
        const RecordingLog log;
        const auto numbers = Import::openFrom(stripeOf(bytes)).value();
        EXPECT_NE(write(*numbers).find(wanted), std::string::npos) << wanted;
        EXPECT_EQ(log.text().empty(), *repaired == '\0') << log.text();
        EXPECT_NE(log.text().find(repaired), std::string::npos) << log.text();
    }
}

TEST(Import, SaysWhyItOpensNothing) {
    const std::string path = ::testing::TempDir() + "files-import.pdf";
    const auto opened = [&](const char* bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
        return told(resultOf([&] { return Import::open(path); }));
    };
    const std::string gaveUp =
        path + ": document: unable to find trailer dictionary while recovering damaged file";
    EXPECT_EQ(opened("no document"),
              told(NotPdf, path +
                               ": File: no header stands in the first 1024 bytes; offset: 0h (0);"
                               " found: no document"));
    EXPECT_EQ(opened("%PDF-1.7\n"), told(BeyondRepair, gaveUp));
    std::filesystem::remove(path);
    EXPECT_EQ(told(resultOf([&] { return Import::open(path); })),
              told(Host::FileNotOpened, path + ": there is no such file or folder"));
    const auto from = [](const Host::Ref<Interfaces::Stripe>& source) {
        return told(resultOf([&] { return Import::openFrom(source); }));
    };
    EXPECT_EQ(from(nullptr), told(NullArgument, "No source was given"));
    EXPECT_EQ(
        from(stripeOf(modernBytes(moderns[1]))),
        told(PasswordNeeded, "the document is encrypted, and the password is missing or wrong"));
}

TEST(Import, FailsWithACode) {
    const auto null = Host::Ref<Interfaces::Stripe>();
    const auto bytewise = Adapters::Stripe::ElementSize::create(Host::MemoryStripe::create(), 1);
    EXPECT_FALSE(normalise(null, Host::MemoryStripe::create()));
    EXPECT_EQ(Host::Error::get(), NullArgument);
    EXPECT_FALSE(normalise(Host::MemoryStripe::create(), bytewise));
    EXPECT_EQ(Host::Error::get(), InvalidArgument);

    const std::string secret = modernBytes(moderns[1]);
    const std::string pages = "<< /Type /Catalog >>";
    const std::string handler = "/Root 1 0 R /ID [ <00> <00> ] /Encrypt << /Filter /Own /V 4 >>";
    const std::tuple<const char*, std::string, std::uint32_t> rows[] = {
        {"nothing", "", NotPdf},
        {"text", "no document", NotPdf},
        {"form data", "%FDF-1.2\n1 0 obj\n<< /FDF << >> >>\nendobj\ntrailer\n<< /Root 1 0 R >>\n",
         NotPdf},
        {"a header alone", "%PDF-1.7\n", BeyondRepair},
        {"cut off", sample("modern/truncated.pdf"), BeyondRepair},
        {"no page tree", DocumentBuilder::minimal().object(1, pages).bytes(), BeyondRepair},
        {"no password", secret, PasswordNeeded},
        {"another handler", DocumentBuilder::minimal().trailer(handler).bytes(), EncryptionUnknown},
    };
    for (const auto& [name, bytes, code] : rows) {
        const RecordingLog log;
        EXPECT_EQ(imported(bytes), "code " + std::to_string(code)) << name;
    }
    EXPECT_EQ(imported(secret, {.password = "Secret"}), "code 34065");
}

TEST(Import, PassesOnWhatWasRepaired) {
    const std::tuple<const char*, std::string, const char*> rows[] = {
        {"an offset", DocumentBuilder::minimal().bytes().replace(9, 1, "  1"), "reconstruct"},
        {"a lost page",
         DocumentBuilder::minimal()
             .object(2, "<< /Type /Pages /Kids [ 9 0 R 3 0 R ] /Count 2 >>")
             .bytes(),
         "page tree has lost 1"},
        {"encryption", modernBytes(moderns[0]), "was encrypted"},
        {"a key twice", with("<< /A\x7F 1 /A\x7F 2 >>").bytes(), "duplicated key /A?;"},
        {"many keys", with("[ " + repeated("<< /A 1 /A 2 >> ", 150) + "]").bytes(), "are 50 more"},
    };
    for (const auto& [name, bytes, words] : rows) {
        const RecordingLog log;
        const auto document = Support::open(imported(bytes));
        ASSERT_TRUE(document) << name;
        EXPECT_NE(log.text().find(words), std::string::npos) << name << ": " << log.text();
        ASSERT_FALSE(log.entries().empty());
        EXPECT_EQ(log.entries().front().level, Host::LogLevel::Warning);
        EXPECT_EQ(Host::SysLogFilter::name(log.entries().front().filter), "Lib.File.PDF.Import");
        const auto root = document->getPageCatalog()->valueAsDictionary();
        EXPECT_EQ(document->getPages().size(), root->findAsNumber("Count"_str)->integer()) << name;
    }
}

} // namespace
