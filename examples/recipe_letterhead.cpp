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
    const Program::Arguments arguments(
        argc, argv,
        {"recipe_letterhead IN LETTERHEAD OUT",
         "Lays the first page of LETTERHEAD beneath every page of IN.", Program::writingOptions()});
    if (!arguments.are(3)) return arguments.refuse();

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[0], how);
    const auto letterhead = document ? Program::open(arguments[1], how) : nullptr;
    if (!letterhead) return Program::failed;
    if (!addLetterhead(*document, letterhead)) return Program::failure(arguments[0], how);
    return Program::save(*document, arguments[2], Program::saving(arguments, how));
}
