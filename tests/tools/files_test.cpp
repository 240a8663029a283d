#include "support/testing.h"

#include <host/files.h>
#include <pdf/tools/editing.h>
#include <pdf/tools/files.h>
#include <pdf/tools/losses.h>

#include <filesystem>
#include <fstream>
#include <functional>

namespace {

using namespace Support;
using namespace Libraries::Files::PDF;

/// "kind count first;" for each kind of loss.
std::string lossesOf(const Document& document) {
    std::string all;
    Host::Error::set(77);
    for (const auto& [kind, count, first] : Tools::losses(document))
        all += std::to_string(static_cast<int>(kind)) + " " + std::to_string(count) + " " +
               std::to_string(first) + ";";
    EXPECT_EQ(Host::Error::get(), 77U) << "the code is left alone";
    return all;
}

/// A small document with one more object, or another trailer.
DocumentBuilder with(std::string_view body, std::string_view trailer = "/Root 1 0 R") {
    return DocumentBuilder::minimal().object(5, body).trailer(trailer);
}

TEST(Losses, AreCountedByKind) {
    const DocumentBuilder minimal = DocumentBuilder::minimal();
    std::string subsections = minimal.bytes();
    subsections.replace(subsections.find("xref\n0 5\n"), 9, "xref\n0 4\n");
    std::string behindBlank = subsections;
    behindBlank.insert(behindBlank.find("trailer") - 20, " ");
    const struct {
        const char* name;
        std::string file, losses;
    } rows[] = {
        {"none", minimal.bytes(), ""},
        {"numbers that stay what they are",
         with("[1.0 +5 -1.5 007 .5 5. -0 -0.0 1.50 0.10]").bytes(), ""},
        {"fractions", with("[1.05 /A << /B .001 >> -7.0009]").bytes(), "5 3 5;"},
        {"signs", with("[-0.5 -.5 -0.05 -1.5]").bytes(), "5 1 5;6 3 5;"},
        {"equal keys", with("<< /A 1 /A 2 /B 1 /A 3 >>").bytes(), "7 2 5;"},
        {"backslashes", with("[(a\\134b) (a\\\\n) (a\\n)]").bytes(), "8 2 5;"},
        {"characters", with("[(\x81\x8D) (\\201) (\\000) <81>]").bytes(), "9 2 5;"},
        {"revisions", with("1", "/Root 1 0 R /Prev 9 /XRefStm 1").bytes(), "0 2 0;"},
        {"encryption", with("1", "/Root 1 0 R /Encrypt 5 0 R").bytes(), "2 1 0;"},
        {"subsections", subsections, "1 1 0;"},
        {"subsections behind a blank", behindBlank, "1 1 0;"},
        {"no pages", with("1", "/Root 5 0 R").bytes(), "3 1 0;"},
        {"gap", DocumentBuilder::minimal().object(6, "1").object(8, "1").bytes(), "4 2 6;"},
        {"trailer", with("1", "/Root 1 0 R /A 1.05").bytes(), "5 1 0;"},
        {"signature", with("<< /V << /ByteRange [ 0 1 2 3 ] >> /N /ByteRange >>").bytes(),
         "12 1 5;"},
        {"two signatures",
         with("<< /ByteRange [ 0 1 2 3 ] >>")
             .object(6, "<< /ByteRange 7 0 R >>")
             .object(7, "[ 1 ]")
             .bytes(),
         "12 2 5;"},
        {"permissions",
         with("1").object(1, "<< /Type /Catalog /Pages 2 0 R /Perms << /UR3 5 0 R >> >>").bytes(),
         "12 1 1;"},
    };
    for (const auto& row : rows) {
        const auto document = Support::open(row.file);
        ASSERT_TRUE(document) << row.name;
        EXPECT_EQ(lossesOf(*document), row.losses) << row.name;
        document->faithfulNumbers(true);
        const bool numbers = row.losses.starts_with("5") || row.losses.starts_with("6");
        EXPECT_EQ(lossesOf(*document), numbers ? "" : row.losses) << row.name;
    }
    EXPECT_STREQ(Tools::lossText(static_cast<Loss>(lossKinds)), "unknown loss");
}

TEST(Losses, TellLineFeedsThatGo) {
    const std::string zipped = deflated("\nq");
    for (const std::string_view ending : {"\r", "\n", "\r\n"}) {
        const auto document = Support::open(DocumentBuilder::minimal()
                                                .lineEnding(ending)
                                                .stream(5, "/Filter /FlateDecode ", zipped)
                                                .stream(6, "", "\n\n")
                                                .stream(7, "", "\n")
                                                .object(8, "<< /Length 0 >>\rstream\r\n\nendstream")
                                                .object(9, "<< /Length 9999 >>\rstream\r\n\n")
                                                .bytes());
        ASSERT_TRUE(document);
        const bool lost = ending == "\r";
        EXPECT_EQ(lossesOf(*document), lost ? "10 2 6;" : "");
        for (const std::uint32_t id : {5U, 6U, 7U, 8U, 9U})
            EXPECT_TRUE(streamOf(*document, id));
        EXPECT_EQ(lossesOf(*document), lost ? "10 2 6;" : "") << "touched";
        EXPECT_EQ(contentsOf(document->readStreamData(streamOf(*document, 5), true)), "\nq")
            << "nothing was attached";
        EXPECT_FALSE(document->changed());
        EXPECT_TRUE(Tools::setStreamData(*document, streamOf(*document, 6), "q"));
        EXPECT_EQ(lossesOf(*document), lost ? "10 1 7;" : "") << "replaced";
    }
}

TEST(Losses, TellWhatSetCompressionTookAway) {
    const std::string zipped = deflated("\2aaaa");
    const std::string flate = "/Filter /FlateDecode ";
    const std::string up = "<< /Predictor 12 /Columns 4 >> ";
    const struct {
        const char* name;
        std::string entries, data;
        std::string losses[3]; ///< after setting None, FlateDecode, None
    } rows[] = {
        {"plain", "", "data", {"", "", ""}},
        {"FlateDecode", flate, zipped, {"", "", ""}},
        {"no predictor", flate + "/DecodeParms << /Predictor 1 >> ", zipped, {"", "", ""}},
        {"JPEG", "/Filter /DCTDecode ", "data", {"", "11 1 5;", "11 1 5;"}},
        {"LZW", "/Filter /LZWDecode /DecodeParms " + up, "data", {"", "11 1 5;", "11 1 5;"}},
        {"predictor", flate + "/DecodeParms " + up, zipped, {"11 1 5;", "", "11 1 5;"}},
        {"in an array", flate + "/DecodeParms [ 6 0 R ] ", zipped, {"11 1 5;", "", "11 1 5;"}},
        {"behind a reference", flate + "/DecodeParms 6 0 R ", zipped, {"11 1 5;", "", "11 1 5;"}},
        {"comes to life", "/DecodeParms " + up, "data", {"", "11 1 5;", ""}},
        {"chain", "/Filter [ /FlateDecode /DCTDecode ] ", zipped, {"", "", ""}},
    };
    for (const auto& row : rows) {
        const auto document = Support::open(
            DocumentBuilder::minimal().stream(5, row.entries, row.data).object(6, up).bytes());
        for (std::size_t step = 0; step < std::size(row.losses); ++step) {
            const auto target = step % 2 == 0 ? Compression::None : Compression::FlateDecode;
            ASSERT_TRUE(document->setCompression(target)) << row.name;
            EXPECT_EQ(lossesOf(*document), row.losses[step]) << row.name << step;
        }
    }
    const auto failing = Support::open(DocumentBuilder::minimal()
                                           .stream(5, "/Filter /DCTDecode ", "data")
                                           .object(6, "<< >>\nstream\n")
                                           .bytes());
    EXPECT_FALSE(failing->setCompression(Compression::FlateDecode));
    EXPECT_EQ(lossesOf(*failing), "");
    Host::Error::set(Host::NoError);
}

TEST(FaithfulNumbers, AreWrittenAsTheyWereRead) {
    const std::string numbers = "[ 1.05 -0.5 +5 007 .5 5. -0 1.0 [ -.5 ] << /K 00.10 >> 1.50 7 ]";
    const std::string parts = "[ 1.5 0.5 5 7 0.5 5 0 1 [ 0.5 ] << /K 0.10 >> 1.50 7 ]";
    const auto file = DocumentBuilder::minimal()
                          .object(5, numbers)
                          .object(6, "-0.5 ")
                          .trailer("/N 1.05 /Root 1 0 R")
                          .bytes();
    for (const bool touched : {false, true}) {
        const auto document = Support::open(file);
        const auto array = touched ? castTo<Array>(valueOf(*document, 5)) : nullptr;
        for (const bool faithful : {false, true, false}) {
            document->faithfulNumbers(faithful);
            EXPECT_EQ(document->faithfulNumbers(), faithful);
            const std::string written = Support::write(*document);
            EXPECT_NE(written.find("5 0 obj\n" + (faithful ? numbers : parts) + "\n"),
                      std::string::npos)
                << written;
            EXPECT_NE(written.find(faithful ? "6 0 obj\n-0.5\n" : "6 0 obj\n0.5\n"),
                      std::string::npos);
            EXPECT_NE(written.find(faithful ? "/N 1.05" : "/N 1.5"), std::string::npos);
        }
        EXPECT_FALSE(document->changed());
        if (!touched) continue;
        EXPECT_EQ(textOf(array->get(0)), "1.5");
        EXPECT_TRUE(array->get(0)->equal(number(1, 5)));
        EXPECT_EQ(castTo<Number>(array->get(1))->spelling()->utf8(), "-0.5");
        EXPECT_FALSE(castTo<Number>(array->get(10))->spelling());
    }
}

TEST(FaithfulNumbers, AreKeptByCopiesButNotByALengthThatChanges) {
    const auto foreign = Support::open(
        DocumentBuilder::minimal()
            .object(3,
                    "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources << /ExtGState << /G "
                    "<< /LW 1.05 >> >> >> >>")
            .object(4, "<< /Length 012 >>\nstream\n0 0 9 9 re f\nendstream")
            .bytes());
    const auto document = Support::open(DocumentBuilder::minimal().bytes());
    document->faithfulNumbers(true);
    ASSERT_TRUE(document->addBackground(foreign, 0));
    EXPECT_NE(Support::write(*document).find("/LW 1.05"), std::string::npos);
    foreign->faithfulNumbers(true);
    EXPECT_NE(Support::write(*foreign).find("/Length 012 "), std::string::npos);
    ASSERT_TRUE(foreign->setCompression(Compression::FlateDecode));
    EXPECT_EQ(Support::write(*foreign).find("/Length 012 "), std::string::npos);
}

TEST(Saving, NamesWhatWouldNotBeReadAgain) {
    using Tools::Saved;
    const std::string path = testing::TempDir() + "files-legible.pdf";
    const auto backslash = String::create("C:\\dir");
    const struct {
        const char* name;
        const char* file; ///< object 5
        std::function<bool(Document&, Dictionary&)> set;
        std::string message; ///< empty where it is saved
    } rows[] = {
        {"text", "<< >>", [&](auto&, auto& dict) { return dict.set("A", backslash); },
         "Object 5 /A: a text with a backslash"},
        {"deep", "<< >>",
         [&](auto&, auto& dict) {
             return dict.set("A", array({null(), dictionary({{"B", array({backslash})}})}));
         },
         "Object 5 /A [1] /B [0]: a text with a backslash"},
        {"key", "<< >>", [&](auto&, auto& dict) { return dict.set("a b", null()); },
         "Object 5: the key \"a b\""},
        {"name", "<< >>", [&](auto&, auto& dict) { return dict.set("A", name("a/b")); },
         "Object 5 /A: the name \"a/b\""},
        {"wide name", "<< >>", [&](auto&, auto& dict) { return dict.set("A", name("\xCE\xA9")); },
         "Object 5 /A: the name \"\xCE\xA9\""},
        {"lone sign", "<< >>",
         [&](Document& document, auto& dict) {
             document.faithfulNumbers(true);
             return dict.set("A", array({name("a#b")}));
         },
         "Object 5 /A [0]: the name \"a#b\""},
        {"sign of null", "<< >>",
         [&](Document& document, auto& dict) {
             document.faithfulNumbers(true);
             return dict.set("#00", null());
         },
         "Object 5: the key \"#00\""},
        {"sign that the exact loader reads", "<< /A /a#b >>", [](auto&, auto&) { return true; },
         ""},
        {"new stream", "<< >>",
         [&](Document& document, auto&) {
             return Tools::makeStream(document, "q", false, dictionary({{"A(", null()}})) !=
                    nullptr;
         },
         "Object 6: the key \"A(\""},
        {"trailer", "<< >>",
         [&](Document& document, auto&) { return document.trailer()->set("A", backslash); },
         "Trailer /A: a text with a backslash"},
        {"by the tools", "<< >>",
         [&](auto&, auto& dict) {
             return dict.set("A", Tools::textString("C:\\dir")) &&
                    dict.set("B", Tools::nameOf("a /\xCE\xA9#")) &&
                    dict.set(Tools::keyOf("a b"), null());
         },
         ""},
        {"Latin name", "<< >>", [&](auto&, auto& dict) { return dict.set("A", name("\xC3\xA9")); },
         ""},
        // Which was told, and opens.
        {"from the file", "<< /A (a\\134b) >>", [](auto&, auto&) { return true; }, ""},
    };
    for (const auto& row : rows) {
        const auto document = Support::open(with(row.file).bytes());
        ASSERT_TRUE(row.set(*document, *castTo<Dictionary>(valueOf(*document, 5)))) << row.name;
        const RecordingLog log;
        Host::Error::set(Host::NoError);
        const bool legible = row.message.empty();
        EXPECT_EQ(Tools::save(*document, path), legible ? Saved::Done : Saved::Unsound) << row.name;
        EXPECT_EQ(Host::Error::get(), legible ? 0U : std::uint32_t{NotReadAgain}) << row.name;
        EXPECT_EQ(std::filesystem::remove(path), legible) << row.name;
        EXPECT_TRUE(legible ? log.text().empty() : log.text().starts_with(row.message))
            << row.name << log.text();
    }
    const auto document = Support::open(with("(C:\\134dir)").bytes());
    const RecordingLog log;
    EXPECT_TRUE(valueOf(*document, 5));
    EXPECT_EQ(Tools::save(*document, path), Saved::Unreadable);
    EXPECT_EQ(Host::Error::get(), ObjectUnreadable);
    EXPECT_NE(log.text().find("Object 5: a text with a backslash"), std::string::npos);
}

TEST(Saving, LooksBeforeItReplaces) {
    using Tools::Saved;
    const std::string path = testing::TempDir() + "files-saved.pdf";
    const std::string sound = DocumentBuilder::minimal().bytes();
    const std::string gap = DocumentBuilder::minimal().object(6, "1").bytes();
    const std::string encrypted = with("1", "/Root 1 0 R /Encrypt 5 0 R").bytes();
    const std::string former = "former";
    const struct {
        const char* name;
        std::string file;
        Tools::SaveOptions options;
        Saved saved;
        std::uint32_t code;
    } rows[] = {
        {"sound", sound, {}, Saved::Done, Host::NoError},
        {"gap", gap, {}, Saved::Unreadable, ObjectUnreadable},
        {"gap, forced", gap, {true, true}, Saved::Unreadable, ObjectUnreadable},
        {"gap, not looked at", gap, {false, false}, Saved::Done, Host::NoError},
        {"encrypted", encrypted, {}, Saved::Unsound, ResultUnsound},
        {"encrypted, forced", encrypted, {true, true}, Saved::Done, Host::NoError},
        {"CR and LF",
         DocumentBuilder::minimal().lineEnding("\r").stream(5, "", "\nq").bytes(),
         {},
         Saved::Unsound,
         ResultUnsound},
        {"signed", with("<< /ByteRange [ 0 1 ] >>").bytes(), {}, Saved::Done, Host::NoError},
        {"encrypted, not looked at", encrypted, {false, false}, Saved::Done, Host::NoError},
    };
    for (const auto& row : rows) {
        const RecordingLog log;
        std::ofstream(path, std::ios::binary | std::ios::trunc) << former;
        const auto document = Support::open(row.file);
        Host::Error::set(Host::NoError);
        EXPECT_EQ(Tools::save(*document, path, row.options), row.saved) << row.name;
        EXPECT_EQ(Host::Error::get(), row.code) << row.name;
        std::ifstream file(path, std::ios::binary);
        const std::string held{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(held, row.saved == Saved::Done ? Support::write(*document) : former) << row.name;
    }
    const auto jpeg =
        Support::open(DocumentBuilder::minimal().stream(5, "/Filter /DCTDecode ", "data").bytes());
    ASSERT_TRUE(jpeg->setCompression(Compression::FlateDecode));
    EXPECT_EQ(Tools::save(*jpeg, path), Saved::Unsound) << "an image is destroyed";
    const auto document = Support::open(sound);
    EXPECT_EQ(Tools::save(*document, testing::TempDir() + "no folder/f.pdf"), Saved::Failed);
    EXPECT_EQ(Host::Error::get(), Host::FileNotOpened);
    std::filesystem::remove(path);
    expectFailure(Tools::open(path), Host::FileNotOpened);
}

} // namespace
