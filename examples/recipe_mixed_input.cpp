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
    const auto document = Tools::open(path);
    if (document) {
        const auto all = Tools::allPages(*document);
        pages = all ? all->size() : 0;
        return all ? "fine" : "a PDF whose pages cannot be listed";
    }
    switch (Host::Error::get()) {
    case Host::FileNotOpened:
        return "not there, or not permitted"; // Host::Error::reason tells which
    case Host::NotARegularFile:
        return "no file";
    case NotPdf:
        return "no PDF";
    case FileDamaged:
        return "damaged: Import::open may repair it";
    case FileEncrypted:
        return "encrypted: Import::open decrypts it";
    case OutOfMemory:
    case LimitExceeded:
        return "too large, or made to take too much";
    default:
        return "a PDF that takes the import"; // errorText says more
    }
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
