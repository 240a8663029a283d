#include "compose/resources.h"
#include "document/document_obj.h"
#include "support/results.h"

namespace {

using namespace Support;

/// `count` pages from object 3 on, each with the content "PREFIX INDEX" in the object behind it and
/// a font of that prefix.
DocumentBuilder pages(std::size_t count, const std::string& prefix) {
    DocumentBuilder builder;
    builder.version("1.4").object(1, "<< /Type /Catalog /Pages 2 0 R >>");
    builder.object(2, pageTree(3, count, 2));
    for (std::size_t index = 0; index < count; ++index) {
        const auto id = static_cast<std::uint32_t>(3 + 2 * index);
        builder.object(id, "<< /Type /Page /Contents " + std::to_string(id + 1) +
                               " 0 R /Resources << /Font << /" + prefix + " << >> >> >> >>");
        builder.stream(id + 1, "", prefix + std::to_string(index));
    }
    return builder;
}

std::string contentsOfPages(const Document& document) {
    std::string all;
    for (const auto& page : document.getPages())
        all += textOf(page->valueAsDictionary()->find("Contents"_str)) + ";";
    return all;
}

/// The foreign page that goes beneath page `page`; -1 for none.
int beneath(std::uint32_t mode, int page, int foreignPages) {
    if (mode == 0) return page == 0 ? 0 : -1;
    if (mode == 1) return 0;
    if (page < foreignPages && mode < 4) return page;
    return mode == 3 ? foreignPages - 1 : -1;
}

void expectLaidBeneath(std::uint32_t mode, int count, int foreignCount) {
    const Ref<Document> document = open(pages(std::size_t(count), "own"));
    Ref<Document> foreign = open(pages(std::size_t(foreignCount), "foreign").version("1.6"));
    Host::Error::set(4711);
    const bool done = document->addBackground(foreign, mode);
    foreign = nullptr;
    ASSERT_EQ(done, foreignCount != 0);
    const bool changed = done && count != 0;
    EXPECT_EQ(document->changed(), changed);
    EXPECT_EQ(document->version(), changed ? PdfVersion::V1_6 : PdfVersion::V1_4);
    EXPECT_TRUE(changed || Host::Error::get() == (done ? 4711U : ForeignPageEmpty));
    if (!changed) return;
    const int read = mode < 2 ? 1 : foreignCount;
    EXPECT_EQ(document->getObjects().size(), static_cast<std::size_t>(2 + 2 * count + read));
    for (const auto& result : {document, open(write(*document))}) {
        int page = 0;
        for (const auto& object : result->getPages()) {
            const int below = beneath(mode, page, foreignCount);
            const std::string content = "own" + std::to_string(page);
            EXPECT_EQ(drawn(result, std::size_t(page++)),
                      (below < 0 ? "" : "foreign" + std::to_string(below) + "|") + content);
            EXPECT_EQ(textOf(object->valueAsDictionary()->find("Resources"_str)),
                      below < 0 ? "<< Font -> << own -> << >> >> >>"
                                : "<< Font -> << foreign -> << >> own -> << >> >> >>");
        }
        EXPECT_EQ(page, count);
    }
}

TEST(AddBackground, ChangesExactlyTheChosenPages) {
    const RecordingLog log;
    for (std::uint32_t mode = 0; mode < 5; ++mode) {
        for (int cases = 0; cases < 36; ++cases) {
            const int count = cases / 6, foreignCount = cases % 6;
            SCOPED_TRACE(testing::Message() << "mode " << mode << ", " << count << " pages, "
                                            << foreignCount << " foreign ones");
            expectLaidBeneath(mode, count, foreignCount);
        }
    }
    EXPECT_NE(log.text().find("Background has more than 1 page: 5h (5)\n"), std::string::npos);
}

TEST(AddBackground, CopiesASharedStreamOnce) {
    const Ref<Document> alone = open(pages(2, "own"));
    expectFailure(alone->addBackground(nullptr, 1), NullArgument);
    ASSERT_TRUE(alone->addBackground(alone, 1));
    EXPECT_EQ(contentsOfPages(*alone), "[7 (0)4 (0) ];[7 (0)6 (0) ];");
    const Ref<Document> document = open(pages(2, "own").object(5, "<< /Contents [6 0 R 4 0 R] >>"));
    const Ref<Document> foreign =
        open(pages(2, "foreign")
                 .object(3, "<< /Type /Page /Contents [6 0 R 4 0 R 6 0 R] /Resources << >> >>"));
    ASSERT_TRUE(document->addBackground(foreign, 2));
    EXPECT_EQ(document->getObjects().size(), 8U);
    EXPECT_EQ(contentsOfPages(*document), "[8 (0)7 (0)8 (0)4 (0) ];[8 (0)6 (0)4 (0) ];");
}

TEST(AddBackground, MergesInheritedResourcesToo) {
    const char* catalog = "<< /Kids [3 0 R] /Type /Pages /Resources << /Font << /A 1 >> >> >>";
    const Ref<Document> document = open(pages(1, "own").version("2.0").object(2, catalog));
    ASSERT_TRUE(document->addBackground(open(pages(1, "f")), 0));
    EXPECT_EQ(document->version(), PdfVersion::V2_0) << "never lowered";
    const auto resourcesOf = [&](std::uint32_t id) {
        return textOf(castTo<Dictionary>(valueOf(*document, id))->find("Resources"_str));
    };
    EXPECT_EQ(resourcesOf(3), "<< Font -> << A -> 1.0 f -> << >> own -> << >> >> >>");
    // What a foreign page inherits goes to where this document's pages inherit from.
    const auto foreign = [](const char* resources) {
        const std::string kids = "<< /Type /Pages /Kids [3 0 R] /Resources ";
        return open(
            pages(1, "f").object(2, kids + resources + " >>").object(3, "<< /Contents 4 0 R >>"));
    };
    ASSERT_TRUE(document->addBackground(foreign("<< /XObject << /B 2 >> >>"), 0));
    EXPECT_EQ(resourcesOf(2), "<< Font -> << A -> 1.0 >> XObject -> << B -> 2.0 >> >>");
    const RecordingLog log;
    expectFailure(document->addBackground(foreign("<< /Font << /A 2 >> >>"), 0), StepFailed);
    EXPECT_TRUE(log.text().ends_with("Failed to add resources to page catalog resource "
                                     "dictionary\n"));
    ASSERT_TRUE(open(pages(1, "own"))->addBackground(foreign("<< /Font << /A 2 >> >>"), 0));
}

TEST(AddBackground, LeavesTheContentsOfAllPagesOnFailure) {
    constexpr std::size_t own = 0, foreign = 1;
    // What goes wrong with one object of either document of two pages, laid page by page.
    const struct {
        std::size_t which;
        std::uint32_t id;
        const char* body;
        std::uint32_t code;
        std::string log;         ///< how it ends
        bool merged = false;     ///< whether the first page has got its resources by then
        std::size_t objects = 6; ///< in the end
    } rows[] = {
        {foreign, 2, "<< /Type /Pages >>", ForeignTreeInvalid,
         "Pages object has no valid Kids entry"},
        {foreign, 5, "[1]", ForeignPageInvalid,
         "Failed to retrieve dictionary of foreign page 1h (1)"},
        {own, 2, "<< /Type /Pages >>", PageTreeInvalid, "Pages object has no valid Kids entry"},
        {foreign, 5, "<< >>", ForeignPageEmpty, "Foreign page has no contents"},
        {foreign, 5, "<< /Contents 1 >>", ForeignPageInvalid,
         "Foreign page content's has unexpected type: 3h (3)"},
        {foreign, 5, "<< /Contents 99 0 R >>", ForeignPageInvalid,
         "Failed to resolve content stream of foreign page"},
        {foreign, 5, "<< /Contents [4 0 R 1] >>", ForeignPageInvalid,
         "Content element 1h (1) of foreign page has unexpected type: 3h (3)"},
        {foreign, 5, "<< /Contents [99 0 R] >>", ForeignPageInvalid,
         "Failed to resolve element 0h (0) of foreign page"},
        {foreign, 5, "<< /Contents [3 0 R] >>", ForeignPageInvalid,
         "Content stream of foreign page is not of type stream for element 0h (0)"},
        {own, 2, "<< /Type /Pages /Kids [3 0 R 5 0 R] /Resources 1 >>", PageTreeInvalid,
         "Failed to retrieve page catalog resource dictionary"},
        {own, 5, "[1]", PageInvalid, "Failed to retrieve page dictionary for page 5 (0)", true},
        {foreign, 5, "<< /Contents 6 0 R /Resources 1 >>", PageInvalid,
         "Failed to retrieve resources for foreign page 1h (1)", true},
        {own, 2, "<< /Type /Pages /Kids [3 0 R 5 0 R] /Resources << /Font << /own 1 >> >> >>",
         StepFailed, "Failed to integrate page catalog resources into page 3 (0)"},
        {own, 5, "<< /Resources 1 >>", PageInvalid, "Failed to retrieve resources for page 5 (0)",
         true},
        {own, 5, "<< /Resources << /A << /foreign 1 >> >> >>", StepFailed,
         "Failed to add resources of foreign page 1h (1) to page 5 (0)", true},
        {foreign, 5, "<< /Contents 6 0 R >>", PageTreeInvalid,
         "Failed to retrieve foreign page catalog resource dictionary", true},
        {foreign, 6, "<< >>\nstream\nx\nendstream", ForeignStreamUnread,
         "Failed to retrieve foreign stream", true},
        {foreign, 6, "<< /Length 1 /X 99 0 R >>\nstream\nx\nendstream", StreamNotCopied,
         "Failed to add foreign stream", true},
        {own, 5, "<< /Contents 1 >>", StepFailed,
         "Content of page is neither object reference nor array 3h (3)\n"
         "Failed to update page 5 (0)",
         true, 8},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.body + (", which is: " + row.log));
        DocumentBuilder builders[] = {pages(2, "own"), pages(2, "foreign")};
        // A foreign catalog that cannot be used matters only where a page has no resources.
        builders[foreign].object(2, "<< /Type /Pages /Kids [3 0 R 5 0 R] /Resources 1 >>");
        builders[row.which].object(row.id, row.body);
        const Ref<Document> document = open(builders[own]);
        const RecordingLog log;
        expectFailure(document->addBackground(open(builders[foreign]), 2), row.code);
        EXPECT_TRUE(log.text().ends_with(row.log + "\n")) << log.text();
        EXPECT_EQ(document->getObjects().size(), row.objects);
        EXPECT_EQ(document->version(), PdfVersion::V1_4);
        const auto first = castTo<Dictionary>(valueOf(*document, 3));
        EXPECT_EQ(textOf(first->find("Contents"_str)), "4 (0)");
        EXPECT_EQ(textOf(first).find("foreign") != std::string::npos, row.merged);
    }
}

TEST(AddBackground, RestoresUpToAPageThatHadNoContents) {
    const Ref<Document> document =
        open(pages(4, "own").object(5, "<< /X 1 >>").object(9, "<< /Contents 1 >>"));
    RecordingLog log;
    expectFailure(document->addBackground(open(pages(1, "f")), 1), StepFailed);
    EXPECT_EQ(contentsOfPages(*document), "4 (0);[11 (0) ];[11 (0)8 (0) ];1.0;");
    EXPECT_TRUE(log.text().ends_with("Failed to update page 9 (0)\n"
                                     "Failed to restore contents of page 5 (0)\n"))
        << log.text();
    EXPECT_EQ(log.entries().back().level, Host::LogLevel::Warning);
}

/// A page whose resources have `names` that lead to object 6, `last` and so on behind it.
Ref<Document> letterheadWith(int names, const std::vector<std::string>& objects) {
    std::string fonts;
    for (int name = 0; name < names; ++name)
        fonts += "/N" + std::to_string(name) + " 6 0 R ";
    DocumentBuilder builder = DocumentBuilder::minimal();
    builder.object(5, "<< /Font << " + fonts + ">> >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources 5 0 R >>");
    std::uint32_t id = 6;
    for (const std::string& body : objects)
        builder.object(id++, body);
    return open(builder);
}

TEST(AddBackground, CopiesNoMoreThanASoundDocumentNeeds) {
    const std::string stream =
        "<< /Length 5000 >>\nstream\n" + std::string(5000, 's') + "\nendstream";
    std::vector<std::string> doubling;
    for (int id = 7; id < 26; ++id)
        doubling.push_back("[" + std::to_string(id) + " 0 R " + std::to_string(id) + " 0 R]");
    doubling.emplace_back("(end)");
    const std::string than = " to be copied than a sound document needs\n";
    const struct {
        const char* name;
        Ref<Document> foreign;
        std::string message; ///< where it is refused
    } rows[] = {{"forty users", letterheadWith(40, {"[7 0 R 8 0 R]", stream, "(end)"}), ""},
                {"doubling, for each name", letterheadWith(4, doubling), "More objects are" + than},
                {"data",
                 letterheadWith(4, {"[7 0 R 7 0 R 7 0 R 7 0 R 7 0 R 7 0 R 7 0 R 7 0 R]",
                                    "[8 0 R 8 0 R 8 0 R 8 0 R 8 0 R 8 0 R]", stream}),
                 "More is" + than}};
    for (const auto& row : rows) {
        const auto document = open(DocumentBuilder::minimal());
        const RecordingLog log;
        EXPECT_EQ(document->addBackground(row.foreign, 0), row.message.empty()) << row.name;
        EXPECT_TRUE(log.text().starts_with(row.message)) << row.name << log.text();
        EXPECT_LT(document->getObjects().size(), 4'000U) << row.name;
    }
}

Ref<Document> with(std::string_view resources, std::string_view other) {
    DocumentBuilder builder = DocumentBuilder::minimal();
    return open(builder.object(5, resources).object(6, other).object(7, "[/PDF]"));
}

struct Merge {
    std::string target, added, result; ///< what the target then is, or the message of a refusal
    std::string note{};
};

const Merge merges[] = {
    {"<< >>", "<< /Font << /F 1 >> /ProcSet [/PDF] >>",
     "<< Font -> << F -> 1.0 >> ProcSet -> [PDF ] >>"},
    {"<< /ProcSet [/PDF] >>", "<< /ProcSet [/PDF /Text /Text] >>", "<< ProcSet -> [PDFText ] >>"},
    {"<< /Font << /F << /A 1 >> >> >>", "<< /Font << /F << /A 1 >> >> >>",
     "<< Font -> << F -> << A -> 1.0 >> >> >>", "Resource is equal, reusing: F\n"},
    {"<< /Font << /F 2 0 R >> >>", "<< /Font << /F 4 0 R >> >>",
     "A resource already exists with name F of resource to add Font\n"},
    {"<< /Font << /N 1 >> >>", "<< /XObject << /N 1 >> >>",
     "A resource already exists with name N of resource to add XObject\n"},
    {"<< /Font << /G 1 >> >>", "<< /Font << /F 4 0 R >> >>",
     "<< Font -> << F -> 8 (0) G -> 1.0 >> >>"},
    {"<< /Font 6 0 R >>", "<< /Font 6 0 R >>", "<< Font -> 6 (0) >>",
     "Resource is equal, reusing: Z\n"},
    {"<< /ProcSet 7 0 R >>", "<< /ProcSet 7 0 R >>", "<< ProcSet -> 7 (0) >>"},
    {"<< /ProcSet [/PDF] >>", "<< /ProcSet << >> >>",
     "Original resource expects an Array, but resource to add provides a Dictionary for ProcSet\n"},
    {"<< /Font << >> >>", "<< /Font [1] >>",
     "Original resource expects a Dictionary, but resource to add provides an Array for Font\n"},
    {"<< /Font 1 >>", "<< >>", "Invalid type of resource entry Font has invalid type 3h (3)\n"},
    {"<< /Font 99 0 R >>", "<< >>", "Failed to resolve object reference 99 (0)\n"},
    {"<< /Font 4 0 R >>", "<< >>", "Object Font has invalid type 7h (7)\n"},
    {"<< >>", "<< /Font 1 >>", "Font of resources to add has invalid type for resource: 3h (3)\n"},
    {"<< >>", "<< /Font << /F 99 0 R >> >>",
     "Failed to resolve to be cloned object reference: 99 (0)\n"
     "Failed to clone value of F of resource to add Font\n"},
    {"<< >>", "<< /ProcSet [/PDF 99 0 R] >>",
     "Failed to resolve to be cloned object reference: 99 (0)\n"
     "Failed to clone array value 1h (1) of resource to add: ProcSet\n"}};

TEST(ResourceMerging, AddsOrRefuses) {
    for (const Merge& row : merges) {
        SCOPED_TRACE(row.target + " and " + row.added);
        const Ref<Document> document = with(row.target, "<< /Z 1 >>");
        const Ref<Document> foreign = with(row.added, "<< /Y 2 /Z 1 >>");
        Cloner cloner(dynamic_cast<DocumentObj&>(*document));
        const auto target = castTo<Dictionary>(valueOf(*document, 5));
        const auto added = castTo<Dictionary>(valueOf(*foreign, 5));
        const RecordingLog log;
        const bool merged = ResourceMerge(*document, cloner).merge(*target, *added, foreign);
        EXPECT_EQ(merged ? textOf(target) : log.text(), row.result);
        EXPECT_EQ(merged, row.result.starts_with("<<"));
        if (!merged) continue;
        EXPECT_EQ(log.text(), row.note);
        const bool behindReference = row.result == "<< Font -> 6 (0) >>";
        EXPECT_EQ(textOf(valueOf(*document, 6)),
                  behindReference ? "<< Y -> 2.0 Z -> 1.0 >>" : "<< Z -> 1.0 >>");
        // With itself it ends, and changes nothing.
        EXPECT_TRUE(ResourceMerge(*document, cloner).merge(*target, *target, document));
        EXPECT_EQ(textOf(target), row.result);
    }
}

} // namespace
