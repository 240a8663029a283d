#pragma once

#include "document/state.h"
#include "host/cursor.h"

#include <string_view>

namespace Libraries::Files::PDF {

/// Reads the version and the line ending from the file's first line (ISO 32000-1, 7.5.2). False
/// with the code set.
[[nodiscard]] bool readHeader(DocumentState& state, Host::Cursor& cursor);

/// The version that two texts spell; `Unsupported`, logged, where there is no such version.
[[nodiscard]] PdfVersion parseVersion(std::string_view major, std::string_view minor) noexcept;

} // namespace Libraries::Files::PDF
