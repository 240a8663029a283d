// Edits values in place: a document gets a title, and opens at its last page from now on.

#include "program.h"

#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Gives the document a title, in any script, and prints the former one.
bool setTitle(const Ref<Document>& document, std::string_view utf8) {
    const auto info = Tools::getOrAdd(document, document->trailer(), "Info").value();
    const auto former = Tools::get<String>(document, info, "Title");
    if (former) std::printf("was: %s\n", (*former)->asText()->utf8().c_str()); // UTF-16 too
    return info->set("Title", Tools::textString(utf8).value());
}

/// Has viewers open the document at its last page, fit into the window (ISO 32000-1, 12.3.2.2).
bool openAtLastPage(const Ref<Document>& document) {
    const auto pages = Tools::Pages::of(document).value();
    if (pages.empty()) // a failure of ours is thrown as those of the library are
        throw Tools::BadResultAccess(Tools::Failure(PageTreeInvalid, "it has no page"));
    const auto last = Tools::referenceTo(pages[pages.size() - 1].object).value();
    const auto view = Array::create({last, Tools::nameOf("Fit").value()});
    const auto catalog = Tools::get<Dictionary>(document, document->trailer(), "Root").value();
    return view && catalog->set("OpenAction", view) &&
           catalog->set("PageMode", nullptr); // null takes the entry away
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"edit_values IN OUT TITLE",
         "Gives the document a title, prints the former one, and has it open at its last page.",
         Program::writingOptions()});
    if (!arguments.are(3)) return arguments.refuse();
    return Program::edit(arguments, arguments[0], arguments[1], [&](const Ref<Document>& document) {
        return setTitle(document, arguments[2]) && openAtLastPage(document);
    });
}
