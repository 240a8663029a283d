#pragma once

#include <host/byte_buffer.h>

#include <cstddef>

namespace Libraries::Files::PDF {

/// How data was cut into rows for PNG's filters (RFC 2083, 6), in bytes.
struct PngRows {
    std::size_t row;   ///< without the byte in front that names the filter
    std::size_t pixel; ///< how far back the byte lies that stands to the left
};

/// Undoes PNG's filters in place. The last row may be shorter. False for a filter that there is
/// not.
[[nodiscard]] bool undoPrediction(Host::ByteBuffer& data, const PngRows& rows) noexcept;

} // namespace Libraries::Files::PDF
