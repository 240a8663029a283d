#include "support/results.h"

#include <pdf/tools/letterheads.h>

#include <functional>

namespace {

using namespace Support;

DocumentBuilder sheet(std::string_view entries = "") {
    return DocumentBuilder::minimal().object(
        3, "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /MediaBox [ 0 0 9 9 ] " +
               std::string(entries) + " >>");
}

TEST(OddLetterhead, StaysOddAndMakesNoFileThatDoesNotOpen) {
    const char* const stream = "<< /Length 1 >>\nstream\nx\nendstream";
    const struct {
        // Entries of the content stream, beside Length; object 6; the filter of the copy.
        const char *name, *entries, *shared, *filter;
    } rows[] = {
        {"name behind a reference", "/Filter 5 0 R", "0", "FlateDecode"},
        {"chain", "/Filter [ /ASCII85Decode /FlateDecode ]", "0", "[ASCII85DecodeFlateDecode ]"},
        {"stream", "/Filter 6 0 R", stream, "@"},
        {"stream in a list", "/Filter [ 6 0 R ]", stream, "["},
        {"itself", "/Filter 4 0 R", "0", "@"},
        {"list of itself", "/Filter 6 0 R", "[ 6 0 R 6 0 R ]", "["},
        {"dictionary of itself", "/Filter 6 0 R", "<< /A 6 0 R >>", "<<"},
        {"page", "/Filter 3 0 R", "0", "(null)"},
        {"parameters: itself", "/DecodeParms 4 0 R", "0", "(null)"},
    };
    for (const auto& row : rows) {
        for (const bool above : {false, true}) {
            const auto other = open(sheet()
                                        .stream(4, row.entries, "data")
                                        .object(5, "/FlateDecode")
                                        .object(6, row.shared));
            const auto document = open(sheet());
            ASSERT_TRUE(Tools::letterhead(document, other, {.above = above})) << row.name;
            const auto again = open(write(*document));
            ASSERT_TRUE(again) << row.name;
            const auto form =
                castTo<Stream>(onPage(again, 0, {"Resources", "XObject", "Letterhead1"}));
            EXPECT_EQ(contentsOf(again->readStreamData(form, false)), "data") << row.name;
            const std::string filter = textOf(at(again, form->dict()->find("Filter"), {}));
            EXPECT_TRUE(filter.starts_with(row.filter)) << row.name << ": " << filter;
            EXPECT_LT(again->getObjects().size(), 14U) << row.name;
        }
    }
}

TEST(OddLetterhead, OfAStreamWithinADictionaryIsSound) {
    const auto other = open(sheet("/Group << >>"));
    const auto group = castTo<Dictionary>(onPage(other, 0, {"Group"}));
    const Ref<Value> stream =
        Host::make<StreamObj>(dictionary({{"Length", number(1)}}), stripeOf("x"));
    ASSERT_TRUE(group->set("Inner", stream));
    const auto document = open(sheet());
    ASSERT_TRUE(Tools::letterhead(document, other));
    EXPECT_TRUE(open(write(*document)));
    const auto page = pageOf(other, 0).dictionary;
    for (const Ref<Value>& contents : {stream, Ref<Value>(Array::create({stream}))}) {
        ASSERT_TRUE(page->set("Contents", contents));
        expectRefusal(resultOf([&] { return Tools::letterhead(document, other); }), PageInvalid);
        const auto above =
            resultOf([&] { return Tools::letterhead(other, document, {.above = true}); });
        expectRefusal(above, PageInvalid);
    }
}

TEST(OddLetterhead, GetsANameThatReadersTakeForNoOther) {
    const auto document = open(
        sheet("/Resources << /Font << /Letterhead#31 5 0 R /#4CetterheaD2 5 0 R /#4cetterhead2 5 0 "
              "R /Letterhead#3 5 0 R >> >>"));
    ASSERT_TRUE(Tools::letterhead(document, open(sheet())));
    EXPECT_TRUE(onPage(document, 0, {"Resources", "XObject", "Letterhead3"}));
}

/// So many pages that draw stream 4 with what `entries` gives for their number.
template <class Entries>
std::string pagesOf(std::size_t count, std::size_t size, Entries entries) {
    DocumentBuilder file = DocumentBuilder::minimal().stream(4, "", std::string(size, '%'));
    for (std::uint32_t id = 5; id < count + 5; ++id)
        file.object(id, "<< /Type /Page /Contents 4 0 R /MediaBox [ 0 0 9 9 ] " +
                            std::string(entries(id)) + " >>");
    return file.object(2, pageTree(5, count)).bytes();
}

auto letterheadEach(const Ref<Document>& document, const Ref<Document>& other) {
    return resultOf([&] {
        return Tools::letterhead(document, other, {.mode = Tools::LetterheadPages::PageByPage});
    });
}

TEST(OddLetterhead, IsCopiedWithinABudget) {
    constexpr std::size_t size = 40'000;
    const auto number = [](std::uint32_t id) { return std::to_string(id); };
    const struct {
        const char* name;
        std::size_t pages;
        std::function<std::string(std::uint32_t)> entries;
        bool done;
    } rows[] = {
        {"equal pages", 200, [](std::uint32_t) { return ""; }, true},
        {"equal lists", 200, [](std::uint32_t) { return "/Contents [ 4 0 R 4 0 R ]"; }, true},
        {"boxes", 60,
         [&](auto id) { return "/CropBox [ 0 0 9 " + number(id) + "." + number(id) + " ]"; }, true},
        {"more boxes", 200, [&](auto id) { return "/MediaBox [ 0 0 9 " + number(id) + " ]"; },
         false},
        {"lists", 60,
         [&](auto id) {
             return "/MediaBox [ 0 0 9 " + number(id) + " ] /Contents [ 4 0 R 4 0 R ]";
         },
         false},
    };
    for (const auto& row : rows) {
        const auto other = open(pagesOf(row.pages, size, row.entries));
        const auto document = open(pagesOf(row.pages, 1, [](std::uint32_t) { return ""; }));
        const std::string before = write(*document), otherBefore = write(*other);
        const auto done = letterheadEach(document, other);
        EXPECT_EQ(done.has_value(), row.done) << row.name << told(done);
        const std::string after = write(*document);
        EXPECT_LT(after.size(), 65 * size + (std::size_t{1} << 20)) << row.name;
        EXPECT_EQ(write(*other), otherBefore) << row.name;
        if (done) continue;
        expectRefusal(done, OutOfRange);
        EXPECT_EQ(after, before) << row.name;
    }
}

TEST(OddLetterhead, SharesDirectValuesWithinABudget) {
    // One page, which inherits another box from each of its parents, and has all the rest itself.
    for (const std::uint32_t parents : {20U, 200U}) {
        DocumentBuilder file = DocumentBuilder::minimal().object(
            3, "<< /Type /Page /Group << /G (" + std::string(40'000, 'g') + ") >> >>");
        for (std::uint32_t id = 5; id < parents + 5; ++id)
            file.object(id, "<< /Type /Pages /Kids [ 3 0 R ] /MediaBox [ 0 0 9 " +
                                std::to_string(id) + " ] >>");
        const auto other = open(file.object(2, pageTree(5, parents)));
        const auto document = open(pagesOf(parents, 1, [](std::uint32_t) { return ""; }));
        const auto laid = letterheadEach(document, other);
        EXPECT_EQ(laid.has_value(), parents == 20) << told(laid);
        if (!laid) expectRefusal(laid, OutOfRange);
    }
}

} // namespace
