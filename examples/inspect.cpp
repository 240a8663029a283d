// Prints what a document consists of, one fact per line.

#include "program.h"

#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

const char* text(PdfVersion version) {
    static constexpr const char* names[] = {"unsupported", "1.0", "1.1", "1.2", "1.3",
                                            "1.4",         "1.5", "1.6", "1.7"};
    const auto index = static_cast<std::size_t>(version);
    if (version == PdfVersion::V2_0) return "2.0";
    return index < std::size(names) ? names[index] : names[0];
}

const char* lineEndingName(std::string_view ending) {
    if (ending == "\r\n") return "CRLF";
    return ending == "\r" ? "CR" : "LF";
}

void print(const Document& document, const std::vector<Ref<Object>>& pages) {
    const auto objects = document.getObjects();
    std::printf("version %s\n", text(document.version()));
    std::printf("line-ending %s\n", lineEndingName(document.lineEnding()));
    std::printf("objects %zu\n", objects.size());
    std::printf("pages %zu\n", pages.size());
    for (const auto& object : objects) {
        std::printf("object %u %u %u\n", object->id(), object->generation(),
                    static_cast<unsigned>(object->valueType()));
    }
    for (std::size_t index = 0; index < pages.size(); ++index) {
        std::printf("page %zu %u %u\n", index + 1, pages[index]->id(), pages[index]->generation());
    }
}

/// Says where the pages that were printed are not what a reader sees.
void printNesting(const Ref<Document>& document) {
    const auto pages = Tools::Pages::of(document);
    const auto nested = [](const Tools::Page& page) { return page.depth > 1; };
    if (pages && std::ranges::any_of(*pages, nested)) std::printf("nested %zu\n", pages->size());
}

/// Prints all of it. False with the code set where pages cannot be listed.
bool print(const Ref<Document>& document) {
    // An empty list of pages is a failure only when it says so.
    Host::Error::set(Host::NoError);
    const auto pages = document->getPages();
    if (pages.empty() && Host::Error::get() != Host::NoError) return false;
    print(*document, pages);
    printNesting(document);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"inspect FILE", "Prints what a document consists of: its version, objects and pages.",
         Program::openingOptions()});
    if (!arguments.are(1)) return arguments.refuse();
    return Program::look(arguments, arguments[0],
                         [](const Ref<Document>& document) { return print(document); });
}
