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
    const Program::Arguments arguments(argc, argv,
                                       {"recompress none|flate IN OUT",
                                        "Stores all streams of IN plainly, or compressed, in OUT.",
                                        Program::writingOptions()});
    if (!arguments.are(3)) return arguments.refuse();
    const auto target = compression(arguments[0]);
    if (!target) return arguments.refuse("streams become none or flate");

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[1], how);
    if (!document) return Program::failed;
    if (!document->setCompression(*target)) return Program::failure(arguments[1], how);
    return Program::save(*document, arguments[2], Program::saving(arguments, how));
}
