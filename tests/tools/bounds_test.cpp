#include "support/testing.h"

#include <pdf/tools/editing.h>
#include <pdf/tools/filling.h>
#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;
using namespace Support;
using Tools::Filled;

/// References to `count` objects from `first` on, each of which is so far behind the one before.
std::string references(std::uint32_t first, std::uint32_t count, std::uint32_t step = 1) {
    std::string text;
    for (std::uint32_t index = 0; index < count; ++index)
        text += std::to_string(first + index * step) + " 0 R ";
    return text;
}

/// Objects of the same kind, from 10 on.
DocumentBuilder many(std::uint32_t count, const std::string& body) {
    DocumentBuilder file = DocumentBuilder::minimal();
    for (std::uint32_t id = 5; id < 10; ++id)
        file.object(id, "0");
    for (std::uint32_t index = 0; index < count; ++index)
        file.object(10 + index, body);
    return file;
}

std::string nodesThatShareKids(std::uint32_t nodes, std::uint32_t kids) {
    return many(nodes, "<< /Type /Pages /Kids 5 0 R >>")
        .object(2, "<< /Type /Pages /Kids [ " + references(10, nodes) + " ] >>")
        .object(5, "[ " + references(3, kids, 0) + " ]")
        .bytes();
}

std::string pageListed(std::uint32_t times, std::size_t text) {
    return DocumentBuilder::minimal()
        .object(2, "<< /Type /Pages /Kids [ " + references(3, times, 0) + " ] >>")
        .object(3, "<< /Type /Page /T (" + std::string(text, 'x') + ") >>")
        .bytes();
}

std::string pagesThatShareContents(std::uint32_t pages, std::uint32_t streams) {
    return many(pages, "<< /Type /Page /Contents 5 0 R >>")
        .object(2, "<< /Type /Pages /Kids [ " + references(10, pages) + " ] >>")
        .object(5, "[ " + references(4, streams, 0) + " ]")
        .bytes();
}

std::string pagesThatShareWidgets(std::uint32_t pages, std::uint32_t widgets) {
    auto file = many(pages, "<< /Type /Page /Annots 5 0 R >>");
    for (std::uint32_t index = 0; index < widgets; ++index)
        file.object(10 + pages + index,
                    "<< /Subtype /Widget /Rect [ 0 0 9 9 ] /AP << /N 6 0 R >> >>");
    return file.object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm << >> >>")
        .object(2, "<< /Type /Pages /Kids [ " + references(10, pages) + " ] >>")
        .object(5, "[ " + references(10 + pages, widgets) + " ]")
        .stream(6, "/BBox [ 0 0 9 9 ]", "0 g")
        .bytes();
}

/// One field whose widgets, which are on one page, show what it has.
std::string fieldOfWidgets(std::uint32_t widgets, const std::string& entries) {
    const std::string all = references(10, widgets);
    return many(widgets, "<< /Subtype /Widget /Rect [ 0 0 99 99 ] /Parent 5 0 R >>")
        .object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [ 5 0 R ] >> >>")
        .object(3, "<< /Type /Page /Annots [ " + all + " ] >>")
        .object(5, "<< /T (f) " + entries + " /Kids [ " + all + " ] >>")
        .bytes();
}

bool list(Document& document) {
    return Tools::allPages(document) != nullptr;
}

bool flattenPages(Document& document) {
    return Tools::flattenPages(document);
}

bool flattenForm(Document& document) {
    return Tools::flattenForm(document);
}

bool fill(Document& document) {
    const std::string text(60'000, '!');
    return Tools::fillField(document, *Tools::openForm(document), "f", text) == Filled::Shown;
}

TEST(Bounds, StopWhatAFileListsAgainAndAgain) {
    const char* const tooMuch = "Fields that share a text show too much of it\n";
    const std::string longText = "(" + std::string(60'000, '!') + ")";
    const std::string longName = "/" + std::string(60'000, '!');
    const struct {
        const char* name;
        std::string file;
        bool (*work)(Document&);
        std::string said; // by what refuses; nothing where it is done
    } rows[] = {
        {"some nodes share kids", nodesThatShareKids(60, 60), list, ""},
        {"many nodes share kids", nodesThatShareKids(70, 70), list,
         "Nodes of the page tree share too many kids: 75 (0)\n"},
        {"a page is listed often", pageListed(20'000, 9), flattenPages, ""},
        {"a long page is listed", pageListed(70, 60'000), flattenPages, ""},
        {"a long page is listed often", pageListed(90, 60'000), flattenPages,
         "Copies take too much room for page 3 (0)\n"},
        {"pages share contents", pagesThatShareContents(200, 900), flattenPages, ""},
        {"many pages share contents", pagesThatShareContents(400, 900), flattenPages,
         "Copies take too much room for page 296 (0)\n"},
        {"pages share widgets", pagesThatShareWidgets(60, 60), flattenForm, ""},
        {"many pages share widgets", pagesThatShareWidgets(70, 70), flattenForm,
         "Pages share too many annotations\n"},
        {"widgets share a text", fieldOfWidgets(10, "/FT /Tx /V " + longText), flattenForm, ""},
        {"many widgets share a text", fieldOfWidgets(40, "/FT /Tx /V " + longText), flattenForm,
         tooMuch},
        {"many widgets share the name of a font",
         fieldOfWidgets(40, "/FT /Tx /DA (" + longName + " 9 Tf)"), flattenForm, tooMuch},
        {"many widgets are filled with a text", fieldOfWidgets(40, "/FT /Tx"), fill, tooMuch},
        {"many widgets show an option",
         fieldOfWidgets(40, "/FT /Ch /Ff 131072 /Opt [ " + longText + " ]"), fill, tooMuch},
        {"many widgets show a list", fieldOfWidgets(40, "/FT /Ch /Opt [ " + longText + " ]"),
         flattenForm, tooMuch},
        {"many widgets get a state", fieldOfWidgets(40, "/FT /Btn"), fill, tooMuch},
        {"many widgets have a state", fieldOfWidgets(40, "/FT /Btn /V " + longName), flattenForm,
         tooMuch},
    };
    for (const auto& [name, file, work, said] : rows) {
        const auto document = open(file);
        ASSERT_TRUE(document) << name;
        const std::string before = write(*document);
        const RecordingLog log;
        EXPECT_EQ(work(*document), said.empty()) << name;
        EXPECT_TRUE(log.text().ends_with(said)) << name << ": " << log.text();
        if (said.empty()) continue;
        EXPECT_EQ(Host::Error::get(), OutOfRange) << name;
        EXPECT_TRUE(write(*document) == before) << name << ": changed";
    }
}

/// The streams of a page's contents, decoded, each with "|" behind.
std::string contentsOfPage(Document& document, const Tools::Page& page) {
    std::string all;
    const auto streams = Host::cast<Array>(page.dictionary->find("Contents"));
    for (std::uint64_t index = 0; streams && index < streams->size(); ++index) {
        const auto stream = Host::cast<Stream>(Tools::resolve(document, streams->get(index)));
        all += contentsOf(Tools::decodedBytes(document, stream)) + "|";
    }
    return all;
}

TEST(Bounds, DrawAWidgetOnceOnAPage) {
    const auto document = open(DocumentBuilder::minimal()
                                   .object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm << >> >>")
                                   .object(2, "<< /Type /Pages /Kids [ 3 0 R 3 0 R ] >>")
                                   .object(3, "<< /Type /Page /Annots [ 5 0 R 5 0 R 5 0 R ] >>")
                                   .object(5, "<< /Subtype /Widget /FT /Tx /Rect [ 0 0 9 9 ] >>")
                                   .bytes());
    ASSERT_TRUE(Tools::flattenForm(*document));
    const auto pages = Tools::allPages(*document);
    ASSERT_EQ(pages->size(), 2U);
    for (const Tools::Page& page : pages) // a page that is listed twice shows it twice
        EXPECT_EQ(contentsOfPage(*document, page), "q\n1 0 0 1 0 0 cm\n/Field1 Do\nQ\n|");
}

TEST(Bounds, LookThroughContentsWithinABudget) {
    // Each of the streams saves a state behind what deflates to a thousandth.
    constexpr std::uint32_t pages = 20;
    auto file = many(pages, "<< >>")
                    .object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm << >> >>")
                    .object(2, "<< /Type /Pages /Kids [ " + references(10, pages) + " ] >>")
                    .object(5, "<< /Subtype /Widget /FT /Tx /Rect [ 0 0 9 9 ] >>");
    for (std::uint32_t page = 0; page < pages; ++page) {
        const std::string contents = std::to_string(10 + pages + page);
        file.object(10 + page,
                    "<< /Type /Page /Annots [ 5 0 R ] /Contents [ " + contents + " 0 R ] >>")
            .stream(10 + pages + page, "/Filter /FlateDecode",
                    deflated(std::string(1'000'000, ' ') + "q"));
    }
    const auto document = open(file.bytes());
    ASSERT_TRUE(Tools::flattenForm(*document));
    std::uint32_t closed = 0;
    for (const Tools::Page& page : Tools::allPages(*document))
        closed += contentsOfPage(*document, page).find("|\nQ\nQ\n|") != std::string::npos ? 1U : 0U;
    EXPECT_EQ(closed, 1U) << "of 20 MB, 64 times the stored bytes and 1 MiB may be looked through";
}

TEST(Bounds, GiveALongTextThatIsListedOftenAFewTimes) {
    const std::pair<std::size_t, std::uint64_t> rows[] = {{256, 6}, {257, 4}}; // characters, times
    for (const auto& [size, times] : rows) {
        const auto document = open(
            many(1, "<< /T (f) /FT /Ch /V 6 0 R /Opt 6 0 R >>")
                .object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [ 10 0 R ] >> >>")
                .object(5, "(" + std::string(size, 'x') + ")")
                .object(6, "[ " + references(5, 6, 0) + " ]")
                .bytes());
        const auto field = Tools::openForm(*document)->field(0);
        const auto options = Tools::fieldOptions(*document, *field);
        const auto values = Tools::fieldValues(*document, *field);
        ASSERT_EQ(options.size(), 6U);
        ASSERT_EQ(values.size(), 6U);
        for (std::uint64_t place = 0; place < 6; ++place) {
            EXPECT_EQ(options[place].text.size(), place < times ? size : 0) << size;
            EXPECT_EQ(values[place].size(), place < times ? size : 0) << size;
        }
    }
}

TEST(Bounds, LookForTheFieldOfAWidgetSoFarUp) {
    constexpr std::uint32_t depth = 80;
    auto file = many(0, "").object(
        1, "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [ 10 0 R ] >> >>");
    for (std::uint32_t id = 10; id <= 10 + depth; ++id) {
        const std::string kids = id < 10 + depth ? "/Kids [ " + references(id + 1, 1) + "]" : "";
        file.object(id,
                    "<< /FT /Tx " + std::string(id == 10 ? "/T (f) /V (x) " : "") + kids + " >>");
    }
    const auto document = open(file.bytes());
    auto field = Tools::openForm(*document)->field(0);
    std::uint32_t known = 0;
    for (; field; field = field->childCount() == 0 ? nullptr : field->child(0))
        known += Tools::fieldValues(*document, *field).size() == 1 ? 1U : 0U;
    EXPECT_EQ(known, 64U) << "32 up to the field, 32 of its own";
}

} // namespace
