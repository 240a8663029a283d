// Recipe: the data of all streams as files.

#include "program.h"

#include <pdf/tools/editing.h>

#include <fstream>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Writes FOLDER/ID.bin for each stream that can be decoded, and says why of each other one. Gives
/// the path of what could not be written, if any.
std::string extract(Document& document, const std::string& folder) {
    constexpr std::uint64_t limit = 100'000'000; // bytes: a stranger's stream may hold any number
    for (const auto& object : document.getObjects()) {
        if (object->valueType() != Value::Type::Stream) continue;
        const auto bytes = Tools::decodedBytes(document, object->valueAsStream(), limit);
        if (!bytes) {
            std::printf("%u: %s\n", object->id(), errorText(Host::Error::get()));
            continue;
        }
        std::string path = folder + "/" + std::to_string(object->id()) + ".bin";
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes->bytes().data()),
                   static_cast<std::streamsize>(bytes->bytes().size()));
        if (!file.flush()) return path;
    }
    return {};
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv,
                                       {"recipe_streams FILE FOLDER",
                                        "Writes the data of each stream to a file in FOLDER.",
                                        Program::openingOptions()});
    if (!arguments.are(2)) return arguments.refuse();

    const auto document = Program::open(arguments[0], Program::opening(arguments));
    if (!document) return Program::failed;
    const std::string lost = extract(*document, std::string(arguments[1]));
    if (lost.empty()) return Program::finishOutput();
    return Program::failure(lost, Host::FileNotWritten, "", "check that its folder is there");
}
