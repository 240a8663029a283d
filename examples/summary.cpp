// Says how many pages and fields a document has: the ways to deal with what tools give.

#include "program.h"

#include <pdf/tools/forms.h>
#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// The number of fields. A document without a form has none, which is no failure here.
Tools::Result<std::size_t> countFields(const Ref<Document>& document) {
    const auto form = Tools::FormEditor::of(document);
    if (form) return form->size();
    if (form.error().code() == FormNotFound) return 0U;
    return Tools::Unexpected(form.error());
}

/// Prints what the file at `path` has; gives the exit status.
int summarise(std::string_view path) try {
    const auto document = Tools::open(path).value(); // throws where there is none
    const auto pages = Tools::Pages::of(document).transform(&Tools::Pages::size);
    std::printf("pages %zu\nfields %zu\n", pages.value(), countFields(document).value());
    return 0;
} catch (const Tools::BadResultAccess<Tools::Failure>& access) {
    const Tools::Failure& failure = access.error();
    std::fprintf(stderr, "error %u (0x%X): object %u: %s; docs/errors.md says more\n",
                 failure.code(), failure.code(), failure.object(), failure.text());
    return 1;
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv, {"summary FILE", "Prints how many pages and fields a document has."});
    return arguments.are(1) ? summarise(arguments[0]) : arguments.refuse();
}
