// Sets the compression of all streams of a document.

#include "program.h"

namespace {

using Libraries::Files::PDF::Compression;

std::optional<Compression> compression(std::string_view name) {
    if (name == "none") return Compression::None;
    if (name == "flate") return Compression::FlateDecode;
    return std::nullopt;
}

} // namespace

int main(int argc, char** argv) {
    static constexpr const char* usage =
        "recompress [--no-verify] [--force] [--faithful] [--any [--password P]] none|flate IN OUT";
    Program::Arguments arguments(argc, argv);
    const Program::Saving saving = Program::takeSaving(arguments);
    const Program::Opening how = arguments.takeOpening();
    if (!arguments.are(3)) return Program::usage(usage);
    const auto target = compression(arguments[0]);
    if (!target) return Program::usage(usage);

    const auto document = Program::open(arguments[1], how);
    if (!document) return Program::failed;
    if (!document->setCompression(*target)) return Program::failure();
    return Program::save(*document, arguments[2], saving);
}
