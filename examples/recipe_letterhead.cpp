// Recipe: a letterhead beneath every page, whatever trees the two have.

#include "program.h"

#include <pdf/tools/background.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Lays the first page of `letterhead` beneath every page that a reader sees, as large as fits.
bool addLetterhead(Document& document, const Ref<Document>& letterhead) {
    return Tools::letterhead(document, letterhead);
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv);
    if (!arguments.are(3)) return Program::usage("recipe_letterhead IN LETTERHEAD OUT");
    const auto document = Program::open(arguments[0]);
    const auto letterhead = document ? Program::open(arguments[1]) : nullptr;
    if (!letterhead) return Program::failed;
    if (!addLetterhead(*document, letterhead)) return Program::failure();
    return Program::save(*document, arguments[2]);
}
