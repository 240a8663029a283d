// Recipe: what to do with files of all sorts.

#include "program.h"

#include <host/log.h>
#include <pdf/tools/pages.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// What a file is to an application that takes whatever users send.
const char* kindOf(std::string_view path, std::size_t& pages) {
    const auto source = Host::FileSource::open(path);
    if (!source) return Host::Error::get() == Host::NotARegularFile ? "no file" : "not there";
    const auto document = Document::create(source);
    if (!document) {
        switch (Host::Error::get()) {
        case HeaderUnreadable:
        case VersionUnsupported:
            return "no PDF";
        case EndMarkerMissing:
            return "cut off, or something stands behind it";
        case OutOfMemory:
            return "too large";
        default:
            return "a PDF of a structure that is not read"; // errorText says more
        }
    }
    if (document->trailer()->find("Encrypt")) return "encrypted";
    if (document->trailer()->find("Prev")) return "revised: the earlier parts would be lost";
    const auto all = Tools::allPages(*document);
    if (!all) return "a PDF whose pages cannot be found";
    pages = all->size();
    return "fine";
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"recipe_mixed_input FILE...", "Says of each file what it is, a line for each."});
    if (!arguments.are(1, SIZE_MAX)) return arguments.refuse();

    Host::SysLogFilter::state(Host::SysLogFilter::id("PDF"), false);
    int status = Program::done;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string path(arguments[index]);
        std::size_t pages = 0;
        const char* kind = kindOf(path, pages);
        std::printf("%s: %s, %zu pages\n", path.c_str(), kind, pages);
        if (!Host::FileSource::open(path)) status = Program::failure(path);
    }
    return Program::finishOutput() == Program::done ? status : Program::failed;
}
