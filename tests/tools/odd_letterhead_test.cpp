#include "support/testing.h"

#include <pdf/tools/background.h>
#include <pdf/tools/editing.h>

#include <functional>

namespace {

using namespace Libraries::Files::PDF;
using namespace Support;

DocumentBuilder sheet(std::string_view entries = "") {
    return DocumentBuilder::minimal().object(
        3, "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /MediaBox [ 0 0 9 9 ] " +
               std::string(entries) + " >>");
}

Tools::Page firstPage(const Document& document) {
    const auto pages = Tools::allPages(document);
    return (*pages)[0];
}

Ref<Dictionary> formsOf(const Document& document) {
    return castTo<Dictionary>(firstPage(document).resources->find("XObject"));
}

TEST(OddLetterhead, StaysOddAndMakesNoFileThatDoesNotOpen) {
    const struct {
        const char* name;
        const char* entries; ///< of the content stream, beside Length
        const char* shared;  ///< object 6
        const char* filter;  ///< what the copy says
    } rows[] = {
        {"name behind a reference", "/Filter 5 0 R", "0", "FlateDecode"},
        {"known chain", "/Filter [ /ASCII85Decode /FlateDecode ]", "0",
         "[ASCII85DecodeFlateDecode ]"},
        {"stream", "/Filter 6 0 R", "<< /Length 1 >>\nstream\nx\nendstream", "@"},
        {"stream in a list", "/Filter [ 6 0 R ]", "<< /Length 1 >>\nstream\nx\nendstream", "["},
        {"itself", "/Filter 4 0 R", "0", "@"},
        {"list of itself", "/Filter 6 0 R", "[ 6 0 R 6 0 R ]", "["},
        {"dictionary of itself", "/Filter 6 0 R", "<< /A 6 0 R >>", "<<"},
        {"page", "/Filter 3 0 R", "0", "Null"},
        {"parameters: itself", "/DecodeParms 4 0 R", "0", "(null)"},
    };
    for (const auto& row : rows) {
        for (const bool above : {false, true}) {
            const auto other = open(sheet()
                                        .stream(4, row.entries, "data")
                                        .object(5, "/FlateDecode")
                                        .object(6, row.shared)
                                        .bytes());
            const auto document = open(sheet().bytes());
            ASSERT_TRUE(Tools::letterhead(*document, other, {.above = above})) << row.name;
            const auto again = open(write(*document));
            ASSERT_TRUE(again) << row.name;
            const auto form =
                castTo<Stream>(Tools::resolve(*again, formsOf(*again)->find("Letterhead1")));
            EXPECT_EQ(contentsOf(again->readStreamData(form, false)), "data") << row.name;
            const RecordingLog quiet;
            const std::string filter = textOf(Tools::resolve(*again, form->dict()->find("Filter")));
            EXPECT_TRUE(filter.starts_with(row.filter)) << row.name << ": " << filter;
            EXPECT_LT(again->getObjects().size(), 14U) << row.name;
        }
    }
}

TEST(OddLetterhead, OfAStreamWithinADictionaryIsSound) {
    const auto other = open(sheet("/Group << >>").bytes());
    const auto group = castTo<Dictionary>(firstPage(*other).dictionary->find("Group"));
    const Ref<Value> stream = Host::make<StreamObj>(
        castTo<Dictionary>(Tools::parseValue("<< /Length 1 >>")), stripeOf("x"));
    ASSERT_TRUE(group->set("Inner", stream));
    const auto document = open(sheet().bytes());
    ASSERT_TRUE(Tools::letterhead(*document, other));
    EXPECT_TRUE(open(write(*document)));
    const auto page = firstPage(*other).dictionary;
    for (const Ref<Value>& contents : {stream, Ref<Value>(Array::create({stream}))}) {
        ASSERT_TRUE(page->set("Contents", contents));
        const RecordingLog quiet;
        expectFailure(Tools::letterhead(*document, other), PageInvalid);
        expectFailure(Tools::letterhead(*other, document, {.above = true}), PageInvalid);
    }
}

TEST(OddLetterhead, GetsANameThatReadersTakeForNoOther) {
    const auto document = open(
        sheet("/Resources << /Font << /Letterhead#31 5 0 R /#4CetterheaD2 5 0 R /#4cetterhead2 5 0 "
              "R /Letterhead#3 5 0 R >> >>")
            .bytes());
    ASSERT_TRUE(Tools::letterhead(*document, open(sheet().bytes())));
    EXPECT_TRUE(formsOf(*document)->find("Letterhead3"));
}

/// So many pages that draw stream 4 with what `entries` gives for their number.
template <class Entries>
std::string pagesOf(std::size_t count, std::size_t size, Entries entries) {
    DocumentBuilder file = DocumentBuilder::minimal().stream(4, "", std::string(size, '%'));
    std::string kids;
    for (std::uint32_t id = 5; id < count + 5; ++id) {
        kids += std::to_string(id) + " 0 R ";
        file.object(id, "<< /Type /Page /Contents 4 0 R /MediaBox [ 0 0 9 9 ] " +
                            std::string(entries(id)) + " >>");
    }
    return file.object(2, "<< /Type /Pages /Kids [ " + kids + "] >>").bytes();
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
        const RecordingLog quiet;
        Host::Error::set(Host::NoError);
        const bool done =
            Tools::letterhead(*document, other, {.mode = Tools::LetterheadPages::PageByPage});
        EXPECT_EQ(done, row.done) << row.name << ' ' << Host::Error::get() << quiet.text();
        const std::string after = write(*document);
        EXPECT_LT(after.size(), 65 * size + (std::size_t{1} << 20)) << row.name;
        EXPECT_EQ(write(*other), otherBefore) << row.name;
        if (done) continue;
        expectFailure(done, OutOfRange);
        EXPECT_EQ(after, before) << row.name;
    }
}

TEST(OddLetterhead, SharesDirectValuesWithinABudget) {
    // One page, which inherits another box from each of its parents, and has all the rest itself.
    for (const std::uint32_t parents : {20U, 200U}) {
        DocumentBuilder file = DocumentBuilder::minimal().object(
            3, "<< /Type /Page /Group << /G (" + std::string(40'000, 'g') + ") >> >>");
        std::string kids;
        for (std::uint32_t id = 5; id < parents + 5; ++id) {
            const std::string number = std::to_string(id);
            kids += number + " 0 R ";
            file.object(id,
                        "<< /Type /Pages /Kids [ 3 0 R ] /MediaBox [ 0 0 9 " + number + " ] >>");
        }
        const auto other = open(file.object(2, "<< /Type /Pages /Kids [ " + kids + "] >>").bytes());
        const auto document = open(pagesOf(parents, 1, [](std::uint32_t) { return ""; }));
        const RecordingLog quiet;
        const bool laid =
            Tools::letterhead(*document, other, {.mode = Tools::LetterheadPages::PageByPage});
        if (parents == 20) {
            EXPECT_TRUE(laid);
        } else {
            expectFailure(laid, OutOfRange);
        }
    }
}

} // namespace
