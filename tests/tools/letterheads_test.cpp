#include "support/results.h"

#include <pdf/tools/letterheads.h>

#include <algorithm>

namespace {

using namespace Support;
using Tools::LetterheadOptions;
using Tools::LetterheadPages;

/// One page with these entries, the content stream 4, and the font 5 by the name F1.
DocumentBuilder onePage(std::string_view entries) {
    return DocumentBuilder::minimal()
        .object(3, "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources << /Font << /F1 5 0 R "
                   ">> >> " +
                       std::string(entries) + " >>")
        .object(5, "<< /Type /Font /BaseFont /Times-Roman >>");
}

std::string placing(const std::string& matrix, const std::string& name = "Letterhead1") {
    return "/Artifact BMC\nq\n" + matrix + " cm\n/" + name + " Do\nQ\nEMC\n";
}

TEST(Letterhead, FillsWhatIsSeenOfThePage) {
    const std::string tall = "/MediaBox [ 0 0 100 200 ] ", wide = "/MediaBox [ 0 0 200 100 ] ";
    const struct {
        std::string name, page, letterhead, matrix;
        bool asIs = false;
    } rows[] = {
        {"same size", tall, tall, "1 0 0 1 0 0"},
        {"smaller page", "/MediaBox [ 0 0 50 100 ]", tall, "0.5 0 0 0.5 0 0"},
        {"other shape", "/MediaBox [ 0 0 100 300 ]", tall, "1 0 0 1 0 50"},
        {"shifted", "/MediaBox [ 10 20 110 220 ]", "/MediaBox [ 95 195 -5 -5 ]", "1 0 0 1 15 25"},
        {"crop box", tall + "/CropBox [ 50 -9 999 100 ]", tall, "0.5 0 0 0.5 50 0"},
        {"crop box of other sides", tall + "/CropBox [ -9 50 50 999 ]", tall, "0.5 0 0 0.5 0 75"},
        {"crop box elsewhere", tall + "/CropBox [ 500 500 600 600 ]", tall, "1 0 0 1 0 0"},
        {"cropped letterhead", tall, tall + "/CropBox [ 50 0 100 100 ]", "2 0 0 2 -100 0"},
        {"no boxes", "", "/MediaBox [ 0 0 306 396 ]", "2 0 0 2 0 0"},
        {"exact numbers", "/MediaBox [ 0 0 101.05 202.10 ]", tall, "1.0105 0 0 1.0105 0 0"},
        {"turned page", wide + "/Rotate 90", tall, "0 1 -1 0 200 0"},
        {"turned over", tall + "/Rotate -180", tall, "-1 0 0 -1 100 200"},
        {"turned back", wide + "/Rotate 630", tall, "0 -1 1 0 0 100"},
        {"turned askew", tall + "/Rotate 45", tall, "1 0 0 1 0 0"},
        {"turned letterhead", tall, wide + "/Rotate 90", "1 0 0 1 0 200"},
        {"both turned", wide + "/Rotate 270", wide + "/Rotate 270", "0 -1 1 0 0 0"},
        {"as it is", "/MediaBox [ 9 9 10 10 ]", tall, "1 0 0 1 0 0", true},
        {"turned as it is", tall, wide + "/Rotate 90", "0 1 -1 0 0 0", true},
    };
    for (const auto& row : rows) {
        for (const bool above : {false, true}) {
            const auto document = open(onePage(row.page));
            const auto other = open(onePage(row.letterhead));
            const std::string before = write(*other);
            ASSERT_TRUE(Tools::letterhead(document, other, {.above = above, .asIs = row.asIs}))
                << row.name;
            const std::string content = "0 0 9 9 re f", place = placing(row.matrix);
            EXPECT_EQ(drawn(document, 0),
                      above ? "q\n|" + content + "|\nQ\n|" + place : place + "|" + content)
                << row.name;
            EXPECT_EQ(write(*other), before) << row.name;
        }
    }
}

/// Pages of two documents that clash wherever they can: one resource dictionary for all of its
/// pages, inherited through nodes, one page twice, one without contents.
std::string clashingFile(const std::string& mark) {
    return DocumentBuilder::minimal()
        .object(2, "<< /Type /Pages /Resources 8 0 R /MediaBox [0 0 9 9] /Kids [5 0 R 3 0 R] >>")
        .object(3, "<< /Type /Page /Contents null >>")
        .object(5, "<< /Kids [ 6 0 R 6 0 R ] /Rotate 180 >>")
        .object(6, "<< /Contents 7 0 R /Group 11 0 R >>")
        .object(7, "[ 4 0 R 99 0 R ]")
        .object(8, "<< /Font << /F1 9 0 R /F2 9 0 R /Letterhead2 9 0 R >> /XObject 10 0 R >>")
        .object(9, "<< /Name /" + mark +
                       " /Ring 8 0 R /Page 3 0 R /Tree 2 0 R /Gone 99 0 R /Gap "
                       "-0.05 >>")
        .object(10, "<< /Im 4 0 R >>")
        .object(11, "<< /S /Transparency /I true >>")
        .bytes();
}

TEST(Letterhead, KeepsTheTwoApartAndCopiesOnce) {
    const auto document = open(clashingFile("Own"));
    const auto other = open(clashingFile("Other"));
    document->faithfulNumbers(true);
    const std::size_t before = document->getObjects().size();
    ASSERT_TRUE(Tools::letterhead(document, other));
    // The second page that was listed twice; the form, which is its own Im; its resources, the font
    // and their names; the group; what draws the form on two pages, and on the third.
    EXPECT_EQ(document->getObjects().size(), before + 8);
    ASSERT_TRUE(Tools::letterhead(document, other)) << "a second time";
    const auto again = open(write(*document));
    again->faithfulNumbers(true);
    EXPECT_EQ(drawn(again, 0), placing("-1 0 0 -1 0 0", "Letterhead3") + "|" +
                                   placing("-1 0 0 -1 0 0") + "|0 0 9 9 re f")
        << "upright on a page that is not";
    EXPECT_EQ(drawn(again, 2),
              placing("1 0 0 1 9 9", "Letterhead3") + "|" + placing("1 0 0 1 9 9"));
    for (std::size_t page = 0; page < 3; ++page) {
        EXPECT_EQ(textOf(onPage(again, page, {"Resources", "Font", "F1", "Name"})), "Own");
        for (const char* const name : {"Letterhead1", "Letterhead3"}) {
            const auto form = onPage(again, page, {"Resources", "XObject", name});
            EXPECT_EQ(decoded(again, form), "0 0 9 9 re f");
            const auto font = at(again, form, {"Resources", "Font", "F1"});
            EXPECT_EQ(textOf(at(again, font, {"Name"})), "Other");
            EXPECT_EQ(font, at(again, font, {"Ring", "Font", "F2"})) << "one copy, in its ring";
            EXPECT_EQ(castTo<Number>(at(again, font, {"Gap"}))->spelling()->utf8(), "-0.05");
            for (const char* const gone : {"Page", "Tree", "Gone"})
                EXPECT_FALSE(at(again, font, {gone})) << gone;
            EXPECT_EQ(textOf(at(again, form, {"Group", "I"})), "true");
            EXPECT_EQ(textOf(at(again, form, {"BBox"})), "[0.00.09.09.0 ]");
            EXPECT_EQ(textOf(at(again, form, {"Matrix"})), "[-1.00.00.0-1.00.00.0 ]");
        }
    }
}

/// As many pages, each with a box of its own.
std::string pagesFile(std::size_t count) {
    DocumentBuilder builder = DocumentBuilder::minimal();
    for (std::uint32_t id = 5; id < 10; ++id)
        builder.object(id, "0");
    for (std::uint32_t id = 10; id < count + 10; ++id)
        builder.object(id, "<< /Type /Page /Contents 4 0 R /MediaBox [ 0 0 " + std::to_string(id) +
                               " 9 ] >>");
    return builder.object(2, pageTree(10, count)).bytes();
}

TEST(Letterhead, GoesOntoThePagesThatAreChosen) {
    using enum LetterheadPages;
    const struct {
        LetterheadPages mode;
        std::vector<Tools::PageRange> ranges;
        std::size_t sheets;
        const char* got; ///< by each of five pages
        std::uint32_t code = 0;
    } rows[] = {
        {FirstOnFirst, {}, 2, "0...."},
        {FirstOnFirst, {{3, 4}}, 2, "...0."},
        {FirstOnAll, {}, 2, "00000"},
        {PageByPage, {}, 2, "01..."},
        {PageByPage, {}, 7, "01234"},
        {PageByPage, {{4, 4}, {1, 2}, {2, 2}}, 2, ".01.."},
        {PageByPageThenLast, {}, 2, "01111"},
        {PageByPageThenLast, {{1, 3}}, 2, ".011."},
        {FirstOnAll, {{0, 5}}, 1, ".....", OutOfRange},
        {FirstOnAll, {{0, UINT64_MAX}}, 1, ".....", OutOfRange},
        {FirstOnAll, {{2, 1}}, 1, ".....", InvalidArgument},
        {FirstOnAll, {}, 0, ".....", ForeignPageEmpty},
        {static_cast<LetterheadPages>(4), {}, 1, ".....", InvalidArgument},
    };
    for (const auto& row : rows) {
        const auto document = open(pagesFile(5));
        const auto other = open(pagesFile(row.sheets));
        const std::string before = write(*document);
        const auto done = resultOf([&] {
            return Tools::letterhead(document, other, {.mode = row.mode, .ranges = row.ranges});
        });
        if (row.code != 0) expectRefusal(done, row.code);
        EXPECT_EQ(done.has_value(), row.code == 0) << told(done);
        std::string got;
        for (std::size_t page = 0; page < 5; ++page) {
            const auto names = castTo<Dictionary>(onPage(document, page, {"Resources", "XObject"}));
            const auto keys = names ? names->keys() : nullptr;
            const auto form = keys ? at(document, names, {(*keys)[0]->utf8()}) : nullptr;
            const auto box = castTo<Number>(at(document, form, {"BBox", "2"}));
            got += box ? static_cast<char>('0' + box->integer() - 10) : '.';
        }
        EXPECT_EQ(got, row.got);
        EXPECT_EQ(write(*document) == before, !done) << row.got;
    }
}

TEST(Letterhead, ChangesNothingWhereItFails) {
    const std::string dangling = "Kid 0 leads nowhere in node 2 (0)", its = "The letterhead: ";
    const auto kind = [](std::string_view of, std::string_view key, std::uint32_t page) {
        const std::string number = std::to_string(page);
        return told(PageInvalid,
                    std::string(of).append(key) + " is of a wrong kind for page " + number + " (0)",
                    page);
    };
    const char* const lzw = "<< /Length 1 /Filter /LZWDecode >>\nstream\nq\nendstream";
    const struct {
        std::uint32_t id; ///< of an object of the document, or of the letterhead
        const char* object;
        std::string failure;
        bool inLetterhead = false, above = false;
    } rows[] = {
        {2, "<< /Type /Pages /Kids [ 99 0 R ] >>", told(PageTreeInvalid, dangling, 2)},
        {2, "<< /Type /Pages /Kids [ 99 0 R ] >>", told(PageTreeInvalid, its + dangling, 2), true},
        {8, "<< /XObject [ ] >>", kind("", "XObject", 3)},
        {8, "[ ]", kind(its, "Resources", 3), true},
        {6, "<< /Contents 0 >>", kind("", "Contents", 6)},
        {6, "<< /Contents 0 >>", kind("", "Contents", 6), false, true},
        {6, "<< /Contents 0 >>", kind(its, "Contents", 6), true},
        {4, lzw,
         told(FilterUnsupported,
              its + "Object 4: The stream is stored neither plainly nor by FlateDecode without a "
                    "predictor",
              4),
         true},
    };
    for (const auto& row : rows) {
        const auto file = [&](bool faulty) {
            auto builder =
                DocumentBuilder::minimal()
                    .object(2, "<< /Type /Pages /Kids [3 0 R 5 0 R 6 0 R 6 0 R]/Resources 8 0 R >>")
                    .object(3, "<< /Rotate 0 >>")
                    .object(5, "<< /Contents 4 0 R >>")
                    .object(6, "<< /Contents [ 4 0 R 7 0 R ] >>")
                    .stream(7, "", "n")
                    .object(8, "<< >>");
            return (faulty ? builder.object(row.id, row.object) : builder).bytes();
        };
        const auto document = open(file(!row.inLetterhead));
        const auto other = open(file(row.inLetterhead));
        const std::string before = write(*document), otherBefore = write(*other);
        const LetterheadOptions options = {.mode = LetterheadPages::PageByPage, .above = row.above};
        EXPECT_EQ(told(resultOf([&] { return Tools::letterhead(document, other, options); })),
                  row.failure);
        EXPECT_EQ(write(*document), before) << row.failure;
        EXPECT_EQ(write(*other), otherBefore) << row.failure;
    }
    const auto document = open(onePage(""));
    expectRefusal(resultOf([&] { return Tools::letterhead(document, document); }), InvalidArgument);
    expectRefusal(resultOf([&] { return Tools::letterhead(document, nullptr); }), NullArgument);
    expectRefusal(resultOf([&] { return Tools::letterhead(nullptr, document); }), NullArgument);
}

TEST(IsolatedPage, DrawsTheSameAsOneForm) {
    const std::string lzw = "/Filter [ /LZWDecode ] ";
    const struct {
        std::string name, contents, entries, data; ///< the last two of stream 4
        std::string form;                          ///< its data, decoded where it can be
        std::size_t added;                         ///< objects
    } rows[] = {
        {"one stream", "4 0 R", "", "q Q", "q Q", 1},
        {"one of a list", "[ null 4 0 R 99 0 R ]", "", "q Q", "q Q", 1},
        {"not decoded", "4 0 R", lzw, "\x80\x0B\x60", "\x80\x0B\x60", 1},
        {"several", "[ 4 0 R 6 0 R 4 0 R ]", "/Filter /FlateDecode ", deflated("q Q"),
         "q Q\nn\nq Q\n", 2},
        {"no stream", "[ ]", "", "q Q", "", 2},
        {"a form before", "4 0 R", lzw + "/Subtype /Form /Matrix [ 2 ] ", "\x80\x0B\x60",
         "\x80\x0B\x60", 2},
    };
    for (const auto& row : rows) {
        const auto document =
            open(onePage("/Rotate 90 /MediaBox [ 9 0 0 9.5 ] /Contents " + row.contents)
                     .stream(4, row.entries, row.data)
                     .stream(6, "", "n"));
        const std::size_t before = document->getObjects().size();
        const auto font = onPage(document, 0, {"Resources", "Font", "F1"});
        const auto ref = Tools::Pages::of(document)->isolate(0, "X!").value();
        EXPECT_EQ(document->getObjects().size(), before + row.added) << row.name;
        EXPECT_EQ(drawn(document, 0), "q\n0 1 -1 0 0 0 cm\n/X! Do\nQ\n") << row.name;
        EXPECT_EQ(textOf(onPage(document, 0, {"Resources"})),
                  "<< XObject -> << X! -> " + textOf(ref) + " >> >>");
        const auto form = streamOf(*document, ref->id());
        const bool known = row.entries.find("LZW") == std::string::npos;
        EXPECT_EQ(known ? decoded(document, form)
                        : contentsOf(document->readStreamData(form, false)),
                  row.form)
            << row.name;
        EXPECT_EQ(textOf(at(document, form, {"Matrix"})), "[0.0-1.01.00.00.00.0 ]") << row.name;
        EXPECT_EQ(textOf(at(document, form, {"BBox"})), "[0.00.09.010.0 ]") << row.name;
        EXPECT_EQ(at(document, form, {"Resources", "Font", "F1"}), font) << row.name;
    }
    const auto document = open(onePage(""));
    Tools::Pages pages = Tools::Pages::of(document).value();
    for (const char* const name : {"", "a b", "a#20", "a/", "\xC3\xA9"})
        expectRefusal(resultOf([&] { return pages.isolate(0, name); }), InvalidArgument);
    expectRefusal(resultOf([&] { return pages.isolate(1, "X"); }), OutOfRange);
    EXPECT_FALSE(document->changed());

    EXPECT_TRUE(Tools::Pages::of(document)->remove(0));
    expectRefusal(resultOf([&] { return pages.isolate(0, "X"); }), OutOfRange,
                  "There is no page 0: there are 0, counted from 0");
}

} // namespace
