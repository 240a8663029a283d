// Opens a document and writes it back in canonical form.

#include "program.h"

int main(int argc, char** argv) {
    Program::Arguments arguments(argc, argv);
    const Program::Saving saving = Program::takeSaving(arguments);
    if (!arguments.are(2))
        return Program::usage("rewrite [--no-verify] [--force] [--faithful] IN OUT");

    const auto document = Program::open(arguments[0]);
    if (!document) return Program::failure();
    return Program::save(*document, arguments[1], saving);
}
