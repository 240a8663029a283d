// Recipe: replacing what a page shows, and adding a page.

#include "program.h"

#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// The first page shows a grey box, and one of its size, with a text, comes behind the last one.
bool redraw(const Ref<Document>& document) {
    constexpr auto font = "<</Font <</F1 <</Type /Font /Subtype /Type1 /BaseFont /Helvetica>>>>>>";
    auto pages = Tools::Pages::of(document).value();
    if (pages.empty()) return true;
    const auto resources = Tools::parseValue(font).value();
    const auto box = Tools::addStream(document, "0.8 g 50 50 200 100 re f").value();
    pages.add("BT /F1 24 Tf 72 500 Td (The end) Tj ET", pages[0].mediaBox, resources).value();
    return pages[0].dictionary->set("Contents", box);
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"recipe_content IN OUT",
         "Has the first page show a grey box, and adds a page with a text behind the last one.",
         Program::writingOptions()});
    if (!arguments.are(2)) return arguments.refuse();
    return Program::edit(arguments, arguments[0], arguments[1], redraw);
}
