#include "document/document_obj.h"
#include "support/document_builder.h"
#include "support/recording_log.h"
#include "support/values.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Libraries::Files::PDF;
using namespace Host::Literals;
using Testing::contentsOf;
using Testing::DocumentBuilder;
using Testing::open;
using Testing::textOf;
using Testing::valueOf;

std::string ref(std::size_t id) {
    return std::to_string(id) + " 0 R";
}

/// `count` pages from object 3 on, each with the content "PREFIX INDEX" in the object behind it and
/// a font of that prefix.
DocumentBuilder pages(std::size_t count, const std::string& prefix) {
    DocumentBuilder builder;
    builder.version("1.4").object(1, "<< /Type /Catalog /Pages 2 0 R >>");
    std::string kids;
    for (std::size_t index = 0; index < count; ++index)
        kids += ref(3 + 2 * index) + " ";
    builder.object(2, "<< /Type /Pages /Kids [" + kids + "] >>");
    for (std::size_t index = 0; index < count; ++index) {
        const auto id = static_cast<std::uint32_t>(3 + 2 * index);
        builder.object(id, "<< /Type /Page /Contents " + ref(id + 1) + " /Resources << /Font << /" +
                               prefix + " << >> >> >> >>");
        builder.stream(id + 1, "", prefix + std::to_string(index));
    }
    return builder;
}

/// What a page draws, stream by stream.
std::string drawn(Document& document, const Ref<Object>& page) {
    const Ref<Value> contents = page->valueAsDictionary()->find("Contents"_str);
    const Ref<Array> array = contents->type() == Value::Type::Array ? castTo<Array>(contents)
                                                                    : Testing::array({contents});
    std::string all;
    for (std::uint64_t index = 0; index < array->size(); ++index) {
        const auto object = document.getObject(array->getAsObjectRef(index));
        all += contentsOf(document.readStreamData(object->valueAsStream(), false)) + " ";
    }
    return all;
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

struct Choice {
    std::uint32_t mode;
    int pages;
    int foreignPages;
};

void expectLaidBeneath(const Choice& choice) {
    const Ref<Document> document =
        open(pages(static_cast<std::size_t>(choice.pages), "own").bytes());
    Ref<Document> foreign = open(
        pages(static_cast<std::size_t>(choice.foreignPages), "foreign").version("1.6").bytes());
    const std::size_t objects = document->getObjects().size();
    Host::Error::set(4711);
    const bool done = document->addBackground(foreign, choice.mode);
    foreign = nullptr;
    ASSERT_EQ(done, choice.foreignPages != 0);
    const bool nothingToDo = !done || choice.pages == 0;
    EXPECT_EQ(document->changed(), !nothingToDo);
    EXPECT_EQ(document->version(), nothingToDo ? PdfVersion::V1_4 : PdfVersion::V1_6);
    if (!done || choice.pages == 0) {
        EXPECT_EQ(Host::Error::get(), done ? 4711U : ForeignPageEmpty);
        return;
    }
    const int read = choice.mode < 2 ? 1 : choice.foreignPages;
    EXPECT_EQ(document->getObjects().size(), objects + static_cast<std::size_t>(read));
    for (const auto& result : {document, open(Testing::write(*document))}) {
        ASSERT_TRUE(result);
        const auto all = result->getPages();
        ASSERT_EQ(all.size(), static_cast<std::size_t>(choice.pages));
        for (int page = 0; page < choice.pages; ++page) {
            const int foreignPage = beneath(choice.mode, page, choice.foreignPages);
            const std::string own = "own" + std::to_string(page) + " ";
            const auto& changed = all[static_cast<std::size_t>(page)];
            EXPECT_EQ(drawn(*result, changed),
                      foreignPage < 0 ? own : "foreign" + std::to_string(foreignPage) + " " + own);
            const auto resources = changed->valueAsDictionary()->findAsDictionary("Resources"_str);
            EXPECT_EQ(textOf(resources), foreignPage < 0
                                             ? "<< Font -> << own -> << >> >> >>"
                                             : "<< Font -> << foreign -> << >> own -> << >> >> >>");
        }
    }
}

TEST(AddBackground, ChangesExactlyTheChosenPages) {
    Testing::RecordingLog log;
    for (std::uint32_t mode = 0; mode < 5; ++mode) {
        for (int count = 0; count <= 5; ++count) {
            for (int foreignCount = 0; foreignCount <= 5; ++foreignCount) {
                SCOPED_TRACE(testing::Message() << "mode " << mode << ", " << count << " pages, "
                                                << foreignCount << " foreign ones");
                expectLaidBeneath({mode, count, foreignCount});
            }
        }
    }
    EXPECT_NE(log.text().find("Background has more than 1 page: 5h (5)\n"), std::string::npos);
}

TEST(AddBackground, CopiesASharedStreamOnce) {
    const Ref<Document> document =
        open(pages(2, "own").object(5, "<< /Contents [6 0 R 4 0 R] >>").bytes());
    const Ref<Document> foreign =
        open(pages(2, "foreign")
                 .object(3, "<< /Type /Page /Contents [6 0 R 4 0 R 6 0 R] /Resources << >> >>")
                 .bytes());
    ASSERT_TRUE(document->addBackground(foreign, 2));
    EXPECT_EQ(document->getObjects().size(), 8U);
    EXPECT_EQ(contentsOfPages(*document), "[8 (0)7 (0)8 (0)4 (0) ];[8 (0)6 (0)4 (0) ];");
}

TEST(AddBackground, CopiesResourcesForEachPageAndBytesOnce) {
    const Ref<Document> document = open(pages(3, "own").bytes());
    const Ref<Document> foreign = open(
        pages(1, "f")
            .object(3, "<< /Type /Page /Contents 4 0 R /Resources << /XObject << /X 5 0 R >> >> >>")
            .stream(5, "", "image")
            .bytes());
    ASSERT_TRUE(document->addBackground(foreign, 1));
    ASSERT_EQ(document->getObjects().size(), 12U);
    const auto bytes = [&](std::uint32_t id) {
        return document->readStreamData(Testing::streamOf(*document, id), false)->window(0);
    };
    EXPECT_EQ(contentsOf(document->readStreamData(Testing::streamOf(*document, 9), false)),
              "image");
    EXPECT_EQ(bytes(9).data(), bytes(10).data());
    EXPECT_EQ(bytes(9).data(), bytes(11).data());
}

TEST(AddBackground, InheritedResourcesMeetInThePageCatalogs) {
    const auto catalog = [](const char* resources) {
        return "<< /Type /Pages /Kids [3 0 R] /Resources << /Font << " + std::string(resources) +
               " >> >> >>";
    };
    const char* bare = "<< /Type /Page /Contents 4 0 R >>";
    const Ref<Document> document = open(pages(1, "own").object(2, catalog("/A 1")).bytes());
    // The page's own resources take in what it inherited, and what is added.
    ASSERT_TRUE(document->addBackground(open(pages(1, "f").bytes()), 0));
    EXPECT_EQ(textOf(castTo<Dictionary>(valueOf(*document, 3))->find("Resources"_str)),
              "<< Font -> << A -> 1.0 f -> << >> own -> << >> >> >>");
    // A foreign page without any relies on its catalog.
    const auto foreign = open(pages(1, "f").object(2, catalog("/B 2")).object(3, bare).bytes());
    ASSERT_TRUE(document->addBackground(foreign, 0));
    EXPECT_EQ(textOf(castTo<Dictionary>(valueOf(*document, 2))->find("Resources"_str)),
              "<< Font -> << A -> 1.0 B -> 2.0 >> >>");
}

/// What goes wrong with one object of either document of two pages, laid page by page.
struct Failing {
    const char* name;
    bool foreign;
    std::uint32_t id;
    const char* body;
    std::uint32_t code;
    const char* log;         ///< how it ends
    bool merged = false;     ///< whether the first page has got its resources by then
    std::size_t objects = 6; ///< in the end
};

class AddBackgroundFailure : public testing::TestWithParam<Failing> {};

constexpr bool own = false;
constexpr bool other = true;

INSTANTIATE_TEST_SUITE_P(
    All, AddBackgroundFailure,
    testing::Values(
        Failing{"ForeignTree", other, 2, "<< /Type /Pages >>", ForeignTreeInvalid,
                "Pages object has no valid Kids entry\n"},
        Failing{"ForeignRoot", other, 1, "[1]", ForeignTreeInvalid,
                "Failed to retrieve pages object\n"},
        Failing{"ForeignPage", other, 5, "[1]", ForeignPageInvalid,
                "Failed to retrieve dictionary of foreign page 1h (1)\n"},
        Failing{"OwnTree", own, 2, "<< /Type /Pages >>", PageTreeInvalid,
                "Pages object has no valid Kids entry\n"},
        Failing{"NoContents", other, 5, "<< >>", ForeignPageEmpty,
                "Foreign page has no contents\n"},
        Failing{"ContentsUnresolved", other, 5, "<< /Contents 99 0 R >>", ForeignPageInvalid,
                "Failed to resolve content stream of foreign page\n"},
        Failing{"ContentsNoStream", other, 5, "<< /Contents 3 0 R >>", ForeignPageInvalid,
                "Content stream of foreign page is not of type stream\n"},
        Failing{"ContentsOfOtherKind", other, 5, "<< /Contents 1 >>", ForeignPageInvalid,
                "Foreign page content's has unexpected type: 3h (3)\n"},
        Failing{"ElementOfOtherKind", other, 5, "<< /Contents [4 0 R 1] >>", ForeignPageInvalid,
                "Content element 1h (1) of foreign page has unexpected type: 3h (3)\n"},
        Failing{"ElementUnresolved", other, 5, "<< /Contents [99 0 R] >>", ForeignPageInvalid,
                "Failed to resolve element 0h (0) of foreign page\n"},
        Failing{"ElementNoStream", other, 5, "<< /Contents [3 0 R] >>", ForeignPageInvalid,
                "Content stream of foreign page is not of type stream for element 0h (0)\n"},
        Failing{"CatalogResources", own, 2, "<< /Type /Pages /Kids [3 0 R 5 0 R] /Resources 1 >>",
                PageTreeInvalid, "Failed to retrieve page catalog resource dictionary\n"},
        Failing{"OwnPage", own, 5, "[1]", PageInvalid,
                "Failed to retrieve page dictionary for page 5 (0)\n", true},
        Failing{"OwnResources", own, 5, "<< /Resources 1 >>", PageInvalid,
                "Failed to retrieve resources for page 5 (0)\n", true},
        Failing{"ForeignResources", other, 5, "<< /Contents 6 0 R /Resources 1 >>", PageInvalid,
                "Failed to retrieve resources for foreign page 1h (1)\n", true},
        Failing{"CatalogClash", own, 2,
                "<< /Type /Pages /Kids [3 0 R 5 0 R] /Resources << /Font << /own 1 >> >> >>",
                StepFailed, "Failed to integrate page catalog resources into page 3 (0)\n"},
        Failing{"Clash", own, 5, "<< /Resources << /A << /foreign 1 >> >> >>", StepFailed,
                "Failed to add resources of foreign page 1h (1) to page 5 (0)\n", true},
        Failing{"ForeignCatalogResources", other, 5, "<< /Contents 6 0 R >>", PageTreeInvalid,
                "Failed to retrieve foreign page catalog resource dictionary\n", true},
        Failing{"StreamUnreadable", other, 6, "<< >>\nstream\nx\nendstream", ForeignStreamUnread,
                "Failed to retrieve foreign stream\n", true},
        Failing{"StreamNotCopied", other, 6, "<< /Length 1 /X 99 0 R >>\nstream\nx\nendstream",
                StreamNotCopied, "Failed to add foreign stream\n", true},
        Failing{"OwnContents", own, 5, "<< /Contents 1 >>", StepFailed,
                "Content of page is neither object reference nor array 3h (3)\n"
                "Failed to update page 5 (0)\n",
                true, 8}),
    [](const auto& row) { return row.param.name; });

TEST_P(AddBackgroundFailure, LeavesTheContentsOfAllPages) {
    DocumentBuilder builders[] = {pages(2, "own"), pages(2, "foreign")};
    // A foreign catalog that cannot be used matters only where a page has no resources.
    builders[1].object(2, "<< /Type /Pages /Kids [3 0 R 5 0 R] /Resources 1 >>");
    builders[GetParam().foreign ? 1 : 0].object(GetParam().id, GetParam().body);
    const Ref<Document> document = open(builders[0].bytes());
    Testing::RecordingLog log;
    EXPECT_FALSE(document->addBackground(open(builders[1].bytes()), 2));
    EXPECT_EQ(Host::Error::get(), GetParam().code);
    EXPECT_TRUE(log.text().ends_with(GetParam().log)) << log.text();
    EXPECT_EQ(document->getObjects().size(), GetParam().objects);
    EXPECT_EQ(document->version(), PdfVersion::V1_4);
    const auto first = castTo<Dictionary>(valueOf(*document, 3));
    EXPECT_EQ(textOf(first->find("Contents"_str)), "4 (0)");
    const bool merged = textOf(first->find("Resources"_str)).find("foreign") != std::string::npos;
    EXPECT_EQ(merged, GetParam().merged);
}

TEST(AddBackground, TakesTheDocumentItselfButNotNull) {
    const Ref<Document> document = open(pages(2, "own").bytes());
    EXPECT_FALSE(document->addBackground(nullptr, 1));
    ASSERT_TRUE(document->addBackground(document, 1));
    EXPECT_EQ(contentsOfPages(*document), "[7 (0)4 (0) ];[7 (0)6 (0) ];");
}

TEST(AddBackground, RestoresUpToAPageThatHadNoContents) {
    const Ref<Document> document =
        open(pages(4, "own").object(5, "<< /X 1 >>").object(9, "<< /Contents 1 >>").bytes());
    Testing::RecordingLog log;
    EXPECT_FALSE(document->addBackground(open(pages(1, "f").bytes()), 1));
    EXPECT_EQ(Host::Error::get(), StepFailed);
    EXPECT_EQ(contentsOfPages(*document), "4 (0);[11 (0) ];[11 (0)8 (0) ];1.0;");
    EXPECT_TRUE(log.text().ends_with("Failed to update page 9 (0)\n"
                                     "Failed to restore contents of page 5 (0)\n"))
        << log.text();
    EXPECT_EQ(log.entries().back().level, Host::LogLevel::Warning);
}

} // namespace
