#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"

#include <host/stripe_adapters.h>
#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Testing;
using namespace Libraries::Files::PDF;

/// How opening ended: "opened", or the code and what was logged.
std::string outcome(const std::string& bytes) {
    const RecordingLog log;
    Host::Error::set(Host::NoError);
    if (Testing::open(bytes)) return "opened" + log.text();
    return std::to_string(Host::Error::get()) + "\n" + log.text();
}

/// Rows of "what stands in a good file => what takes its place"; each must end in `result`.
void check(const std::string& result, std::initializer_list<std::string> rows) {
    for (const std::string& row : rows) {
        std::string text = DocumentBuilder::minimal().bytes();
        const std::size_t arrow = row.find(" => ");
        const std::size_t found = text.find(row.substr(0, arrow));
        ASSERT_NE(found, text.npos) << row;
        EXPECT_EQ(outcome(text.replace(found, arrow, row.substr(arrow + 4))), result) << row;
    }
}

TEST(Loader, FailsWithTheCodeOfTheBrokenRule) {
    check("1280\n", {"%PDF-1.7 => "});
    check("1281\n", {"PDF => PFD"});
    check("1282\n", {"%%EOF => %%EO", "%%EOF => %%EOF "});
    check("1283\n", {"startxref => endxref", "\n%%EOF =>  \n%%EOF"});
    check("1284\n", {"trailer => tailer", "trailer => trailer ", "R >>\nst => R >> >>\nst"});
    check("1285\n",
          {"279\n => ", "startxref\n => startxref", "xref\n279 => xref\n199999999999999999999"});
    check("1285\nUneven number of values in dictionary: 3h (3); offset: 18Ch (396)\n",
          {"/Size => "});
    check("1286\n", {"xref\n279 => xref\n199999", "xref => table", "xref\n0 5 => xref\n0",
                     "xref\n0 => xref\n-10"});
    check("1286\nXRef entry 5h (5) is invalid: trailer\n", {"xref\n0 5 => xref\n0 1995"});
    check("1286\nXRef entry 4h (4) is invalid: 0000000217 00000 \n", {"217 00000 n => 217 00000"});
    check("1286\nXRef entry 4h (4) is invalid: 0000000217 00000 x \n",
          {"217 00000 n => 217 00000 x"});
    check("1286\nXRef entry 4h (4) is invalid: 0000000217 65537 n \n", {"217 00000 => 217 65537"});
    check("1286\nIn use object reference is at offset 0: 4h (4)\n", {"0000000217 => 0000000000"});
    check("1287\nFailed to read object at 2540BE3FFh (9999999999)\n", {"0000000217 => 9999999999"});
    const std::string object = "Failed to read object at D9h (217)\n";
    check("1287\n" + object, {"4 0 obj\n<< /Leng => 4 0 object\n<</Le", "4 0 obj => \n4 0 ob"});
    check("1287\nObject id is invalid: x; offset: D9h (217)\n" + object, {"4 0 obj => x 0 obj"});
    check("1287\nID for object at D9h (217) differs; expected 4h (4), but got 7h (7)\n" + object,
          {"4 0 obj => 7 0 obj"});
    check("1287\nObject generation is invalid: 65536; offset: D9h (217)\n" + object,
          {"4 0 obj\n<< /Leng => 4 65536 obj\n<</L"});
    check("1287\nGeneration for object at D9h (217) differs; expected 0h (0), but got 7h (7)\n" +
              object,
          {"4 0 obj => 4 7 obj"});
    check("1287\nInvalid integer value %% in object; offset: E1h (225)\n"
          "Failed to read value of object 4h (4) at D9h (217)\n" +
              object,
          {"4 0 obj\n<< => 4 0 obj %%"});
}

TEST(Loader, TakesWhatIsUnusualButAllowed) {
    check("opened", {"%%EOF => %%EOF\r\n\n\r", "%%EOF\n => %%EOF", "trailer\n => trailer\r\n\n",
                     "/Root => /A << /B << >> >> /Root", "/Root => /A <</B <41>>> /Root",
                     "xref\n0 5 =>  xref \n 0  5 ", "0000000000 65535 f  =>  +0 65536  f",
                     "xref\n0 5 => xref\n0 1", "xref\n0 5 => xref\n0 0",
                     "xref\n0 5\n => xref\n0 1\n0000000000 65535 f\n1 4\n", "4 0 obj\n => 4 0 obj ",
                     "4 0 obj\n<<  => 4  0 obj\n<<", "endobj\nxref =>       \nxref"});
}

TEST(Loader, ReadsVersions) {
    const std::tuple<const char*, PdfVersion, const char*> rows[] = {
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
        {"1", {}, ""}};
    for (const auto& [text, version, lines] : rows) {
        const RecordingLog log;
        const auto document = Testing::open(DocumentBuilder::minimal().version(text).bytes());
        EXPECT_EQ(document ? document->version() : PdfVersion::Unsupported, version) << text;
        EXPECT_EQ(log.text(), lines) << text;
        EXPECT_TRUE(document || Host::Error::get() == VersionUnsupported) << text;
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
    std::string bytes = DocumentBuilder().object(3, "/C").object(1, "/A", 65535).bytes();
    constexpr std::string_view first = "0 4\n0000000000 65535 f \n";
    const auto document = Testing::open(bytes.replace(bytes.find(first), first.size(), "1 3\n"));
    ASSERT_TRUE(document);
    const auto objects = document->getObjects();
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(textOf(objects[0]) + ", " + textOf(objects[1]), "1 (65535), 3 (0)");
    EXPECT_EQ(textOf(valueOf(*document, 1, 65535)), "A");
    EXPECT_FALSE(valueOf(*document, 1));
    EXPECT_EQ(Host::Error::get(), ObjectNotFound);
    EXPECT_FALSE(document->changed());
}

/// Fails at every read of a stripe that is read element by element, one after the other.
TEST(Loader, TakesNoFaultForAnEnd) {
    const std::string bytes = DocumentBuilder::minimal()
                                  .object(5, "[ /F1 /F2 (a) <41> 12 5 0 R ]")
                                  .object(6, "/DeviceRGB")
                                  .object(7, "<< /A /B >>")
                                  .lineEnding("\r\n")
                                  .bytes();
    const RecordingLog log;
    for (const auto fault : {FailingStripe::Fault::Failed, FailingStripe::Fault::NoByte}) {
        const auto source = Host::make<FailingStripe>(stripeOf(bytes));
        std::vector<std::uint32_t> codes{0};
        for (std::uint64_t call = 1;; ++call) {
            source->failAt(FailingStripe::Call::Read, call, fault);
            const bool opened = bool(Document::create(source));
            if (source->calls(FailingStripe::Call::Read) < call) break;
            EXPECT_FALSE(opened) << "read " << call;
            if (codes.back() != Host::Error::get()) codes.push_back(Host::Error::get());
        }
        EXPECT_EQ(codes, (std::vector<std::uint32_t>{0, HeaderUnreadable, LineEndingUnknown,
                                                     EndMarkerMissing, StartXrefMissing,
                                                     TrailerMissing, TrailerUnreadable,
                                                     XrefUnreadable, ObjectUnreadable}));
    }
}

TEST(Loader, RefusesUnusableSources) {
    const auto narrow =
        Adapters::Stripe::ElementSize::create(stripeOf(DocumentBuilder::minimal().bytes()), 1);
    EXPECT_FALSE(Document::create(narrow));
    EXPECT_EQ(Host::Error::get(), InvalidArgument);
    EXPECT_FALSE(Document::create(nullptr));
    EXPECT_EQ(Host::Error::get(), NullArgument);
}

} // namespace
