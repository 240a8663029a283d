// Writes any PDF document as one of the structure that the library reads.

#include "program.h"

#include <pdf/import.h>

int main(int argc, char** argv) {
    static constexpr const char* usage = "normalise [--password P] [--plain-filters] IN OUT";
    Program::Arguments arguments(argc, argv);
    Libraries::Files::PDF::Import::Options options;
    options.plainFilters = arguments.take("--plain-filters");
    options.password = arguments.takeValue("--password").value_or("");
    if (!arguments.are(2)) return Program::usage(usage);

    const auto source = Host::FileSource::open(arguments[0]);
    const auto target = source ? Host::FileTarget::create(arguments[1]) : nullptr;
    if (!target || !Libraries::Files::PDF::Import::normalise(source, target, options) ||
        !target->commit()) {
        return Program::failure();
    }
    return 0;
}
