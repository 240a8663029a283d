#pragma once

#include "host/message.h"

#include <pdf/errors.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// The library's log filter, "PDF".
extern const std::uint32_t logFilter;

using Host::LogLevel;
using Host::NoResult;

// The texts of messages are part of the interface, as the codes are, because programs look for
// them. They stay as they are. That includes misspellings ("identifer", "Stirng", "resoure"), and
// the names of classes and functions in the assertion of the document writer.

/// Logs an error, sets the code and gives "no result", so that a failure takes one line.
template <class... Pieces>
NoResult fail(std::uint32_t code, const Pieces&... pieces) noexcept {
    if constexpr (sizeof...(pieces) != 0) Host::log(logFilter, LogLevel::Error, pieces...);
    Host::Error::set(code);
    return {};
}

/// Logs an error and gives "no result". The caller sets the code.
template <class... Pieces>
NoResult refuse(const Pieces&... pieces) noexcept {
    Host::log(logFilter, LogLevel::Error, pieces...);
    return {};
}

/// Logs a message and leaves the error code alone.
template <class... Pieces>
void report(LogLevel level, const Pieces&... pieces) noexcept {
    Host::log(logFilter, level, pieces...);
}

} // namespace Libraries::Files::PDF
