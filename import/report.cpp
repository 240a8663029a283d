#include "report.h"

#include <host/log.h>

#include <new>
#include <string>

namespace Libraries::Files::PDF::Import {

namespace {

using Host::LogLevel;
using Host::SysLogFilter;

const std::uint32_t filter = SysLogFilter::reg("Lib.File.PDF.Import");

// Messages quote the document, which may hold anything.
char printable(char code) noexcept {
    return code >= ' ' && code <= '~' ? code : '?';
}

void log(LogLevel level, std::string_view message) noexcept {
    if (!Host::SysLogStream::takes(filter, level)) return;
    try {
        std::string line;
        for (const char code : message)
            line += printable(code);
        line += '\n';
        Host::SysLogStream::printer().print(filter, level, line);
    } catch (const std::bad_alloc&) {
    }
}

} // namespace

void fail(std::uint32_t code, std::string_view message) {
    if (!message.empty()) log(LogLevel::Error, message);
    throw Failed{code};
}

void warn(std::string_view message) noexcept {
    log(LogLevel::Warning, message);
}

} // namespace Libraries::Files::PDF::Import
