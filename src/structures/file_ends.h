#pragma once

#include "host/cursor.h"

#include <pdf/version.h>

#include <cstdint>
#include <string_view>

namespace Libraries::Files::PDF {

/// The header of a file (ISO 32000-1, 7.5.2), which stands in its first 1024 bytes.
struct FileHeader {
    std::uint64_t offset = 0; ///< where it begins, from which on offsets are counted
    PdfVersion version = PdfVersion::Unsupported;
};

/// Throws `Flaw`, with `NotPdf` where there is none.
[[nodiscard]] FileHeader findHeader(Host::Cursor& cursor);

/// The version that a header or a catalog spells, or of those that there are the nearest;
/// `Unsupported` where the text is none.
[[nodiscard]] PdfVersion nearestVersion(std::string_view text) noexcept;

/// The offset behind the last "startxref", which stands in the last 1054 bytes, with no object
/// behind it (ISO 32000-1, 7.5.5). Throws `Flaw`.
[[nodiscard]] std::uint64_t findSections(Host::Cursor& cursor);

} // namespace Libraries::Files::PDF
