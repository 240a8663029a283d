// Recipe: which fonts and images the pages use.

#include "program.h"

#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// The entries of a category of resources, each a dictionary or a stream's, whatever is indirect.
void list(const Document& document, const Dictionary& resources, const char* category) {
    const auto entries = Tools::as<Dictionary>(Tools::resolve(document, resources.find(category)));
    if (!entries) return;
    for (const auto& key : entries->keys()) {
        const auto value = Tools::resolve(document, entries->find(key));
        const auto stream = Host::cast<Stream>(value);
        const auto dict = stream ? stream->dict() : Host::cast<Dictionary>(value);
        if (!dict) continue;
        const auto font = Tools::resolve(document, dict->find("BaseFont"));
        const auto width = Host::cast<Number>(Tools::resolve(document, dict->find("Width")));
        const auto height = Host::cast<Number>(Tools::resolve(document, dict->find("Height")));
        if (font) std::printf("font %s\n", font->asText()->utf8().c_str());
        if (!width || !height) continue;
        std::printf("image %lld x %lld\n", static_cast<long long>(width->integer()),
                    static_cast<long long>(height->integer()));
    }
}

/// Fonts and images of every page, with what pages inherit. False where the tree is unsound.
bool listAll(const Document& document) {
    const auto pages = Tools::allPages(document);
    std::size_t number = 0; // as people count
    for (const Tools::Page& page : pages) {
        std::printf("page %zu\n", ++number);
        if (!page.resources) continue;
        list(document, *page.resources, "Font");
        list(document, *page.resources, "XObject");
    }
    return pages != nullptr;
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv,
                                       {"recipe_resources FILE",
                                        "Lists the fonts and images of each page.",
                                        Program::openingOptions()});
    if (!arguments.are(1)) return arguments.refuse();

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    if (!listAll(*document)) return Program::failure(arguments[0]);
    return Program::finishOutput();
}
