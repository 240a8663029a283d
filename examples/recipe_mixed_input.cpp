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
    if (argc < 2) return Program::usage("recipe_mixed_input FILE...");
    Host::SysLogFilter::state(Host::SysLogFilter::id("PDF"), false);
    for (const std::string& path : std::vector<std::string>(argv + 1, argv + argc)) {
        std::size_t pages = 0;
        const char* kind = kindOf(path, pages);
        std::printf("%s, %zu pages\n", kind, pages);
    }
    return Program::finishOutput();
}
