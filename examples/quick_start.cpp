// Sets a document's title: the example of README.md, and a main around it.

// page begin
#include <pdf/document.h>
#include <pdf/tools/editing.h>
#include <pdf/tools/files.h>
using namespace Libraries::Files::PDF;

bool setTitle(std::string_view in, std::string_view out, std::string_view title) {
    const auto document = Tools::open(in);
    const auto entry = document ? document->trailer()->find("Info") : nullptr;
    const auto info = entry ? document->valueAsDict(entry) : nullptr;
    if (!info) return false; // Host::Error::get() says why
    const auto value = Tools::textString(title);
    if (!value || !info->set("Title", value)) return false;
    return Tools::save(*document, out) == Tools::Saved::Done; // out is whole, or as it was
}
// page end

#include "program.h"

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv);
    if (!arguments.are(3)) return Program::usage("quick_start IN OUT TITLE");
    return setTitle(arguments[0], arguments[1], arguments[2]) ? 0 : Program::failure();
}
