// Lays pages of another document beneath the pages of a document: a letterhead, a watermark.

#include "program.h"

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"underlay 0|1|2|3 IN FOREIGN OUT",
         "Lays contents of FOREIGN beneath those of IN, as they are: 0 the first page beneath the\n"
         "first, 1 the first beneath all, 2 each beneath its own, 3 the last beneath the rest too.",
         Program::writingOptions()});
    if (!arguments.are(4)) return arguments.refuse();
    const auto mode = Program::number<std::uint32_t>(arguments[0]);
    if (!mode || *mode > 3) return arguments.refuse("the mode is 0, 1, 2 or 3");

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[1], how);
    const auto foreign = document ? Program::open(arguments[2], how) : nullptr;
    if (!foreign) return Program::failed;
    if (!document->addBackground(foreign, *mode)) return Program::failure(arguments[2]);
    return Program::save(document, arguments[3], Program::saving(arguments));
}
