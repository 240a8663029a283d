// Prints each real page of a document, whatever tree it stands in, and what it inherits.

#include "program.h"

#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;

/// A number as a document holds it: the digits behind the point without zeros in front.
void print(const Number& number) {
    std::printf("%lld", static_cast<long long>(number.integer()));
    if (number.fraction() == 0) return;
    std::printf(".%llu", static_cast<unsigned long long>(number.fraction()));
}

void print(const Array& box) {
    for (std::uint64_t side = 0; side < box.size(); ++side) {
        if (side != 0) std::printf(",");
        const auto number = Tools::as<Number>(box.get(side));
        if (number) print(*number);
    }
}

void print(std::size_t number, const Tools::Page& page) {
    std::printf("page %zu %u %u ", number, page.object->id(), page.object->generation());
    if (page.mediaBox) print(*page.mediaBox);
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

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    const auto pages = Tools::allPages(*document);
    if (!pages) return Program::failure(arguments[0]);
    for (std::size_t index = 0; index < pages->size(); ++index)
        print(index + 1, (*pages)[index]);
    return Program::finishOutput();
}
