#include "support/results.h"

#include <pdf/tools/forms.h>

namespace {

using namespace Support;
using Tools::FormEditor;
using Tools::Pages;

std::string formOf(const std::string& fields) {
    return "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [ " + fields + " ] >> >>";
}

const std::string emptyForm = formOf("");

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
        .object(2, pageTree(10, nodes))
        .object(5, "[ " + references(3, kids, 0) + " ]")
        .bytes();
}

std::string pageListed(std::uint32_t times, std::size_t text) {
    return DocumentBuilder::minimal()
        .object(2, pageTree(3, times, 0))
        .object(3, "<< /Type /Page /T (" + std::string(text, 'x') + ") >>")
        .bytes();
}

std::string pagesThatShareContents(std::uint32_t pages, std::uint32_t streams) {
    return many(pages, "<< /Type /Page /Contents 5 0 R >>")
        .object(2, pageTree(10, pages))
        .object(5, "[ " + references(4, streams, 0) + " ]")
        .bytes();
}

std::string pagesThatShareWidgets(std::uint32_t pages, std::uint32_t widgets) {
    auto file = many(pages, "<< /Type /Page /Annots 5 0 R >>");
    for (std::uint32_t index = 0; index < widgets; ++index)
        file.object(10 + pages + index,
                    "<< /Subtype /Widget /Rect [ 0 0 9 9 ] /AP << /N 6 0 R >> >>");
    return file.object(1, emptyForm)
        .object(2, pageTree(10, pages))
        .object(5, "[ " + references(10 + pages, widgets) + " ]")
        .stream(6, "/BBox [ 0 0 9 9 ]", "0 g")
        .bytes();
}

/// One field whose widgets, which are on one page, show what it has.
std::string widgetsOf(std::uint32_t widgets, const std::string& entries) {
    const std::string all = references(10, widgets);
    return many(widgets, "<< /Subtype /Widget /Rect [ 0 0 99 99 ] /Parent 5 0 R >>")
        .object(1, formOf("5 0 R"))
        .object(3, "<< /Type /Page /Annots [ " + all + " ] >>")
        .object(5, "<< /T (f) " + entries + " /Kids [ " + all + " ] >>")
        .bytes();
}

/// What failed; empty where nothing did.
using Work = std::string (*)(const Ref<Document>&);

const Work list = [](auto& document) { return told(Pages::of(document)); };
const Work flattenPages = [](auto& document) { return told(Pages::of(document)->flatten()); };
const Work flattenForm = [](auto& document) { return told(Tools::flattenForm(document)); };
const Work fill = [](auto& document) {
    return told(FormEditor::of(document)->fill("f", std::string(60'000, '!')));
};

TEST(Bounds, StopWhatAFileListsAgainAndAgain) {
    const char* const much = "Widgets that share a text show too much of it";
    const std::string longText = "(" + std::string(60'000, '!') + ")";
    const std::string longName = "/" + std::string(60'000, '!');
    // What is said by what refuses; nothing where it is done.
    const std::tuple<const char*, std::string, Work, std::string> rows[] = {
        {"some nodes share kids", nodesThatShareKids(60, 60), list, ""},
        {"many nodes share kids", nodesThatShareKids(70, 70), list,
         "Nodes of the page tree share too many kids: 75 (0)"},
        {"a page is listed often", pageListed(20'000, 9), flattenPages, ""},
        {"a long page is listed", pageListed(70, 60'000), flattenPages, ""},
        {"a long page is listed often", pageListed(90, 60'000), flattenPages,
         "Copies take too much room for page 3 (0)"},
        {"pages share contents", pagesThatShareContents(200, 900), flattenPages, ""},
        {"many pages share contents", pagesThatShareContents(400, 900), flattenPages,
         "Copies take too much room for page 296 (0)"},
        {"pages share widgets", pagesThatShareWidgets(60, 60), flattenForm, ""},
        {"many pages share widgets", pagesThatShareWidgets(70, 70), flattenForm,
         "Pages share too many annotations, up to page 72 (0)"},
        {"widgets share a text", widgetsOf(10, "/FT /Tx /V " + longText), flattenForm, ""},
        {"many widgets share a text", widgetsOf(40, "/FT /Tx /V " + longText), flattenForm, much},
        {"many widgets share the name of a font",
         widgetsOf(40, "/FT /Tx /DA (" + longName + " 9 Tf)"), flattenForm, much},
        {"many widgets are filled with a text", widgetsOf(40, "/FT /Tx"), fill, much},
        {"many widgets show an option",
         widgetsOf(40, "/FT /Ch /Ff 131072 /Opt [ " + longText + " ]"), fill, much},
        {"many widgets show a list", widgetsOf(40, "/FT /Ch /Opt [ " + longText + " ]"),
         flattenForm, much},
        {"many widgets get a state", widgetsOf(40, "/FT /Btn"), fill, much},
        {"many widgets have a state", widgetsOf(40, "/FT /Btn /V " + longName), flattenForm, much},
    };
    for (const auto& [name, file, work, said] : rows) {
        const auto document = open(file);
        ASSERT_TRUE(document) << name;
        const std::string before = write(*document);
        const std::string refusal = work(document);
        EXPECT_TRUE(refusal.ends_with(said)) << name << ": " << refusal;
        EXPECT_EQ(refusal.substr(0, 5), said.empty() ? "" : std::to_string(OutOfRange)) << name;
        if (said.empty()) continue;
        EXPECT_TRUE(write(*document) == before) << name << ": changed";
    }
}

TEST(Bounds, DrawAWidgetOnceOnAPage) {
    const auto document = open(DocumentBuilder::minimal().objects(
        {{1, emptyForm},
         {2, "<< /Type /Pages /Kids [ 3 0 R 3 0 R ] >>"},
         {3, "<< /Type /Page /Annots [ 5 0 R 5 0 R 5 0 R ] >>"},
         {5, "<< /Subtype /Widget /FT /Tx /Rect [ 0 0 9 9 ] >>"}}));
    ASSERT_EQ(flattenForm(document), "");
    for (const std::size_t page : {0U, 1U}) // a page that is listed twice shows it twice
        EXPECT_EQ(drawn(document, page), "q\n1 0 0 1 0 0 cm\n/Field1 Do\nQ\n");
}

TEST(Bounds, LookThroughContentsWithinABudget) {
    // Each of the streams saves a state behind what deflates to a thousandth.
    constexpr std::uint32_t pages = 20;
    auto file = many(pages, "<< >>")
                    .object(1, emptyForm)
                    .object(2, pageTree(10, pages))
                    .object(5, "<< /Subtype /Widget /FT /Tx /Rect [ 0 0 9 9 ] >>");
    for (std::uint32_t page = 0; page < pages; ++page) {
        const std::string contents = std::to_string(10 + pages + page);
        file.object(10 + page,
                    "<< /Type /Page /Annots [ 5 0 R ] /Contents [ " + contents + " 0 R ] >>")
            .stream(10 + pages + page, "/Filter /FlateDecode",
                    deflated(std::string(1'000'000, ' ') + "q"));
    }
    const auto document = open(file);
    ASSERT_EQ(flattenForm(document), "");
    std::uint32_t closed = 0;
    for (std::size_t page = 0; page < pages; ++page)
        closed += drawn(document, page).find("|\nQ\nQ\n|") != std::string::npos ? 1U : 0U;
    EXPECT_EQ(closed, 1U) << "of 20 MB, 64 times the stored bytes and 1 MiB may be looked through";
}

TEST(Bounds, GiveALongTextThatIsListedOftenAFewTimes) {
    const std::pair<std::size_t, std::uint64_t> rows[] = {{256, 6}, {257, 4}}; // characters, times
    for (const auto& [size, times] : rows) {
        const auto document = open(many(1, "<< /T (f) /FT /Ch /V 6 0 R /Opt 6 0 R >>")
                                       .object(1, formOf("10 0 R"))
                                       .object(5, "(" + std::string(size, 'x') + ")")
                                       .object(6, "[ " + references(5, 6, 0) + " ]"));
        const FormEditor form = FormEditor::of(document).value();
        const auto options = form.options(*form.begin()).value();
        const auto values = form.values(*form.begin()).value();
        ASSERT_EQ(options.size(), 6U);
        ASSERT_EQ(values.size(), 6U);
        for (std::uint64_t place = 0; place < 6; ++place) {
            EXPECT_EQ(options[place].text.size(), place < times ? size : 0) << size;
            EXPECT_EQ(values[place].size(), place < times ? size : 0) << size;
        }
    }
}

/// Fields below each other, from 10 on, the last of them so deep.
Ref<Document> chain(std::uint32_t depth, const std::string& first, const std::string& all) {
    auto file = many(0, "").object(1, formOf("10 0 R"));
    for (std::uint32_t id = 10; id <= 10 + depth; ++id) {
        const std::string kids = id < 10 + depth ? "/Kids [ " + references(id + 1, 1) + "]" : "";
        file.object(id, "<< " + all + (id == 10 ? first : "") + kids + " >>");
    }
    return open(file);
}

TEST(Bounds, LookForTheFieldOfAWidgetSoFarUp) {
    const auto document = chain(80, "/T (f) /V (x) ", "/FT /Tx ");
    const FormEditor form = FormEditor::of(document).value();
    EXPECT_EQ(form.size(), 1U);
    auto field = document->form()->field(0);
    std::uint32_t known = 0;
    for (; field; field = field->childCount() == 0 ? nullptr : field->child(0))
        known += form.values(field).value().size() == 1 ? 1U : 0U;
    EXPECT_EQ(known, 64U) << "32 up to the field, 32 of its own";
}

TEST(Bounds, InheritAKindFromSoFarUp) {
    for (const std::uint32_t depth : {31U, 32U}) {
        const auto document = chain(depth, "/FT /Tx ", "/T (f) ");
        const FormEditor form = FormEditor::of(document).value();
        auto field = document->form()->field(0);
        while (field->childCount() != 0)
            field = field->child(0);
        EXPECT_EQ(form.kind(field).value() == Field::Kind::Text, depth == 31);
        EXPECT_EQ(form.size(), depth == 31 ? 1U : 0U);
    }
}

} // namespace
