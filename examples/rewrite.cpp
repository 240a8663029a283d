// Opens a document and writes it back.

#include "program.h"

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"rewrite IN OUT", "Writes the document in IN to OUT, one object behind the other.",
         Program::writingOptions()});
    if (!arguments.are(2)) return arguments.refuse();

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    return Program::save(document, arguments[1], Program::saving(arguments));
}
