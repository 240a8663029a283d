#pragma once

#include "host/message.h"

#include <cstdint>

namespace Libraries::Files::PDF {

/// The log filter of the forms, "Lib.File.PDF.Form".
extern const std::uint32_t formLogFilter;

/// Logs an error through the filter of the forms, sets the code and gives "no result".
template <class... Pieces>
Host::NoResult failField(std::uint32_t code, const Pieces&... pieces) noexcept {
    Host::log(formLogFilter, Host::LogLevel::Error, pieces...);
    Host::Error::set(code);
    return {};
}

/// Logs an error and gives "no result". The caller sets the code.
template <class... Pieces>
Host::NoResult refuseField(const Pieces&... pieces) noexcept {
    Host::log(formLogFilter, Host::LogLevel::Error, pieces...);
    return {};
}

template <class... Pieces>
void warnOfField(const Pieces&... pieces) noexcept {
    Host::log(formLogFilter, Host::LogLevel::Warning, pieces...);
}

} // namespace Libraries::Files::PDF
