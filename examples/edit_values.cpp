// Edits values in place: a document gets a title, and opens at its last page from now on.

#include "program.h"

#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;

// page begin
/// Gives the document a title, in any script, and prints the former one.
bool setTitle(Document& document, std::string_view utf8) {
    auto info = Tools::as<Dictionary>(Tools::resolve(document, document.trailer()->find("Info")));
    if (!info) { // there is none: make it, as an object that the trailer refers to
        info = Dictionary::create();
        const auto ref = Tools::addObject(document, info);
        if (!ref || !document.trailer()->set("Info", ref)) return false;
    }
    const auto former = info->findAsString("Title", true);
    const auto text = former ? former->asText() : nullptr; // UTF-16 bytes become text as well
    if (text) std::printf("was: %s\n", text->utf8().c_str());
    const auto title = Tools::textString(utf8);
    return title && info->set("Title", title); // setting null would take the entry away
}

/// Has viewers open the document at its last page, fit into the window (ISO 32000-1, 12.3.2.2).
bool openAtLastPage(const Document& document) {
    const auto pages = Tools::allPages(document);
    const auto catalog = pages ? document.getCatalog() : nullptr;
    if (!catalog) return false;
    if (pages->empty()) { // a failure of ours is reported as those of the library are
        Host::Error::set(PageTreeInvalid);
        return false;
    }
    const auto page = Tools::referenceTo(pages->back().object);
    const auto fit = Name::create("Fit");
    const auto view = page && fit ? Array::create({page, fit}) : nullptr;
    const auto entries = catalog->valueAsDictionary();
    return view && entries->set("OpenAction", view) &&
           entries->set("PageMode", nullptr); // away with it
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

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    if (!setTitle(*document, arguments[2]) || !openAtLastPage(*document))
        return Program::failure(arguments[0]);
    if (const int status = Program::finishOutput(); status != 0) return status;
    return Program::save(*document, arguments[1], Program::saving(arguments));
}
