// Edits values in place: a document gets a title, and opens at its last page from now on.

#include "program.h"

namespace {

using namespace Libraries::Files::PDF;
using namespace Host::Literals;
using Host::Ref;

// page begin
/// Gives the document a title, in any script, and prints the former one.
bool setTitle(const Document& document, std::string_view utf8) {
    const auto entry = document.trailer()->find("Info"_str);
    const auto info = entry ? document.valueAsDict(entry) : nullptr;
    if (!info) return false; // none, or a reference that leads nowhere: the code says which
    const auto former = info->findAsString("Title"_str, true);
    const auto text = former ? former->asText() : nullptr; // UTF-16 bytes become text as well
    if (text) std::printf("was: %s\n", text->utf8().c_str());
    const auto title = String::create(Host::String::create(utf8));
    return title && info->set("Title"_str, title); // setting null would take the entry away
}

/// Has viewers open the document at its last page, fit into the window (ISO 32000-1, 12.3.2.2).
bool openAtLastPage(const Document& document) {
    const auto catalog = document.getCatalog();
    const auto root = document.getPageCatalog();
    if (!catalog || !root) return false;
    const auto kids = root->valueAsDictionary()->findAsArray("Kids"_str);
    if (!kids) return false;
    if (kids->size() == 0) { // a failure of ours is reported as those of the library are
        Host::Error::set(PageTreeInvalid);
        return false;
    }

    // The reference is that of the page tree, now in two places: values are shared, never copied.
    const auto page = kids->getAsObjectRef(kids->size() - 1);
    const auto fit = Name::create("Fit"_str);
    const auto view = page && fit ? Array::create({page, fit}) : nullptr;
    const auto entries = catalog->valueAsDictionary();
    return view && entries->set("OpenAction"_str, view) &&
           entries->set("PageMode"_str, nullptr); // away with it
}
// page end

} // namespace

int main(int argc, char** argv) {
    static constexpr const char* usage =
        "edit_values [--no-verify] [--force] [--faithful] [--any [--password P]] IN OUT TITLE";
    Program::Arguments arguments(argc, argv);
    const Program::Saving saving = Program::takeSaving(arguments);
    const Program::Opening how = arguments.takeOpening();
    if (!arguments.are(3)) return Program::usage(usage);

    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    if (!setTitle(*document, arguments[2]) || !openAtLastPage(*document)) {
        return Program::failure();
    }
    if (const int status = Program::finishOutput(); status != 0) return status;
    return Program::save(*document, arguments[1], saving);
}
