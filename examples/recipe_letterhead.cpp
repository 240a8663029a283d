// Recipe: a letterhead beneath every page, whatever trees the two have.

#include "program.h"

#include <pdf/tools/letterheads.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Lays the first page of `letterhead` beneath every page that a reader sees, as large as fits.
auto addLetterhead(const Ref<Document>& document, const Ref<Document>& letterhead) {
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

    Ref<Document> document;
    Ref<Document> letterhead;
    const auto open = [&](const Program::Opening& how) {
        document = Program::open(arguments[0], how);
        letterhead = document ? Program::open(arguments[1], how) : nullptr;
        return letterhead != nullptr;
    };
    const auto lay = [&] { return addLetterhead(document, letterhead); };
    const auto how = Program::opening(arguments);
    const int status = Program::changeOpened(arguments[0], how, open, lay);
    if (status != Program::done) return status;
    return Program::save(document, arguments[2], Program::saving(arguments));
}
