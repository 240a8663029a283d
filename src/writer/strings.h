#pragma once

#include "writer/output.h"

#include <host/string.h>

#include <cstdint>
#include <span>

namespace Libraries::Files::PDF {

/// Appends a literal string. False, logged with the code set, for a character that the code page
/// does not have.
bool writeLiteralString(Output& output, const Host::String& text) noexcept;

/// Appends a hexadecimal string, in upper case.
bool writeHexString(Output& output, std::span<const std::uint8_t> bytes) noexcept;

/// Appends text by its codes, one byte each.
bool writeCodes(Output& output, const Host::String& text) noexcept;

} // namespace Libraries::Files::PDF
