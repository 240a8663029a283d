// Recipe: messages of the library in the log of the application.

#include "program.h"

#include <host/log.h>

#include <atomic>
#include <iostream>
#include <syncstream>

namespace {

using namespace Libraries::Files::PDF;

// page begin
/// Takes messages as they come, from any thread, and counts the errors.
struct AppLog final : Host::LogPrinter {
    ~AppLog() override { Host::SysLogStream::printer(former); }
    void print(std::uint32_t filter, Host::LogLevel level,
               std::string_view text) noexcept override {
        const bool isError = level == Host::LogLevel::Error;
        errors += isError ? 1 : 0;
        std::osyncstream(std::cout) << (isError ? "app[E] " : "app[W] ")
                                    << Host::SysLogFilter::name(filter) << ": " << text;
    }

    std::atomic<int> errors = 0;
    Host::LogPrinter& former = Host::SysLogStream::printer(*this);
};
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"recipe_logger FILE",
         "Opens a document, with the library's messages on standard output."});
    if (!arguments.are(1)) return arguments.refuse();

    AppLog log;
    Host::SysLogFilter::level(Host::LogLevel::Warning);
    // A tool's failure holds what it would have logged: the log is for what documents do.
    const auto source = Host::FileSource::open(arguments[0]);
    const auto document = source ? Document::create(source, Structure::Any) : nullptr;
    std::printf("%s, %d errors\n", document ? "opened" : "not opened", log.errors.load());
    const int status = Program::finishOutput();
    return document ? status : Program::failure(arguments[0]);
}
