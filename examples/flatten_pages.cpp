// Makes every page of a document a direct kid of its page tree's root.

#include "program.h"

#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;

// page begin
/// The document with one flat list of pages, which look as they did.
bool flatten(Document& document) {
    const auto before = Tools::allPages(document);
    if (!before || !Tools::flattenPages(document)) return false;
    std::printf("%zu pages\n", before->size());
    return document.getPages().size() == before->size();
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv,
                                       {"flatten_pages IN OUT",
                                        "Makes every page a direct kid of the page tree's root.",
                                        Program::writingOptions()});
    if (!arguments.are(2)) return arguments.refuse();

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    if (!flatten(*document)) return Program::failure(arguments[0]);
    if (const int status = Program::finishOutput(); status != 0) return status;
    return Program::save(*document, arguments[1], Program::saving(arguments));
}
