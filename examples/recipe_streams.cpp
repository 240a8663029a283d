// Recipe: the data of all streams as files.

#include "program.h"

#include <pdf/tools/editing.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Writes the data of each stream to FOLDER/ID.bin, or says why not; gives a path that is at fault.
std::string extract(const Ref<Document>& document, const std::string& folder) {
    for (const auto& object : document->getObjects()) {
        if (object->valueType() != Value::Type::Stream) continue;
        const auto data = Tools::decodedBytes(document, object->valueAsStream(), 100'000'000);
        if (!data) std::printf("%u: %s\n", object->id(), data.error().text());
        if (!data) continue;
        std::string path = folder + "/" + std::to_string(object->id()) + ".bin";
        std::ofstream file(path, std::ios::binary);
        std::ranges::copy((*data)->bytes(), std::ostreambuf_iterator<char>(file));
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
    const std::string lost = extract(document, std::string(arguments[1]));
    if (lost.empty()) return Program::finishOutput();
    return Program::failure(lost, Host::FileNotWritten, "", "check that its folder is there");
}
