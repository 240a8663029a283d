// Prints each real page of a document, whatever tree it stands in, and what it inherits.

#include "program.h"

#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

/// A number as a document holds it: the digits behind the point without zeros in front.
void print(const Number& number) {
    std::printf("%lld", static_cast<long long>(number.integer()));
    if (number.fraction() == 0) return;
    std::printf(".%llu", static_cast<unsigned long long>(number.fraction()));
}

void print(const Ref<Document>& document, const Ref<Array>& box) {
    for (std::uint64_t side = 0; side < box->size(); ++side) {
        if (side != 0) std::printf(",");
        print(*Tools::get<Number>(document, box, side).value());
    }
}

void print(const Ref<Document>& document, std::size_t number, const Tools::Page& page) {
    std::printf("page %zu %u %u ", number, page.object->id(), page.object->generation());
    if (page.mediaBox) print(document, page.mediaBox);
    std::printf(page.mediaBox ? " " : "- ");
    if (page.rotate) print(*page.rotate);
    std::printf(page.rotate ? "\n" : "0\n");
}

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"pages FILE", "Prints each page: its number, its object, its media box and its turn.",
         Program::openingOptions()});
    if (!arguments.are(1)) return arguments.refuse();
    return Program::look(arguments, arguments[0], [](const Ref<Document>& document) {
        const auto pages = Tools::Pages::of(document).value();
        for (std::size_t index = 0; index < pages.size(); ++index)
            print(document, index + 1, pages[index]);
    });
}
