// Makes every page of a document a direct kid of its page tree's root.

#include "program.h"

#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// The document with one flat list of pages, which look as they did.
void flatten(const Ref<Document>& document) {
    auto pages = Tools::Pages::of(document).value();
    pages.flatten().value();
    std::printf("%zu pages\n", document->getPages().size());
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv,
                                       {"flatten_pages IN OUT",
                                        "Makes every page a direct kid of the page tree's root.",
                                        Program::writingOptions()});
    if (!arguments.are(2)) return arguments.refuse();
    return Program::edit(arguments, arguments[0], arguments[1], flatten);
}
