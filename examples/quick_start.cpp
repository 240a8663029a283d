// Sets a document's title: the example of README.md, and a main around it.

// page begin
#include <host/files.h>
#include <pdf/document.h>
using namespace Libraries::Files::PDF;
using namespace Host::Literals;

bool setTitle(std::string_view in, std::string_view out, std::string_view title) {
    const auto source = Host::FileSource::open(in);
    const auto document = source ? Document::create(source) : nullptr;
    const auto entry = document ? document->trailer()->find("Info"_str) : nullptr;
    const auto info = entry ? document->valueAsDict(entry) : nullptr;
    const auto value = info ? String::create(Host::String::create(title)) : nullptr;
    if (!value || !info->set("Title"_str, value)) return false; // Host::Error::get() says why
    const auto target = Host::FileTarget::create(out);
    return target && document->write(target) && target->commit();
}
// page end

#include "program.h"

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv);
    if (!arguments.are(3)) return Program::usage("quick_start IN OUT TITLE");
    return setTitle(arguments[0], arguments[1], arguments[2]) ? 0 : Program::failure();
}
