#pragma once

#include <host/byte_buffer.h>

#include <cstdint>

namespace Host {

/// How rows were predicted before they were deflated: as differences of neighbours, by TIFF's rule,
/// or by the filters of PNG (RFC 2083, 6). With PNG a byte in front of each row names its filter.
struct Prediction {
    enum class Kind { None, Tiff, Png };

    Kind kind = Kind::None;
    std::uint64_t colors = 1;
    std::uint64_t bits = 8; ///< bits of one component: 1, 2, 4, 8 or 16
    std::uint64_t columns = 1;

    [[nodiscard]] std::uint64_t bytesOfRow() const noexcept {
        return (colors * bits * columns + 7) / 8;
    }
    /// Bytes of one pixel, at least one.
    [[nodiscard]] std::uint64_t bytesOfPixel() const noexcept { return (colors * bits + 7) / 8; }
    /// Whether data of this number of bytes is a whole number of rows.
    [[nodiscard]] bool fillsRows(std::uint64_t size) const noexcept {
        return kind == Kind::None || size % (bytesOfRow() + (kind == Kind::Png ? 1 : 0)) == 0;
    }
};

/// Undoes the prediction in place. The last row may be shorter than the others. False if PNG has no
/// such filter; the data is then of no use. Takes no memory.
[[nodiscard]] bool undoPrediction(const Prediction& prediction, ByteBuffer& data) noexcept;

} // namespace Host
