// Recipe: which fonts and images the pages use.

#include "program.h"

#include <pdf/tools/pages.h>

#include <iostream>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Prints the fonts and images of every page: of its own resources, or of those that it inherits.
void list(const Ref<Document>& document) {
    const auto none = Dictionary::create();
    for (const auto& page : Tools::Pages::of(document).value()) {
        std::cout << "page in object " << page.object->id() << '\n';
        for (const char* category : {"Font", "XObject"}) {
            const auto named = Tools::get<Dictionary>(document, page.resources, category);
            for (const auto& key : named.value_or(none)->keys()) {
                auto entries = Tools::get<Dictionary>(document, *named, key->utf8()).value_or(none);
                const auto stream = Tools::get<Stream>(document, *named, key->utf8());
                if (stream) entries = (*stream)->dict();
                const auto font = Tools::get<Name>(document, entries, "BaseFont");
                const auto wide = Tools::get<Number>(document, entries, "Width");
                const auto high = Tools::get<Number>(document, entries, "Height");
                if (font) std::cout << "font " << (*font)->name()->utf8() << '\n';
                if (!wide || !high) continue;
                std::cout << "image " << Tools::toDouble(*wide) << " x " << Tools::toDouble(*high)
                          << '\n';
            }
        }
    }
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv,
                                       {"recipe_resources FILE",
                                        "Lists the fonts and images of each page.",
                                        Program::openingOptions()});
    if (!arguments.are(1)) return arguments.refuse();
    return Program::look(arguments, arguments[0], list);
}
