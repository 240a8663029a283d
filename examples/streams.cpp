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

// Gives the exit status.
int copyToOutput(Interfaces::Stripe& data) {
    std::vector<std::uint8_t> block(64 * 1024);
    if (data.position(0) != 0) return Program::failure(Host::FileNotRead);
    for (std::uint64_t left = data.size(); left != 0;) {
        const auto count = std::min<std::uint64_t>(left, block.size());
        if (data.readBytes(block.data(), count) != count) {
            return Program::failure(Host::FileNotRead);
        }
        if (std::fwrite(block.data(), 1, count, stdout) != count) {
            return Program::failure(Host::FileNotWritten);
        }
        left -= count;
    }
    return Program::finishOutput();
}

} // namespace

int main(int argc, char** argv) {
    static constexpr const char* usage = "streams [--any [--password P]] FILE ID GEN [--decode]";
    Program::Arguments arguments(argc, argv);
    const bool decode = arguments.take("--decode");
    const Program::Opening how = arguments.takeOpening();
    if (!arguments.are(3)) return Program::usage(usage);
    const auto id = Program::number<std::uint32_t>(arguments[1]);
    const auto generation = Program::number<std::uint16_t>(arguments[2]);
    if (!id || !generation) return Program::usage(usage);

    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    const auto object = find(*document, *id, *generation);
    const auto stream = object ? object->valueAsStream() : nullptr;
    const auto data = stream ? document->readStreamData(stream, decode) : nullptr;
    return data ? copyToOutput(*data) : Program::failure();
}
