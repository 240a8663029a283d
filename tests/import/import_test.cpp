#include "import/modern_file.h"
#include "support/document_builder.h"
#include "support/documents.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"

#include <pdf/errors.h>
#include <pdf/import.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

using namespace Libraries::Files::PDF;
using namespace Host::Literals;
using Import::normalise;
using Support::contentsOf;
using Support::DocumentBuilder;
using Support::FailingStripe;
using Support::stripeOf;

/// The import of these bytes, or the code of its failure.
std::string imported(std::string_view bytes, const Import::Options& options = {}) {
    Host::Error::set(Host::NoError);
    const auto result = normalise(stripeOf(bytes), options);
    return result ? contentsOf(result) : "code " + std::to_string(Host::Error::get());
}

std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    while (times-- != 0)
        all += text;
    return all;
}

std::string hexed(std::string_view data) {
    std::string text;
    for (const char code : data) {
        text += "0123456789ABCDEF"[static_cast<unsigned char>(code) >> 4U];
        text += "0123456789ABCDEF"[static_cast<unsigned char>(code) & 15U];
    }
    return text + ">";
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
};

constexpr Modern moderns[] = {{"encrypted-empty-password", 3, "another"},
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
                              {"two-subsections", 1}};

std::string modernBytes(const Modern& modern) {
    return Support::sample("modern/" + std::string(modern.name) + ".pdf");
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
            EXPECT_TRUE(Support::open(Support::write(*document)));
            EXPECT_EQ(imported(first, {.plainFilters = plain}), first) << "imported again";
            for (const char* former : {"/Prev", "/XRefStm", "/Encrypt ", "/ObjStm", "/Linearized"})
                EXPECT_EQ(first.find(former), std::string::npos) << former;
            const auto target = Host::MemoryStripe::create();
            const auto narrow = Host::make<FailingStripe>(stripeOf(bytes)); // without a window
            EXPECT_TRUE(normalise(narrow, Host::make<FailingStripe>(target), options));
            EXPECT_EQ(contentsOf(target), first);
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
        EXPECT_TRUE(isNumber || third(Support::write(*document)) == wanted) << value;
    }
}

/// Names of any bytes, each spelled as it may stand in a file or with a number sign.
std::string anyName(std::mt19937& random) {
    constexpr std::string_view delimiters = "()<>[]{}/% ";
    std::string name = "/";
    for (std::size_t left = 1 + random() % 3; left-- != 0;) {
        const char code = static_cast<char>(1 + random() % 255);
        const bool isPlain = code > ' ' || code < 0;
        if (isPlain && random() % 2 != 0 && delimiters.find(code) == std::string::npos) {
            name += code;
        } else if (random() % 4 == 0) {
            name += "#";
        } else {
            char spelled[4];
            std::snprintf(spelled, sizeof(spelled), "#%02x", static_cast<unsigned char>(code));
            name += spelled;
        }
    }
    return name;
}

TEST(Import, OrdersKeysByOneSpelling) {
    EXPECT_EQ(third(imported(with("<< /#23#23 1 /#20#23 2 /#~ 3 /#21 4 /#23~ 5 >>").bytes())),
              "<< /#20#23 2 /! 4 /#23#23 1 /#23~ 5 >>");
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        std::string entries;
        for (int count = 0; count < 40; ++count)
            entries += anyName(random) + " [ " + anyName(random) + " ] ";
        const std::string first = imported(with("<< " + entries + ">>").bytes());
        ASSERT_EQ(imported(first), first) << entries;
    }
}

TEST(Import, LeavesStorageBehind) {
    const std::string held = "9 0 [ 8 0 R 10 0 R (a) ]"; // its own stream and the table's
    Support::ModernFile file;
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
        {"1.4", "/Version /x", "1.4"}};
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
    const std::string flated = Support::deflated("HelloHello");
    const struct {
        std::string entries, data, decoded;
    } rows[] = {
        {"/Filter /ASCIIHexDecode", "48656C6C6F>", "Hello"},
        {"/Filter [ /ASCII85Decode ]", "87cURDZ~>", "Hello"},
        {"/Filter /LZWDecode", "\x80\x0B\x60\x50\x22\x0C\x0C\x85\x01", "-----A---B"},
        {"/Filter /RunLengthDecode", "\x04Hello\x80", "Hello"},
        {"/Filter 6 0 R", Support::deflated("HelloHello"), "HelloHello"},
        {"/Filter [ /FlateDecode ] /DecodeParms [ null ]", flated, "HelloHello"},
        {"/Filter [ /ASCIIHexDecode /RunLengthDecode ]", "0448656C6C6F80>", "Hello"},
        {"/Filter /FlateDecode /DecodeParms " + predictor, Support::deflated(rows10),
         "HelloHelloHelloHello"},
        {"/Filter [ /Crypt /FlateDecode ] /DecodeParms [ << /Name /Identity >> null ]", flated,
         "HelloHello"},
        {"/Filter /Crypt", "plain", "plain"},
        {"/Filter [ ]", "plain", "plain"},
        {"/Filter [ 6 0 R ] /DecodeParms [ 7 0 R ]", Support::deflated(rows10),
         "HelloHelloHelloHello"},
        {"/Filter [ /ASCIIHexDecode /LZWDecode ] /DecodeParms [ null << /EarlyChange 1 >> ]",
         "800B6050220C0C8501>", "-----A---B"},
        {"/Filter [ /AHx 6 0 R ] /DecodeParms [ 99 0 R 7 0 R ]", hexed(Support::deflated(rows10)),
         "HelloHelloHelloHello"},
        {"/Filter [ /AHx /Fl ] /DecodeParms [ null ]", hexed(flated), "HelloHello"},
        {"/Filter 6 0 R /DecodeParms [ null null << >> ]", flated, "HelloHello"},
        {"/Filter [ /AHx /Fl ] /DecodeParms 7 0 R", hexed(Support::deflated(rows10)),
         "HelloHelloHelloHello"},
        {"/Filter /FlateDecode /DecodeParms << /Predictor 12 >>",
         Support::deflated(std::string("\0a\0b", 4)), "ab"},
        {"", "plain", "plain"},
        {"", std::string(300'000, 'p'), std::string(300'000, 'p')},
    };
    for (const auto& row : rows) {
        const std::string bytes = with("0")
                                      .stream(5, row.entries + " ", row.data)
                                      .object(6, "/FlateDecode")
                                      .object(7, predictor)
                                      .bytes();
        const std::string result = imported(bytes, {.plainFilters = true});
        const auto document = Support::open(result);
        ASSERT_TRUE(document) << row.entries;
        const auto stream = Support::streamOf(*document, 3);
        EXPECT_EQ(contentsOf(document->readStreamData(stream, true)), row.decoded) << row.entries;
        EXPECT_EQ(result.find("/DecodeParms"), std::string::npos) << row.entries;
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
    const Support::RecordingLog log;
    const std::string cut = flated.substr(0, flated.size() - 5);
    const std::string text =
        imported(with("0").stream(5, "/Filter [ /Fl ] ", cut).bytes(), {.plainFilters = true});
    EXPECT_NE(text.find("/Filter /FlateDecode"), std::string::npos);
    EXPECT_NE(log.text().find("may not be whole"), std::string::npos) << log.text();
    const std::string blown = Support::deflated(Support::deflated(std::string(200'000, 'x')));
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

TEST(Import, OpensInOneCall) {
    const auto passwords = [](const Modern& modern) {
        return Import::Options{.password = modern.password};
    };
    for (const Modern& modern : moderns) {
        const std::string path = ::testing::TempDir() + modern.name + ".pdf";
        std::ofstream(path, std::ios::binary) << modernBytes(modern);
        const auto document = Import::open(path, passwords(modern));
        std::filesystem::remove(path);
        ASSERT_TRUE(document) << modern.name;
        EXPECT_EQ(document->getPages().size(), modern.pages) << modern.name;
        EXPECT_TRUE(document->cacheStreamData()) << modern.name;
    }
    // What is sound keeps the order of its numbers, what is repaired has those of `normalise`.
    const std::string sound = with("[ .50 -.5 ]").bytes();
    const std::pair<std::string, const char*> rows[] = {
        {sound, "\n5 0 obj\n[ .50 -.5 ]\n"},
        {std::string(sound).replace(9, 1, "  1"), "\n3 0 obj\n[ .50 -.5 ]\n"}};
    for (const auto& [bytes, wanted] : rows) {
        const auto numbers = Import::openFrom(stripeOf(bytes));
        ASSERT_TRUE(numbers) << wanted;
        EXPECT_NE(Support::write(*numbers).find(wanted), std::string::npos) << wanted;
    }

    EXPECT_FALSE(Import::open(::testing::TempDir() + "missing.pdf"));
    EXPECT_EQ(Host::Error::get(), Host::FileNotOpened);
    EXPECT_FALSE(Import::openFrom(nullptr));
    EXPECT_EQ(Host::Error::get(), NullArgument);
    EXPECT_FALSE(Import::openFrom(stripeOf(modernBytes(moderns[1]))));
    EXPECT_EQ(Host::Error::get(), PasswordNeeded);
}

TEST(Import, DecodesStreamsOfOtherProducers) {
    const std::pair<const char*, const char*> rows[] = {
        {"hyperref-form", ""}, {"inherited", ""},  {"jpeg-page", "DCTDecode"},
        {"layers", ""},        {"type3-font", ""}, {"stamped-ascii85", ""},
    };
    for (const auto& [name, image] : rows) {
        const std::string bytes = Support::sample(std::string("users/") + name + ".pdf");
        const auto document = Import::openFrom(stripeOf(bytes), {.plainFilters = true});
        ASSERT_TRUE(document) << name;
        std::size_t streams = 0;
        for (const auto& object : document->getObjects()) {
            const auto stream = Support::streamOf(*document, object->id());
            if (!stream) continue;
            ++streams;
            const auto filter = stream->dict()->find("Filter"_str);
            const bool isImage =
                *image != '\0' && Support::textOf(filter).find(image) != std::string::npos;
            EXPECT_TRUE(isImage || document->readStreamData(stream, true))
                << name << ": " << Support::textOf(filter);
        }
        EXPECT_GT(streams, 0U) << name;
    }
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
        {"cut off", Support::sample("modern/truncated.pdf"), BeyondRepair},
        {"no page tree", DocumentBuilder::minimal().object(1, pages).bytes(), BeyondRepair},
        {"no password", secret, PasswordNeeded},
        {"another handler", DocumentBuilder::minimal().trailer(handler).bytes(), EncryptionUnknown},
    };
    for (const auto& [name, bytes, code] : rows) {
        const Support::RecordingLog log;
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
        const Support::RecordingLog log;
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
