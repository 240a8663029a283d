#include "support/results.h"

#include <pdf/tools/losses.h>

namespace {

using namespace Support;

/// "kind count first;" for each kind of loss.
std::string lossesOf(const Ref<Document>& document) {
    std::string all;
    const auto found = resultOf([&] { return Tools::losses(document); });
    for (const auto& [kind, count, first] : found.value())
        all += std::to_string(static_cast<int>(kind)) + " " + std::to_string(count) + " " +
               std::to_string(first) + ";";
    return all;
}

TEST(Losses, AreCountedByKind) {
    const DocumentBuilder minimal = DocumentBuilder::minimal();
    std::string subsections = minimal.bytes();
    subsections.replace(subsections.find("xref\n0 5\n"), 9, "xref\n0 4\n");
    std::string behindBlank = subsections;
    behindBlank.insert(behindBlank.find("trailer") - 20, " ");
    const struct {
        std::string name, file, losses;
    } rows[] = {
        {"none", minimal.bytes(), ""},
        {"numbers that stay", withFive("[1.0 +5 -1.5 007 .5 5. -0 -0.0 1.50 0.10]").bytes(), ""},
        {"fractions", withFive("[1.05 /A << /B .001 >> -7.0009]").bytes(), "5 3 5;"},
        {"signs", withFive("[-0.5 -.5 -0.05 -1.5]").bytes(), "5 1 5;6 3 5;"},
        {"equal keys", withFive("<< /A 1 /A 2 /B 1 /A 3 >>").bytes(), "7 2 5;"},
        {"backslashes", withFive("[(a\\134b) (a\\\\n) (a\\n)]").bytes(), "8 2 5;"},
        {"characters", withFive("[(\x81\x8D) (\\201) (\\000) <81>]").bytes(), "9 2 5;"},
        {"revisions", withFive("1", "/Root 1 0 R /Prev 9 /XRefStm 1").bytes(), "0 2 0;"},
        {"encryption", withFive("1", "/Root 1 0 R /Encrypt 5 0 R").bytes(), "2 1 0;"},
        {"subsections", subsections, "1 1 0;"},
        {"subsections behind a blank", behindBlank, "1 1 0;"},
        {"no pages", withFive("1", "/Root 5 0 R").bytes(), "3 1 0;"},
        {"gap", DocumentBuilder::minimal().object(6, "1").object(8, "1").bytes(), "4 2 6;"},
        {"trailer", withFive("1", "/Root 1 0 R /A 1.05").bytes(), "5 1 0;"},
        {"signed", withFive("<< /V << /ByteRange [ 0 1 2 3 ] >> /N /ByteRange >>").bytes(),
         "12 1 5;"},
        {"two signatures",
         withFive("<< /ByteRange [ 0 1 2 3 ] >>")
             .object(6, "<< /ByteRange 7 0 R >>")
             .object(7, "[ 1 ]")
             .bytes(),
         "12 2 5;"},
        {"permissions",
         withFive("1")
             .object(1, "<< /Type /Catalog /Pages 2 0 R /Perms << /UR3 5 0 R >> >>")
             .bytes(),
         "12 1 1;"},
    };
    for (const auto& row : rows) {
        const auto document = open(row.file);
        ASSERT_TRUE(document) << row.name;
        EXPECT_EQ(lossesOf(document), row.losses) << row.name;
        document->faithfulNumbers(true);
        const bool numbers = row.losses.starts_with("5") || row.losses.starts_with("6");
        EXPECT_EQ(lossesOf(document), numbers ? "" : row.losses) << row.name;
    }
    EXPECT_STREQ(Tools::lossText(static_cast<Loss>(lossKinds)), "unknown loss");
    expectRefusal(resultOf([] { return Tools::losses(nullptr); }), NullArgument);
}

TEST(Losses, TellLineFeedsThatGo) {
    const std::string zipped = deflated("\nq");
    for (const std::string_view ending : {"\r", "\n", "\r\n"}) {
        const auto document = open(DocumentBuilder::minimal()
                                       .lineEnding(ending)
                                       .stream(5, "/Filter /FlateDecode ", zipped)
                                       .stream(6, "", "\n\n")
                                       .stream(7, "", "\n")
                                       .object(8, "<< /Length 0 >>\rstream\r\n\nendstream")
                                       .object(9, "<< /Length 9999 >>\rstream\r\n\n"));
        ASSERT_TRUE(document);
        const bool lost = ending == "\r";
        EXPECT_EQ(lossesOf(document), lost ? "10 2 6;" : "");
        for (const std::uint32_t id : {5U, 6U, 7U, 8U, 9U})
            EXPECT_TRUE(streamOf(*document, id));
        EXPECT_EQ(lossesOf(document), lost ? "10 2 6;" : "") << "touched";
        EXPECT_EQ(contentsOf(document->readStreamData(streamOf(*document, 5), true)), "\nq")
            << "nothing was attached";
        EXPECT_FALSE(document->changed());
        EXPECT_TRUE(Tools::setStreamData(document, streamOf(*document, 6), "q"));
        EXPECT_EQ(lossesOf(document), lost ? "10 1 7;" : "") << "replaced";
    }
}

TEST(Losses, TellWhatSetCompressionTookAway) {
    const std::string zipped = deflated("\2aaaa");
    const std::string flate = "/Filter /FlateDecode ";
    const std::string up = "<< /Predictor 12 /Columns 4 >> ";
    const struct {
        std::string name, entries, data;
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
        const auto document =
            open(DocumentBuilder::minimal().stream(5, row.entries, row.data).object(6, up));
        for (std::size_t step = 0; step < std::size(row.losses); ++step) {
            const auto target = step % 2 == 0 ? Compression::None : Compression::FlateDecode;
            ASSERT_TRUE(document->setCompression(target)) << row.name;
            EXPECT_EQ(lossesOf(document), row.losses[step]) << row.name << step;
        }
    }
    const auto failing = open(DocumentBuilder::minimal()
                                  .stream(5, "/Filter /DCTDecode ", "data")
                                  .object(6, "<< >>\nstream\n"));
    EXPECT_FALSE(failing->setCompression(Compression::FlateDecode));
    EXPECT_EQ(lossesOf(failing), "");
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
        const auto document = open(file);
        const auto array = touched ? castTo<Array>(valueOf(*document, 5)) : nullptr;
        for (const bool faithful : {false, true, false}) {
            document->faithfulNumbers(faithful);
            EXPECT_EQ(document->faithfulNumbers(), faithful);
            const std::string written = write(*document);
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
    const auto foreign = open(
        DocumentBuilder::minimal()
            .object(3,
                    "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources << /ExtGState << /G "
                    "<< /LW 1.05 >> >> >> >>")
            .object(4, "<< /Length 012 >>\nstream\n0 0 9 9 re f\nendstream"));
    const auto document = open(DocumentBuilder::minimal());
    document->faithfulNumbers(true);
    ASSERT_TRUE(document->addBackground(foreign, 0));
    EXPECT_NE(write(*document).find("/LW 1.05"), std::string::npos);
    foreign->faithfulNumbers(true);
    EXPECT_NE(write(*foreign).find("/Length 012 "), std::string::npos);
    ASSERT_TRUE(foreign->setCompression(Compression::FlateDecode));
    EXPECT_EQ(write(*foreign).find("/Length 012 "), std::string::npos);
}

} // namespace
