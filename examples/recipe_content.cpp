// Recipe: replacing what a page shows, and adding a page.

#include "program.h"

#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// The first page shows a grey box instead of what it showed, and a page of the same size and the
/// same resources comes behind the last one, with a text in the font Helvetica.
bool redraw(Document& document) {
    const auto pages = Tools::allPages(document);
    if (!pages || pages->empty() || !pages->front().mediaBox) return false;
    const Tools::Page& first = pages->front();
    const auto box = Tools::makeStream(document, "0.8 g 50 50 200 100 re f", true);
    if (!box || !first.dictionary->set("Contents", box)) return false;

    const auto resources = Tools::parseValue("<< /Font << /F1 << /Type /Font /Subtype /Type1 "
                                             "/BaseFont /Helvetica >> >> >>");
    return resources && Tools::addPage(document, "BT /F1 24 Tf 72 500 Td (The end) Tj ET",
                                       first.mediaBox, resources);
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

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    if (!redraw(*document)) return Program::failure(arguments[0]);
    return Program::save(*document, arguments[1], Program::saving(arguments));
}
