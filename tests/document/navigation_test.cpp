#include "support/document_builder.h"
#include "support/recording_log.h"
#include "values/array.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Libraries::Files::PDF;
using Testing::DocumentBuilder;

TEST(Navigation, ExplainsWhatIsWrongWithThePageTree) {
    enum Step { Catalog, Tree, Pages };
    constexpr const char* root = "/Root 1 0 R";
    constexpr const char* catalog = "<< /Type /Catalog /Pages 2 0 R >>";
    constexpr const char* tree = "<< /Type /Pages >>";
    const struct {
        Step step;
        const char* trailer;
        const char* catalog;
        const char* tree;
        std::uint32_t code;
        std::string log; ///< the last line
    } rows[] = {
        {Catalog, "", catalog, tree, RootMissing, "Failed to retrieve root object reference"},
        {Catalog, "/Root 1", catalog, tree, RootMissing,
         "Failed to retrieve root object reference"},
        {Catalog, "/Root 9 0 R", catalog, tree, RootInvalid, "Document has no root object"},
        {Catalog, "/Root 1 1 R", catalog, tree, RootInvalid, "Document has no root object"},
        {Catalog, root, "[ ]", tree, RootInvalid, "Failed to retrieve root object dictionary"},
        {Catalog, root, "<< >>", tree, CatalogInvalid, "Root object has no valid Type entry"},
        {Catalog, root, "<< /Type /catalog >>", tree, CatalogInvalid,
         "Root object Type entry is not of type Catalog. Got: catalog"},
        {Tree, "", catalog, tree, RootInvalid, "Document has no root object"},
        {Tree, root, "<< /Type /Catalog >>", tree, CatalogInvalid,
         "Failed to retrieve pages object reference"},
        {Tree, root, "<< /Type /Catalog /Pages 8 0 R >>", tree, PageTreeInvalid,
         "Failed to retrieve pages object"},
        {Tree, root, catalog, "12", PageTreeInvalid, "Failed to retrieve pages object dictionary"},
        {Tree, root, catalog, "<< /Type (Pages) >>", PageTreeInvalid,
         "Pages object has no valid Type entry"},
        {Tree, root, catalog, "<< /Type /Page >>", PageTreeInvalid,
         "Pages object Type entry is not of type Pages. Got: Page"},
        {Pages, "", catalog, tree, PageTreeInvalid, "Failed to retrieve pages object"},
        {Pages, root, catalog, "<< /Type /Pages /Kids 3 0 R >>", PageTreeInvalid,
         "Pages object has no valid Kids entry"},
        {Pages, root, catalog, "<< /Type /Pages /Kids [3 0 R 3] >>", PageTreeInvalid,
         "Failed to retrieve pages object's Kids entry object reference 1h (1)"},
        {Pages, root, catalog, "<< /Type /Pages /Kids [3 0 R 3 1 R] >>", PageTreeInvalid,
         "Failed to resolve page object reference entry 1h (1)"},
    };
    for (const auto& row : rows) {
        DocumentBuilder builder = DocumentBuilder::minimal().trailer(row.trailer);
        const auto document =
            Testing::open(builder.object(1, row.catalog).object(2, row.tree).bytes());
        ASSERT_TRUE(document) << row.log;
        const Testing::RecordingLog log;
        const bool found = row.step == Catalog ? bool(document->getCatalog())
                           : row.step == Tree  ? bool(document->getPageCatalog())
                                               : !document->getPages().empty();
        EXPECT_FALSE(found) << row.log;
        EXPECT_EQ(Host::Error::get(), row.code) << row.log;
        EXPECT_TRUE(log.text().ends_with(row.log + "\n")) << log.text() << row.log;
    }
}

TEST(Navigation, GivesTheRootsKidsInOrderWhateverTheyAre) {
    const auto document =
        Testing::open(DocumentBuilder::minimal()
                          .object(2, "<< /Type /Pages /Kids [5 0 R 3 0 R 5 0 R 2 0 R] >>")
                          .object(5, "12")
                          .bytes());
    ASSERT_TRUE(document);
    std::string pages;
    for (const Ref<Object>& page : document->getPages())
        pages += Testing::textOf(page);
    EXPECT_EQ(pages, "5 (0)3 (0)5 (0)2 (0)");
    EXPECT_EQ(Testing::textOf(document->getCatalog()), "1 (0)");
    EXPECT_EQ(Testing::textOf(document->getPageCatalog()), "2 (0)");
}

TEST(Navigation, FollowsOneReferenceToADictionary) {
    const auto document = Testing::open(DocumentBuilder::minimal()
                                            .object(5, "[5 0 R 1 0 R 9 0 R 6 0 R << /B 2 >> (s)]")
                                            .stream(6, "", "x")
                                            .bytes());
    ASSERT_TRUE(document);
    const Ref<Array> values = castTo<Array>(Testing::valueOf(*document, 5));
    const struct {
        const char* name;
        std::string text;
        std::uint32_t code;
        const char* log;
    } rows[] = {
        {"to an array", "(null)", ObjectUnreadable, "Invalid object type 8h (8)\n"},
        {"to a dictionary", "<< Pages -> 2 (0) Type -> Catalog >>", 0, ""},
        {"to nothing", "(null)", ReferenceNotResolved, "Failed to resolve object reference\n"},
        {"to a stream", "(null)", ObjectUnreadable, "Invalid object type 7h (7)\n"},
        {"a dictionary", "<< B -> 2.0 >>", 0, ""},
        {"a string", "(null)", ObjectUnreadable, "Invalid object type 4h (4)\n"},
        {"null", "(null)", NullArgument, ""},
    };
    std::uint64_t index = 0;
    for (const auto& row : rows) {
        const Testing::RecordingLog log;
        Host::Error::set(0);
        EXPECT_EQ(Testing::textOf(document->valueAsDict(values->get(index++))), row.text)
            << row.name;
        EXPECT_EQ(Host::Error::get(), row.code) << row.name;
        EXPECT_EQ(log.text(), row.log) << row.name;
    }
    EXPECT_FALSE(document->getObject(nullptr));
    EXPECT_EQ(Host::Error::get(), NullArgument);
}

} // namespace
