// Compresses or expands the streams of a document; what its pages show stays the same.

#include "program.h"

#include <pdf/tools/streams.h>

int main(int argc, char** argv) {
    static constexpr const char* usage =
        "recompress [--no-verify] [--force] [--faithful] [--any [--password P]] [--limit BYTES] "
        "none|flate IN OUT";
    Program::Arguments arguments(argc, argv);
    const auto allowed = arguments.takeValue("--limit");
    const auto limit = Program::number<std::uint64_t>(allowed.value_or(""));
    if (allowed && !limit) return Program::usage(usage);
    const Program::Saving saving = Program::takeSaving(arguments);
    const Program::Opening how = arguments.takeOpening();
    if (!arguments.are(3)) return Program::usage(usage);
    const bool compress = arguments[0] == "flate";
    if (!compress && arguments[0] != "none") return Program::usage(usage);

    const auto document = Program::open(arguments[1], how);
    if (!document) return Program::failed;
    const bool done = compress ? Program::Tools::compressStreams(*document)
                               : Program::Tools::expandStreams(*document, {limit});
    if (!done) return Program::failure();
    return Program::save(*document, arguments[2], saving);
}
