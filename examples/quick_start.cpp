// Sets a document's title: the example of README.md, and a main around it.

// page begin
#include <pdf/document.h>
#include <pdf/tools/editing.h>
#include <pdf/tools/files.h>

#include <cstdio>
using namespace Libraries::Files::PDF;

bool setTitle(std::string_view in, std::string_view out, std::string_view title) try {
    const auto document = Tools::open(in).value();
    const auto info = Tools::getOrAdd(document, document->trailer(), "Info").value();
    const bool set = info->set("Title", Tools::textString(title).value());
    if (set) Tools::save(document, out).value(); // out is whole, or as it was
    return set;
} catch (const std::exception& failure) { // what failed, and where
    std::fprintf(stderr, "%s\n", failure.what());
    return false;
}
// page end

#include "program.h"

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv,
                                       {"quick_start IN OUT TITLE", "Gives a document a title."});
    if (!arguments.are(3)) return arguments.refuse();
    const bool done = setTitle(arguments[0], arguments[1], arguments[2]);
    return done ? Program::done : Program::failed;
}
