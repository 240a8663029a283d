#include "document/document_obj.h"
#include "host/message.h"
#include "support/testing.h"

namespace {

using namespace Support;

/// A number as messages print it.
std::string printed(std::uint64_t number) {
    Host::Message message;
    message.add(number);
    return std::string(message.text());
}

std::string opened(const std::string& bytes) {
    return outcomeOf([&] { return bool(open(bytes)); });
}

struct Fault {
    const char* name;
    Part part;
    std::string text; ///< what stands there instead
    std::uint32_t code = Host::NoError;
    std::string log = "";
};

void check(std::initializer_list<Fault> faults) {
    for (const auto& [name, part, text, code, log] : faults) {
        const std::string bytes = DocumentBuilder::minimal().put(part, text).bytes();
        EXPECT_EQ(opened(bytes), code == Host::NoError ? "" : failure(code, log)) << name;
    }
}

TEST(Loader, FailsWithTheCodeOfTheBrokenRule) {
    check({{"empty first line", Part::Header, "\n", HeaderUnreadable},
           {"another mark", Part::Header, "%PFD-1.7\n", VersionUnsupported},
           {"end marker cut", Part::EndMarker, "%%EO\n", EndMarkerMissing},
           {"blank behind it", Part::EndMarker, "%%EOF \n", EndMarkerMissing},
           {"blank before it", Part::EndMarker, " \n%%EOF\n", StartXrefMissing},
           {"no startxref", Part::StartXref, "endxref\n", StartXrefMissing},
           {"no trailer", Part::TrailerKeyword, "tailer\n", TrailerMissing},
           {"blank behind it", Part::TrailerKeyword, "trailer \n", TrailerMissing},
           {"closed twice", Part::TrailerEntries, "/Root 1 0 R >>", TrailerMissing},
           {"no offset", Part::XrefOffset, "", TrailerUnreadable},
           {"offset on the line of its keyword", Part::StartXref, "startxref", TrailerUnreadable},
           {"large offset", Part::XrefOffset, "199999999999999999999\n", TrailerUnreadable},
           {"offset behind the end", Part::XrefOffset, "199999\n", XrefUnreadable},
           {"no xref", Part::XrefKeyword, "table\n", XrefUnreadable},
           {"no count", Part::XrefRange, "0\n", XrefUnreadable},
           {"three numbers", Part::XrefRange, "0 5 0\n", XrefUnreadable},
           {"negative number", Part::XrefRange, "-1 5\n", XrefUnreadable}});
    const std::string good = DocumentBuilder::minimal().bytes();
    const std::uint64_t last = good.find("4 0 obj");
    const std::string at = printed(last), dictionary = printed(good.find("<< /Size"));
    const std::string object = "Failed to read object at " + at + "\n";
    const std::string entry = "XRef entry 4h (4) is invalid: 0000000" + std::to_string(last);
    check({{"odd dictionary", Part::TrailerEntries, "/Root", TrailerUnreadable,
            "Uneven number of values in dictionary: 3h (3); offset: " + dictionary + "\n"},
           {"too many entries", Part::XrefRange, "0 9\n", XrefUnreadable,
            "XRef entry 5h (5) is invalid: trailer\n"},
           {"no kind", Part::InUse, "", XrefUnreadable, entry + " 00000  \n"},
           {"other kind", Part::InUse, "x", XrefUnreadable, entry + " 00000 x \n"},
           {"large generation", Part::Generation, "65537", XrefUnreadable, entry + " 65537 n \n"},
           {"odd generation", Part::Generation, "x", XrefUnreadable, entry + " x n \n"},
           {"odd offset", Part::Offset, "x", XrefUnreadable,
            "XRef entry 4h (4) is invalid: x 00000 n \n"},
           {"offset 0", Part::Offset, "0", XrefUnreadable,
            "In use object reference is at offset 0: 4h (4)\n"},
           {"last offset", Part::Offset, "18446744073709551615", ObjectUnreadable,
            "Failed to read object at FFFFFFFFFFFFFFFFh (18446744073709551615)\n"},
           {"not an object", Part::ObjectHeader, "4 0 object\n", ObjectUnreadable, object},
           {"two parts", Part::ObjectHeader, "4 obj\n", ObjectUnreadable, object},
           {"no number", Part::ObjectHeader, "x 0 obj\n", ObjectUnreadable,
            "Object id is invalid: x; offset: " + at + "\n" + object},
           {"other number", Part::ObjectHeader, "7 0 obj\n", ObjectUnreadable,
            "ID for object at " + at + " differs; expected 4h (4), but got 7h (7)\n" + object},
           {"no generation", Part::ObjectHeader, "4 65536 obj\n", ObjectUnreadable,
            "Object generation is invalid: 65536; offset: " + at + "\n" + object},
           {"other generation", Part::ObjectHeader, "4 7 obj\n", ObjectUnreadable,
            "Generation for object at " + at + " differs; expected 0h (0), but got 7h (7)\n" +
                object},
           {"no value", Part::ObjectHeader, "4 0 obj %%\n", ObjectUnreadable,
            "Invalid integer value %% in object; offset: " + printed(last + 8) +
                "\nFailed to read value of object 4h (4) at " + at + "\n" + object}});
}

TEST(Loader, TakesWhatIsUnusualButAllowed) {
    check({{"lines behind the end", Part::EndMarker, "%%EOF\r\n\n\r"},
           {"no line behind the end", Part::EndMarker, "%%EOF"},
           {"lines behind trailer", Part::TrailerKeyword, "trailer\r\n\n"},
           {"nested dictionary", Part::TrailerEntries, "/A << /B << >> >> /Root 1 0 R"},
           {"hex string at the end", Part::TrailerEntries, "/Root 1 0 R /A <</B <41>>>"},
           {"blanks", Part::XrefKeyword, " xref \n"},
           {"blanks", Part::XrefRange, " 0  5 \n"},
           {"blanks, sign and generation", Part::FreeEntry, " +0 65536  f"},
           {"fewer entries", Part::XrefRange, "0 1\n"},
           {"no entries", Part::XrefRange, "0 0\n"},
           {"a second subsection", Part::XrefRange, "0 1\n0000000000 65535 f\n1 4\n"},
           {"value on the line", Part::ObjectHeader, "4 0 obj "},
           {"blanks", Part::ObjectHeader, "4  0 obj\n"},
           {"no endobj", Part::ObjectEnd, "       \n"}});
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
        const auto document = open(DocumentBuilder::minimal().version(text));
        EXPECT_EQ(document ? document->version() : PdfVersion::Unsupported, version) << text;
        EXPECT_EQ(log.text(), lines) << text;
        EXPECT_TRUE(document || Host::Error::get() == VersionUnsupported) << text;
    }
}

TEST(Loader, TakesTheLineEndingOfTheFirstLine) {
    for (const std::string ending : {"\n", "\r", "\r\n"}) {
        const std::string bytes = DocumentBuilder::minimal().lineEnding(ending).bytes();
        const auto document = open(bytes);
        ASSERT_TRUE(document) << ending;
        EXPECT_EQ(document->lineEnding(), ending);
        EXPECT_EQ(document->getPages().size(), 1U) << ending;
    }
    EXPECT_EQ(opened(""), failure(HeaderUnreadable));
    EXPECT_EQ(opened("%PDF-1.7"), failure(LineEndingUnknown));
    EXPECT_EQ(opened("%PDF-1.7\r"), failure(LineEndingUnknown));
    EXPECT_EQ(opened("%PDF-1.7\n"), failure(EndMarkerMissing));
}

TEST(Loader, NumbersObjectsFromTheFirstOfTheTable) {
    const auto document = open(DocumentBuilder().object(3, "/C").object(1, "/A", 65535).first(1));
    ASSERT_TRUE(document);
    const auto objects = document->getObjects();
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(textOf(objects[0]) + ", " + textOf(objects[1]), "1 (65535), 3 (0)");
    EXPECT_EQ(textOf(valueOf(*document, 1, 65535)), "A");
    expectFailure(valueOf(*document, 1), ObjectNotFound);
    EXPECT_FALSE(document->changed());
    EXPECT_EQ(dynamic_cast<DocumentObj&>(*document).state().nextObjectId, 4U);
}

TEST(Loader, RefusesUnusableSources) {
    const auto narrow =
        Adapters::Stripe::ElementSize::create(stripeOf(DocumentBuilder::minimal().bytes()), 1);
    expectFailure(Document::create(narrow), InvalidArgument);
    expectFailure(Document::create(nullptr), NullArgument);
}

} // namespace
