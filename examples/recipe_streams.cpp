// Recipe: the data of all streams as files.

#include "program.h"

#include <pdf/tools/editing.h>

#include <fstream>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Writes FOLDER/ID.bin for each stream that can be decoded, and says why of each other one.
void extract(Document& document, const std::string& folder) {
    constexpr std::uint64_t limit = 100'000'000; // bytes: a stranger's stream may hold any number
    for (const auto& object : document.getObjects()) {
        if (object->valueType() != Value::Type::Stream) continue;
        const auto bytes = Tools::decodedBytes(document, object->valueAsStream(), limit);
        if (!bytes) {
            std::printf("%u: %s\n", object->id(), errorText(Host::Error::get()));
            continue;
        }
        std::ofstream file(folder + "/" + std::to_string(object->id()) + ".bin", std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes->bytes().data()),
                   static_cast<std::streamsize>(bytes->bytes().size()));
        if (!file.flush()) std::printf("%u: not written\n", object->id());
    }
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv);
    if (!arguments.are(2)) return Program::usage("recipe_streams FILE FOLDER");
    const auto document = Program::open(arguments[0]);
    if (!document) return Program::failed;
    extract(*document, std::string(arguments[1]));
    return Program::finishOutput();
}
