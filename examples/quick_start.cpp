// Sets a document's title: the example of README.md, and a main around it.

// page begin
#include <pdf/document.h>
#include <pdf/tools/editing.h>
#include <pdf/tools/files.h>
using namespace Libraries::Files::PDF;

bool setTitle(std::string_view in, std::string_view out, std::string_view title) {
    const auto document = Tools::open(in);
    if (!document) return false; // Host::Error::get() says why
    auto info = Tools::as<Dictionary>(Tools::resolve(*document, document->trailer()->find("Info")));
    if (!info) { // there is none: make it, an object that the trailer refers to
        info = Dictionary::create();
        const auto ref = Tools::addObject(*document, info);
        if (!ref || !document->trailer()->set("Info", ref)) return false;
    }
    const auto text = Tools::textString(title);
    if (!text || !info->set("Title", text)) return false;
    return Tools::save(*document, out) == Tools::Saved::Done; // out is whole, or as it was
}
// page end

#include "program.h"

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv,
                                       {"quick_start IN OUT TITLE", "Gives a document a title."});
    if (!arguments.are(3)) return arguments.refuse();
    if (setTitle(arguments[0], arguments[1], arguments[2])) return Program::done;
    const std::string files = std::string(arguments[0]) + " to " + std::string(arguments[1]);
    return Program::failure(files);
}
