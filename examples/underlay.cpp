// Lays pages of another document beneath the pages of a document: a letterhead, a watermark.

#include "program.h"

int main(int argc, char** argv) {
    static constexpr const char* usage = "underlay [--no-verify] [--force] [--faithful] [--any "
                                         "[--password P]] 0|1|2|3 IN FOREIGN OUT";
    Program::Arguments arguments(argc, argv);
    const Program::Saving saving = Program::takeSaving(arguments);
    const Program::Opening how = arguments.takeOpening();
    if (!arguments.are(4)) return Program::usage(usage);
    const auto mode = Program::number<std::uint32_t>(arguments[0]);
    if (!mode || *mode > 3) return Program::usage(usage);

    const auto document = Program::open(arguments[1], how);
    const auto foreign = document ? Program::open(arguments[2], how) : nullptr;
    if (!foreign) return Program::failed;
    if (!document->addBackground(foreign, *mode)) return Program::failure();
    return Program::save(*document, arguments[3], saving);
}
