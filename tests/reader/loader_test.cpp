#include "support/document_builder.h"
#include "support/recording_log.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Libraries::Files::PDF;
using Testing::DocumentBuilder;

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    const std::size_t found = text.find(from);
    if (found == std::string::npos) return text;
    return text.replace(found, from.size(), to);
}

/// How opening ended: "opened", or the code and what was logged.
std::string outcome(const std::string& bytes) {
    const Testing::RecordingLog log;
    Host::Error::set(Host::NoError);
    if (Testing::open(bytes)) return "opened" + log.text();
    return std::to_string(Host::Error::get()) + "\n" + log.text();
}

TEST(Loader, FailsWithTheCodeOfTheBrokenRule) {
    const std::string object = "Failed to read object at D9h (217)\n";
    const struct {
        const char* fault;
        std::string outcome;
    } rows[] = {
        {"HeaderMissing", "1280\n"},
        {"HeaderMisspelt", "1281\n"},
        {"EndMarkerMissing", "1282\n"},
        {"SpaceBehindEndMarker", "1282\n"},
        {"StartXrefMissing", "1283\n"},
        {"SpaceBehindXrefOffset", "1283\n"},
        {"TrailerMissing", "1284\n"},
        {"SpaceBehindTrailer", "1284\n"},
        {"TrailerUnbalanced", "1284\n"},
        {"XrefOffsetMissing", "1285\n"},
        {"XrefOffsetOnKeywordLine", "1285\n"},
        {"XrefOffsetOverflows", "1285\n"},
        {"TrailerUneven",
         "1285\nUneven number of values in dictionary: 3h (3); offset: 18Ch (396)\n"},
        {"XrefOffsetPastEnd", "1286\n"},
        {"XrefKeywordMissing", "1286\n"},
        {"XrefHeaderShort", "1286\n"},
        {"XrefHeaderNegative", "1286\n"},
        {"EntryMissing", "1286\nXRef entry 5h (5) is invalid: trailer\n"},
        {"EntryShort", "1286\nXRef entry 4h (4) is invalid: 0000000217 00000 \n"},
        {"EntryKindUnknown", "1286\nXRef entry 4h (4) is invalid: 0000000217 00000 x \n"},
        {"EntryGenerationTooLarge", "1286\nXRef entry 4h (4) is invalid: 0000000217 65537 n \n"},
        {"EntryOffsetZero", "1286\nIn use object reference is at offset 0: 4h (4)\n"},
        {"EntryPastEnd", "1287\nFailed to read object at 2540BE3FFh (9999999999)\n"},
        {"ObjectKeywordMissing", "1287\n" + object},
        {"ObjectIdInvalid", "1287\nObject id is invalid: x; offset: D9h (217)\n" + object},
        {"ObjectIdDiffers",
         "1287\nID for object at D9h (217) differs; expected 4h (4), but got 4Dh (77)\n" + object},
        {"ObjectGenerationInvalid",
         "1287\nObject generation is invalid: 65536; offset: D9h (217)\n" + object},
        {"ObjectGenerationDiffers",
         "1287\nGeneration for object at D9h (217) differs; expected 0h (0), but got 7h (7)\n" +
             object},
    };
    for (const auto& row : rows) {
        DocumentBuilder builder = DocumentBuilder::minimal();
        EXPECT_EQ(outcome(builder.fault(row.fault).bytes()), row.outcome) << row.fault;
    }
}

TEST(Loader, TakesWhatIsUnusualButAllowed) {
    const std::string value = "Failed to read value of object 4h (4) at D9h (217)\n"
                              "Failed to read object at D9h (217)\n";
    const struct {
        const char* name;
        const char* from;
        const char* to;
        std::string outcome;
    } rows[] = {
        {"line endings behind the end", "%%EOF", "%%EOF\r\n\n\r", "opened"},
        {"no line ending at the end", "%%EOF\n", "%%EOF", "opened"},
        {"line endings behind trailer", "trailer\n", "trailer\r\n\n", "opened"},
        {"nested trailer", "/Root", "/A << /B << >> >> /Root", "opened"},
        {"pairs do not overlap", "/Root", "/A <</B <41>>> /Root", "opened"},
        {"spaces around xref", "xref\n0 5", " xref \n 0  5 ", "opened"},
        {"entries are split freely", "0000000000 65535 f ", " +0 65536  f", "opened"},
        {"nothing but the free entry", "xref\n0 5", "xref\n0 1", "opened"},
        {"no entry", "xref\n0 5", "xref\n0 0", "opened"},
        {"first subsection only", "xref\n0 5\n", "xref\n0 1\n0000000000 65535 f\n1 4\n", "opened"},
        {"value on the header line", "4 0 obj\n", "4 0 obj ", "opened"},
        {"spaces in the header line", "4 0 obj\n<< ", "4  0 obj\n<<", "opened"},
        {"nothing behind the value", "endobj\nxref", "      \nxref", "opened"},
        {"comment behind obj", "4 0 obj\n<<", "4 0 obj %%",
         "1287\nInvalid integer value %% in object; offset: E1h (225)\n" + value},
        {"object begins with a line ending", "4 0 obj", "\n4 0 ob",
         "1287\nFailed to read object at D9h (217)\n"},
    };
    for (const auto& row : rows) {
        const std::string bytes = DocumentBuilder::minimal().bytes();
        ASSERT_NE(bytes.find(row.from), std::string::npos) << row.name;
        EXPECT_EQ(outcome(replaced(bytes, row.from, row.to)), row.outcome) << row.name;
    }
}

TEST(Loader, ReadsVersions) {
    const struct {
        const char* text;
        PdfVersion version;
        const char* log;
    } rows[] = {
        {"1.0", PdfVersion::V1_0, ""},
        {"1.4", PdfVersion::V1_4, ""},
        {"1.7", PdfVersion::V1_7, ""},
        {"2.0", PdfVersion::V2_0, ""},
        {"01.+7", PdfVersion::V1_7, ""},
        {"1.", PdfVersion::V1_0, ""},
        {"1.8", {}, "Unsupported minor version for major version 1h (1): 8h (8)\n"},
        {"2.1", {}, "Unsupported minor version for major version 2h (2): 1h (1)\n"},
        {"3.0", {}, "Unsupported major version: 3h (3)\n"},
        {"x.0", {}, "Unsupported major version: x\n"},
        {"1.7 ", {}, "Unsupported minor version: 7 \n"},
        {"1.7.1", {}, "Unsupported minor version: 7.1\n"},
        {"1", {}, ""},
    };
    for (const auto& row : rows) {
        const Testing::RecordingLog log;
        const auto document = Testing::open(DocumentBuilder::minimal().version(row.text).bytes());
        EXPECT_EQ(document ? document->version() : PdfVersion::Unsupported, row.version)
            << row.text;
        EXPECT_EQ(log.text(), row.log) << row.text;
        EXPECT_TRUE(document || Host::Error::get() == VersionUnsupported) << row.text;
    }
}

TEST(Loader, TakesTheLineEndingOfTheFirstLine) {
    for (const std::string ending : {"\n", "\r", "\r\n"}) {
        const std::string bytes = DocumentBuilder::minimal().lineEnding(ending).bytes();
        const auto document = Testing::open(bytes);
        ASSERT_TRUE(document) << ending;
        EXPECT_EQ(document->lineEnding(), ending);
        EXPECT_EQ(document->getPages().size(), 1U);
    }
    EXPECT_EQ(outcome(""), "1280\n");
    EXPECT_EQ(outcome("%PDF-1.7"), "1299\n");
    EXPECT_EQ(outcome("%PDF-1.7\r"), "1299\n");
    EXPECT_EQ(outcome("%PDF-1.7\n"), "1282\n");
}

TEST(Loader, NumbersObjectsFromTheFirstOfTheTable) {
    const auto document = Testing::open(
        DocumentBuilder().firstId(7).object(9, "/C").object(7, "/A", 65535).trailer("").bytes());
    ASSERT_TRUE(document);
    const auto objects = document->getObjects();
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(Testing::textOf(objects[0]), "7 (65535)");
    EXPECT_EQ(Testing::textOf(objects[1]), "9 (0)");
    EXPECT_EQ(Testing::textOf(Testing::valueOf(*document, 7, 65535)), "A");
    EXPECT_FALSE(Testing::valueOf(*document, 7));
    EXPECT_EQ(Host::Error::get(), ObjectNotFound);
    EXPECT_FALSE(document->changed());
}

TEST(Loader, RefusesUnusableSources) {
    EXPECT_FALSE(Document::create(nullptr));
    EXPECT_EQ(Host::Error::get(), NullArgument);
    EXPECT_FALSE(Document::create(Adapters::Stripe::ElementSize::create(
        Testing::stripeOf(DocumentBuilder::minimal().bytes()), 1)));
    EXPECT_EQ(Host::Error::get(), InvalidArgument);
}

} // namespace
