// Writes any PDF document, damaged and encrypted ones too, as one of the simplest structure.

#include "program.h"

#include <pdf/import.h>

namespace {

using namespace Libraries::Files::PDF;

/// Imports what is in `source`; gives the exit status. A file at `path` is replaced once what was
/// written opens.
int normalise(const Host::Ref<Host::FileSource>& source, std::string_view path,
              const Import::Options& options, std::string_view from) {
    const auto target = Host::FileTarget::create(path);
    if (!target) return Program::failure(path);
    if (!Import::normalise(source, target, options)) {
        const bool full = Host::Error::get() == TargetNotWritten;
        return Program::failure(full ? path : from, Host::Error::get(), Host::Error::reason());
    }
    const auto written = target->written();
    const bool sound = written && Document::create(written);
    return sound && target->commit() ? Program::done : Program::failure(path);
}

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"normalise IN OUT", "Writes any PDF in IN as one that opens to OUT.",
         Program::openingOptions(
             {{"--plain-filters", "", "makes streams ones that are deflated"}})});
    if (!arguments.are(2)) return arguments.refuse();

    const auto how = Program::opening(arguments);
    if (!how.possible) return Program::failed;
    Host::SysLogFilter::level(Host::LogLevel::Warning); // what is repaired is told
    const auto source = Host::FileSource::open(arguments[0]);
    if (!source) return Program::failure(arguments[0]);
    Import::Options options;
    options.password = how.password;
    options.plainFilters = arguments.has("--plain-filters");
    return normalise(source, arguments[1], options, arguments[0]);
}
