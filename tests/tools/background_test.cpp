#include "support/testing.h"

#include <pdf/tools/background.h>

#include <algorithm>
#include <array>

namespace {

using namespace Libraries::Files::PDF;
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

/// What a value leads to by keys, or by the indexes of elements.
AnyValue at(const Document& document, AnyValue value, const std::vector<std::string>& path) {
    for (const std::string& key : path) {
        const RecordingLog quiet;
        value = Tools::resolve(document, value);
        if (const auto list = castTo<Array>(value)) {
            value = list->get(std::stoul(key));
            continue;
        }
        const auto stream = castTo<Stream>(value);
        const auto entries = stream ? stream->dict() : castTo<Dictionary>(value);
        value = entries ? entries->find(key) : nullptr;
    }
    const RecordingLog quiet;
    return value ? Tools::resolve(document, value) : nullptr;
}

Tools::Page pageOf(const Document& document, std::size_t index) {
    const auto pages = Tools::allPages(document);
    return (*pages)[index];
}

AnyValue onPage(const Document& document, std::size_t page, const std::vector<std::string>& path) {
    return at(document, pageOf(document, page).dictionary, path);
}

/// All that a page draws, its streams parted by bars.
std::string drawn(Document& document, std::size_t page) {
    const auto contents = onPage(document, page, {"Contents"});
    const auto list = castTo<Array>(contents);
    std::string all;
    for (std::uint64_t index = 0; index < (list ? list->size() : 1); ++index) {
        const auto stream = list ? at(document, list, {std::to_string(index)}) : contents;
        all += index == 0 ? "" : "|";
        if (stream) all += contentsOf(Tools::decodedBytes(document, castTo<Stream>(stream)));
    }
    return all;
}

std::string placing(const std::string& matrix, const std::string& name = "Letterhead1") {
    return "/Artifact BMC\nq\n" + matrix + " cm\n/" + name + " Do\nQ\nEMC\n";
}

TEST(Letterhead, FillsWhatIsSeenOfThePage) {
    const std::string tall = "/MediaBox [ 0 0 100 200 ] ", wide = "/MediaBox [ 0 0 200 100 ] ";
    const struct {
        const char* name;
        std::string page, letterhead;
        const char* matrix;
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
            const auto document = Support::open(onePage(row.page).bytes());
            const auto other = Support::open(onePage(row.letterhead).bytes());
            const std::string before = write(*other);
            ASSERT_TRUE(Tools::letterhead(*document, other, {.above = above, .asIs = row.asIs}))
                << row.name;
            const std::string content = "0 0 9 9 re f", place = placing(row.matrix);
            EXPECT_EQ(drawn(*document, 0),
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
        .object(2,
                "<< /Type /Pages /Resources 8 0 R /MediaBox [ 0 0 9 9 ] /Kids [ 5 0 R 3 0 R ] >>")
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
    const auto document = Support::open(clashingFile("Own"));
    const auto other = Support::open(clashingFile("Other"));
    document->faithfulNumbers(true);
    const std::size_t before = document->getObjects().size();
    ASSERT_TRUE(Tools::letterhead(*document, other));
    // The second page that was listed twice; the form, which is its own Im; its resources, the font
    // and their names; the group; what draws the form on two pages, and on the third.
    EXPECT_EQ(document->getObjects().size(), before + 8);
    ASSERT_TRUE(Tools::letterhead(*document, other)) << "a second time";
    const auto again = Support::open(write(*document));
    again->faithfulNumbers(true);
    EXPECT_EQ(drawn(*again, 0), placing("-1 0 0 -1 0 0", "Letterhead3") + "|" +
                                    placing("-1 0 0 -1 0 0") + "|0 0 9 9 re f|")
        << "upright on a page that is not";
    EXPECT_EQ(drawn(*again, 2),
              placing("1 0 0 1 9 9", "Letterhead3") + "|" + placing("1 0 0 1 9 9"));
    for (std::size_t page = 0; page < 3; ++page) {
        EXPECT_EQ(textOf(onPage(*again, page, {"Resources", "Font", "F1", "Name"})), "Own");
        for (const char* const name : {"Letterhead1", "Letterhead3"}) {
            const auto form = onPage(*again, page, {"Resources", "XObject", name});
            EXPECT_EQ(contentsOf(Tools::decodedBytes(*again, castTo<Stream>(form))),
                      "0 0 9 9 re f");
            const auto font = at(*again, form, {"Resources", "Font", "F1"});
            EXPECT_EQ(textOf(at(*again, font, {"Name"})), "Other");
            EXPECT_EQ(font, at(*again, font, {"Ring", "Font", "F2"})) << "one copy, in its ring";
            EXPECT_EQ(castTo<Number>(at(*again, font, {"Gap"}))->spelling()->utf8(), "-0.05");
            for (const char* const gone : {"Page", "Tree", "Gone"})
                EXPECT_EQ(textOf(at(*again, font, {gone})), "Null") << gone;
            EXPECT_EQ(textOf(at(*again, form, {"Group", "I"})), "true");
            EXPECT_EQ(textOf(at(*again, form, {"BBox"})), "[0.00.09.09.0 ]");
            EXPECT_EQ(textOf(at(*again, form, {"Matrix"})), "[-1.00.00.0-1.00.00.0 ]");
        }
    }
}

/// As many pages, each with a box of its own.
std::string pagesFile(std::size_t count) {
    DocumentBuilder builder = DocumentBuilder::minimal();
    std::string kids;
    for (std::size_t page = 0; page < count; ++page) {
        const std::string number = std::to_string(page + 10);
        kids += number + " 0 R ";
        builder.object(static_cast<std::uint32_t>(page + 10),
                       "<< /Type /Page /Contents 4 0 R /MediaBox [ 0 0 " + number + " 9 ] >>");
    }
    for (std::uint32_t id = 5; id < 10; ++id)
        builder.object(id, "0");
    return builder.object(2, "<< /Type /Pages /Kids [ " + kids + "] >>").bytes();
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
        const auto document = Support::open(pagesFile(5));
        const auto other = Support::open(pagesFile(row.sheets));
        const std::string before = write(*document);
        const bool done =
            Tools::letterhead(*document, other, {.mode = row.mode, .ranges = row.ranges});
        if (row.code != 0) expectFailure(done, row.code);
        EXPECT_EQ(done, row.code == 0);
        std::string got;
        for (std::size_t page = 0; page < 5; ++page) {
            const auto names =
                castTo<Dictionary>(onPage(*document, page, {"Resources", "XObject"}));
            const auto keys = names ? names->keys() : nullptr;
            const auto form = keys ? at(*document, names, {(*keys)[0]->utf8()}) : nullptr;
            const auto box = castTo<Number>(at(*document, form, {"BBox", "2"}));
            got += box ? static_cast<char>('0' + box->integer() - 10) : '.';
        }
        EXPECT_EQ(got, row.got);
        EXPECT_EQ(write(*document) == before, !done) << row.got;
    }
}

TEST(Letterhead, GivesBackWhatAPageLeavesOpen) {
    const std::tuple<const char*, int> rows[] = {
        {"", 1},
        {"q q Q 1 0 0 1 0 0 cm", 2},
        {"q\nq[q]q(q)/q%q\rq<71>q<</q/q>>q{q", 9},
        {"(\\) q (nested) q\\\\) q (q", 2},
        {"qQ Qq 1q q1 Q", 1},
        {"Q q", 2},
        {"Q Q Q q q Q", 2},
        {"BI /W 9 ID q q EI\x80 q EIq q\nEI Q", 1},
        {"BI /W 9 ID EI q", 2},
        {"ID q", 2},
        {"BI ID q", 1},
    };
    for (const auto& [content, count] : rows) {
        for (const bool flate : {false, true}) {
            auto file = onePage("");
            file.object(6, "<< >>")
                .stream(4, flate ? "/Filter /FlateDecode " : "",
                        flate ? deflated(content) : content);
            const auto document = Support::open(file.bytes());
            const auto other = Support::open(onePage("").bytes());
            ASSERT_TRUE(Tools::letterhead(*document, other, {.above = true})) << content;
            const std::string all = drawn(*document, 0);
            const std::size_t end = all.rfind('|');
            const std::string closing = all.substr(all.rfind('|', end - 1) + 1, end);
            EXPECT_EQ(std::ranges::count(closing.substr(0, closing.find('|')), 'Q'), count)
                << content;
        }
    }
}

TEST(Letterhead, ChangesNothingWhereItFails) {
    const struct {
        const char* name;
        std::uint32_t id;
        const char* object;
        std::uint32_t code;
        bool inLetterhead = false, above = false;
    } rows[] = {
        {"tree", 2, "<< /Type /Pages /Kids [ 99 0 R ] >>", PageTreeInvalid},
        {"letterhead's tree", 2, "<< /Type /Pages /Kids [ 99 0 R ] >>", PageTreeInvalid, true},
        {"names", 8, "<< /XObject [ ] >>", PageInvalid},
        {"resources", 8, "[ ]", PageInvalid, true},
        {"contents", 6, "<< /Contents 0 >>", StepFailed},
        {"contents below", 6, "<< /Contents 0 >>", PageInvalid, false, true},
        {"letterhead's contents", 6, "<< /Contents 0 >>", PageInvalid, true},
        {"several streams", 4, "<< /Length 1 /Filter /LZWDecode >>\nstream\nq\nendstream",
         FilterUnsupported, true},
    };
    for (const auto& row : rows) {
        const auto file = [&](bool faulty) {
            auto builder =
                DocumentBuilder::minimal()
                    .object(2,
                            "<< /Type /Pages /Kids [ 3 0 R 5 0 R 6 0 R 6 0 R ] /Resources 8 0 R >>")
                    .object(3, "<< /Rotate 0 >>")
                    .object(5, "<< /Contents 4 0 R >>")
                    .object(6, "<< /Contents [ 4 0 R 7 0 R ] >>")
                    .stream(7, "", "n")
                    .object(8, "<< >>");
            return (faulty ? builder.object(row.id, row.object) : builder).bytes();
        };
        const auto document = Support::open(file(!row.inLetterhead));
        const auto other = Support::open(file(row.inLetterhead));
        const std::string before = write(*document), otherBefore = write(*other);
        const RecordingLog quiet;
        const bool done = Tools::letterhead(
            *document, other, {.mode = LetterheadPages::PageByPage, .above = row.above});
        expectFailure(done, row.code);
        EXPECT_EQ(write(*document), before) << row.name;
        EXPECT_EQ(write(*other), otherBefore) << row.name;
    }
    const auto document = Support::open(onePage("").bytes());
    expectFailure(Tools::letterhead(*document, document), InvalidArgument);
    expectFailure(Tools::letterhead(*document, nullptr), NullArgument);
}

TEST(IsolatedPage, DrawsTheSameAsOneForm) {
    const std::string lzw = "/Filter [ /LZWDecode ] ";
    const struct {
        const char* name;
        const char* contents;
        std::string entries, data; ///< of stream 4
        const char* form;          ///< its data, decoded where it can be
        std::size_t added;         ///< objects
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
        const auto document = Support::open(
            onePage("/Rotate 90 /MediaBox [ 9 0 0 9.5 ] /Contents " + std::string(row.contents))
                .stream(4, row.entries, row.data)
                .stream(6, "", "n")
                .bytes());
        const std::size_t before = document->getObjects().size();
        const auto font = onPage(*document, 0, {"Resources", "Font", "F1"});
        const auto ref = Tools::isolatePage(*document, pageOf(*document, 0), "X!");
        ASSERT_TRUE(ref) << row.name;
        EXPECT_EQ(document->getObjects().size(), before + row.added) << row.name;
        EXPECT_EQ(drawn(*document, 0), "q\n0 1 -1 0 0 0 cm\n/X! Do\nQ\n") << row.name;
        EXPECT_EQ(textOf(onPage(*document, 0, {"Resources"})),
                  "<< XObject -> << X! -> " + textOf(ref) + " >> >>");
        const auto form = castTo<Stream>(Tools::resolve(*document, ref));
        const bool known = row.entries.find("LZW") == std::string::npos;
        EXPECT_EQ(contentsOf(known ? Tools::decodedBytes(*document, form)
                                   : document->readStreamData(form, false)),
                  row.form)
            << row.name;
        EXPECT_EQ(textOf(at(*document, form, {"Matrix"})), "[0.0-1.01.00.00.00.0 ]") << row.name;
        EXPECT_EQ(textOf(at(*document, form, {"BBox"})), "[0.00.09.010.0 ]") << row.name;
        EXPECT_EQ(at(*document, form, {"Resources", "Font", "F1"}), font) << row.name;
    }
    const auto document = Support::open(onePage("").bytes());
    const auto other = Support::open(onePage("").bytes());
    const Tools::Page page = pageOf(*document, 0);
    for (const char* const name : {"", "a b", "a#20", "a/", "\xC3\xA9"})
        expectFailure(Tools::isolatePage(*document, page, name), InvalidArgument);
    expectFailure(Tools::isolatePage(*other, page, "X"), InvalidArgument);
    expectFailure(Tools::isolatePage(*document, {}, "X"), NullArgument);
    EXPECT_FALSE(document->changed());
}

} // namespace
