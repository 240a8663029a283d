#include "structures/prediction.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

namespace Libraries::Files::PDF {

namespace {

std::uint8_t paeth(int left, int above, int aboveLeft) noexcept {
    const int estimate = left + above - aboveLeft;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toAboveLeft = std::abs(estimate - aboveLeft);
    if (toLeft <= toAbove && toLeft <= toAboveLeft) return static_cast<std::uint8_t>(left);
    return static_cast<std::uint8_t>(toAbove <= toAboveLeft ? above : aboveLeft);
}

/// Undoes one row; `above` is the row before it, decoded, or null.
bool undoRow(int filter, std::span<std::uint8_t> row, const std::uint8_t* above,
             std::size_t pixel) noexcept {
    for (std::size_t index = 0; index < row.size(); ++index) {
        const int left = index >= pixel ? row[index - pixel] : 0;
        const int up = above != nullptr ? above[index] : 0;
        const int upLeft = above != nullptr && index >= pixel ? above[index - pixel] : 0;
        int predicted = 0;
        switch (filter) {
        case 0:
            return true;
        case 1:
            predicted = left;
            break;
        case 2:
            predicted = up;
            break;
        case 3:
            predicted = (left + up) / 2;
            break;
        case 4:
            predicted = paeth(left, up, upLeft);
            break;
        default:
            return false;
        }
        row[index] = static_cast<std::uint8_t>(row[index] + predicted);
    }
    return true;
}

} // namespace

bool undoPrediction(Host::ByteBuffer& data, const PngRows& rows) noexcept {
    std::uint8_t* const bytes = data.data();
    const std::uint8_t* above = nullptr;
    std::size_t kept = 0;
    for (std::size_t next = 0; next < data.size();) {
        const int filter = bytes[next++];
        const std::size_t size = std::min(rows.row, data.size() - next);
        std::memmove(bytes + kept, bytes + next, size);
        if (!undoRow(filter, {bytes + kept, size}, above, rows.pixel)) return false;
        above = bytes + kept;
        kept += size;
        next += size;
    }
    data.truncate(kept);
    return true;
}

} // namespace Libraries::Files::PDF
