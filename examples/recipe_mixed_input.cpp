// Recipe: what to do with files of all sorts.

#include "program.h"

#include <pdf/tools/pages.h>

#include <map>

namespace {

using namespace Libraries::Files::PDF;

// page begin
/// What a file is to an application that takes whatever users send.
std::string kindOf(std::string_view path) {
    static const std::map<std::uint32_t, std::string> kinds = {
        {Host::FileNotOpened, "not there, or not permitted"},
        {Host::NotARegularFile, "no file"},
        {NotPdf, "no PDF"},
        {FileDamaged, "damaged: Import::open may repair it"},
        {FileEncrypted, "encrypted: Import::open decrypts it"},
        {LimitExceeded, "made to take too much"}};
    const auto pages = Tools::open(path).and_then(Tools::Pages::of);
    if (pages) return "fine, " + std::to_string(pages->size()) + " pages";
    const auto kind = kinds.find(pages.error().code());
    return kind != kinds.end() ? kind->second : pages.error().text();
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"recipe_mixed_input FILE...", "Says of each file what it is, a line for each."});
    if (!arguments.are(1, SIZE_MAX)) return arguments.refuse();

    int status = Program::done;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string path(arguments[index]);
        std::printf("%s: %s\n", path.c_str(), kindOf(path).c_str());
        if (!Host::FileSource::open(path)) status = Program::failure(path);
    }
    return Program::finishOutput() == Program::done ? status : Program::failed;
}
