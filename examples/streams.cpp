// Writes the data of one stream to standard output, as it is stored or decoded.

#include "program.h"

namespace {

using namespace Libraries::Files::PDF;

Host::Ref<Object> find(const Document& document, std::uint32_t id, std::uint16_t generation) {
    for (const auto& object : document.getObjects()) {
        if (object->id() == id && object->generation() == generation) return object;
    }
    Host::Error::set(ObjectNotFound);
    return nullptr;
}

/// What helps where an object has no data to be had.
std::string_view nextFor(std::uint32_t code) {
    if (code == FilterUnsupported) return "without --decode it is written as it is stored";
    return code == ObjectNotFound || code == UnexpectedKind
               ? "inspect lists the objects; kind 7 is streams"
               : "";
}

// Gives the exit status.
int copyToOutput(Interfaces::Stripe& data, std::string_view file) {
    std::vector<std::uint8_t> block(64 * 1024);
    if (data.position(0) != 0) return Program::failure(file, Host::FileNotRead);
    for (std::uint64_t left = data.size(); left != 0;) {
        const auto count = std::min<std::uint64_t>(left, block.size());
        if (data.readBytes(block.data(), count) != count)
            return Program::failure(file, Host::FileNotRead);
        if (std::fwrite(block.data(), 1, count, stdout) != count) break;
        left -= count;
    }
    return Program::finishOutput();
}

} // namespace

int main(int argc, char** argv) {
    auto options =
        Program::openingOptions({{"--decode", "", "decodes the data (FlateDecode alone)"}});
    const Program::Arguments arguments(
        argc, argv,
        {"streams FILE ID GEN",
         "Writes the data of the stream in object ID, generation GEN, to standard output.",
         options});
    if (!arguments.are(3)) return arguments.refuse();
    const auto id = Program::number<std::uint32_t>(arguments[1]);
    const auto generation = Program::number<std::uint16_t>(arguments[2]);
    if (!id || !generation) return arguments.refuse("ID and GEN are an object's numbers");

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    const auto object = find(*document, *id, *generation);
    const auto stream = object ? object->valueAsStream() : nullptr;
    const auto data =
        stream ? document->readStreamData(stream, arguments.has("--decode")) : nullptr;
    if (data) return copyToOutput(*data, arguments[0]);
    const std::string what = "object " + std::to_string(*id) + " " + std::to_string(*generation);
    return Program::failure(arguments[0], Host::Error::get(), what, nextFor(Host::Error::get()));
}
