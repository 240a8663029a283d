#include "host/prediction.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <span>

namespace Host {

namespace {

using Row = std::span<std::uint8_t>;

std::uint8_t paeth(int left, int above, int aboveLeft) noexcept {
    const int estimate = left + above - aboveLeft;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toAboveLeft = std::abs(estimate - aboveLeft);
    if (toLeft <= toAbove && toLeft <= toAboveLeft) return static_cast<std::uint8_t>(left);
    return static_cast<std::uint8_t>(toAbove <= toAboveLeft ? above : aboveLeft);
}

/// Replaces the differences in `row` by the result. `above` is the row before it, null for the
/// first one.
bool undoPngRow(int filter, Row row, const std::uint8_t* above, std::size_t pixel) noexcept {
    enum { None, Sub, Up, Average, Paeth };
    if (filter > Paeth) return false;
    for (std::size_t index = 0; index < row.size() && filter != None; ++index) {
        const int left = index < pixel ? 0 : row[index - pixel];
        const int up = above == nullptr ? 0 : above[index];
        const int upLeft = above == nullptr || index < pixel ? 0 : above[index - pixel];
        const int guess = filter == Sub       ? left
                          : filter == Up      ? up
                          : filter == Average ? (left + up) / 2
                                              : paeth(left, up, upLeft);
        row[index] = static_cast<std::uint8_t>(row[index] + guess);
    }
    return true;
}

bool undoPng(const Prediction& prediction, ByteBuffer& data) noexcept {
    const std::uint64_t rowSize = prediction.bytesOfRow();
    std::uint8_t* const bytes = data.data();
    const std::uint8_t* above = nullptr;
    std::size_t kept = 0;
    for (std::size_t next = 0; next < data.size();) {
        const int filter = bytes[next++];
        const std::size_t size = std::min<std::uint64_t>(rowSize, data.size() - next);
        std::memmove(bytes + kept, bytes + next, size);
        if (!undoPngRow(filter, {bytes + kept, size}, above, prediction.bytesOfPixel())) {
            return false;
        }
        above = bytes + kept;
        kept += size;
        next += size;
    }
    data.truncate(kept);
    return true;
}

/// A component of up to eight bits. Components are packed, the first one in the highest bits.
class PackedComponents {
public:
    PackedComponents(Row row, unsigned bits) noexcept : row_(row), bits_(bits) {}

    [[nodiscard]] unsigned get(std::size_t index) const noexcept {
        const unsigned byte = row_[index * bits_ / 8];
        return byte >> shift(index) & mask();
    }
    void set(std::size_t index, unsigned value) noexcept {
        std::uint8_t& byte = row_[index * bits_ / 8];
        const unsigned others = byte & ~(mask() << shift(index));
        byte = static_cast<std::uint8_t>(others | (value & mask()) << shift(index));
    }

private:
    [[nodiscard]] unsigned mask() const noexcept { return (1U << bits_) - 1; }
    [[nodiscard]] unsigned shift(std::size_t index) const noexcept {
        return 8 - bits_ - static_cast<unsigned>(index * bits_ % 8);
    }

    Row row_;
    unsigned bits_;
};

void undoTiffRow(const Prediction& prediction, Row row) noexcept {
    const std::size_t colors = prediction.colors;
    const auto bits = static_cast<unsigned>(prediction.bits);
    const std::size_t count =
        std::min<std::uint64_t>(colors * prediction.columns, row.size() * 8 / bits);
    if (bits <= 8) {
        PackedComponents components(row, bits);
        for (std::size_t index = colors; index < count; ++index)
            components.set(index, components.get(index) + components.get(index - colors));
        return;
    }
    for (std::size_t index = colors; index < count; ++index) {
        std::uint8_t* const own = row.data() + 2 * index;
        const std::uint8_t* const left = own - 2 * colors;
        const int sum = (own[0] << 8) + own[1] + (left[0] << 8) + left[1];
        own[0] = static_cast<std::uint8_t>(sum >> 8);
        own[1] = static_cast<std::uint8_t>(sum);
    }
}

} // namespace

bool undoPrediction(const Prediction& prediction, ByteBuffer& data) noexcept {
    if (prediction.kind == Prediction::Kind::None) return true;
    if (prediction.kind == Prediction::Kind::Png) return undoPng(prediction, data);
    const std::uint64_t rowSize = prediction.bytesOfRow();
    for (std::size_t start = 0; start < data.size(); start += rowSize) {
        const std::size_t size = std::min<std::uint64_t>(rowSize, data.size() - start);
        undoTiffRow(prediction, {data.data() + start, size});
    }
    return true;
}

} // namespace Host
