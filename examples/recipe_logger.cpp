// Recipe: messages of the library in the log of the application.

#include "program.h"

#include <host/log.h>

#include <mutex>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Takes messages as they come, from any thread, and remembers the last one of the library.
class AppLog final : public Host::LogPrinter {
public:
    AppLog() : former_(Host::SysLogStream::printer(*this)) {}
    ~AppLog() override { Host::SysLogStream::printer(former_); }

    void print(std::uint32_t filter, Host::LogLevel level,
               std::string_view message) noexcept override {
        const std::lock_guard lock(mutex_);
        const bool grave = level == Host::LogLevel::Error;
        const std::string_view from = Host::SysLogFilter::name(filter);
        std::printf("app[%s] %.*s: %.*s", grave ? "E" : "W", static_cast<int>(from.size()),
                    from.data(), static_cast<int>(message.size()), message.data());
        count_ += grave ? 1 : 0;
    }
    [[nodiscard]] int count() const { return count_; }

private:
    std::mutex mutex_;
    int count_ = 0;
    Host::LogPrinter& former_;
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
    const auto document = Program::open(arguments[0]);
    std::printf("%s, %d errors\n", document ? "opened" : "not opened", log.count());
    const int status = Program::finishOutput();
    return document ? status : Program::failed;
}
