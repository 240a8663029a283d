#pragma once

/// @file
/// Versions: of the library, and of the file format.

#include <host/export.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// The version of the library that the program runs with: "0.1.0". Never null.
[[nodiscard]] FILES_PDF_EXPORT const char* libraryVersion() noexcept;

/// Version of the file format. 2.0 is 13.
enum class PdfVersion : std::uint32_t {
    Unsupported = 0, ///< no version; an opened document never has it
    V1_0 = 1,        ///< "%PDF-1.0"; the others likewise
    V1_1 = 2,
    V1_2 = 3,
    V1_3 = 4,
    V1_4 = 5,
    V1_5 = 6,
    V1_6 = 7,
    V1_7 = 8,
    V2_0 = 13
};

} // namespace Libraries::Files::PDF
