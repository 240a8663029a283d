// Compresses or expands the streams of a document; what its pages show stays the same.

#include "program.h"

#include <pdf/tools/streams.h>

int main(int argc, char** argv) {
    using namespace Libraries::Files::PDF;
    const Program::Arguments arguments(
        argc, argv,
        {"recompress none|flate IN OUT",
         "Compresses the streams of IN (flate), or stores them plainly (none), in OUT.",
         Program::writingOptions({{"--limit", "BYTES", "lets all plain data take so much"}})});
    if (!arguments.are(3)) return arguments.refuse();
    const bool compress = arguments[0] == "flate";
    if (!compress && arguments[0] != "none")
        return arguments.refuse("streams become none or flate");
    const auto allowed = arguments.value("--limit");
    const auto limit = Program::number<std::uint64_t>(allowed.value_or(""));
    if (allowed && !limit) return arguments.refuse("--limit takes a number of bytes");

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[1], how);
    if (!document) return Program::failed;
    const auto stored =
        compress ? Tools::compressStreams(document) : Tools::expandStreams(document, {limit});
    if (stored) return Program::save(document, arguments[2], Program::saving(arguments));
    const bool tooBig = stored.error().code() == ExpansionTooBig;
    return Program::failure(arguments[1], stored.error(),
                            tooBig ? "--limit BYTES allows more" : "");
}
