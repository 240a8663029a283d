#include "tools/failure.h"

#include <host/log.h>

namespace Libraries::Files::PDF::Tools {

namespace {

std::uint32_t filter() noexcept {
    static const std::uint32_t id = Host::SysLogFilter::reg("PDF");
    return id;
}

} // namespace

bool errorsPass() noexcept {
    return Host::SysLogFilter::passes(filter(), Host::LogLevel::Error);
}

void logError(std::string_view message) noexcept {
    if (!errorsPass()) return;
    try {
        std::string line(message);
        line += '\n';
        Host::SysLogStream::printer().print(filter(), Host::LogLevel::Error, line);
    } catch (const std::exception&) {
    }
}

} // namespace Libraries::Files::PDF::Tools
