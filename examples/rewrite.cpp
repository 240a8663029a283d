// Opens a document and writes it back in canonical form.

#include "program.h"

int main(int argc, char** argv) {
    Program::Arguments arguments(argc, argv);
    const Program::Saving saving = Program::takeSaving(arguments);
    const Program::Opening how = arguments.takeOpening();
    if (!arguments.are(2)) {
        return Program::usage(
            "rewrite [--no-verify] [--force] [--faithful] [--any [--password P]] IN OUT");
    }

    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    return Program::save(*document, arguments[1], saving);
}
