#include "tools/predictor.h"

#include "tools/references.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Far beyond what viewers draw; products of them fit.
constexpr std::int64_t mostColors = 65535;
constexpr std::int64_t mostColumns = std::int64_t{1} << 31;

constexpr std::uint64_t wholeByte = 8;
constexpr std::uint64_t twoBytes = 16;

/// A whole number between 1 and `most`, or nothing.
std::optional<std::uint64_t> positive(const Document& document, const Dictionary& parameters,
                                      std::string_view key, std::uint64_t absent,
                                      std::int64_t most) {
    const Ref<Value> value = followEntry(document, parameters, key);
    if (!value) return absent;
    const Ref<Number> number = Host::cast<Number>(value);
    if (!number || number->fraction() != 0) return std::nullopt;
    if (number->integer() < 1 || number->integer() > most) return std::nullopt;
    return static_cast<std::uint64_t>(number->integer());
}

std::optional<Predictor::Kind> kindOf(std::uint64_t number) noexcept {
    constexpr std::uint64_t none = 1;
    constexpr std::uint64_t tiff = 2;
    constexpr std::uint64_t firstPng = 10;
    if (number == none) return Predictor::Kind::None;
    if (number == tiff) return Predictor::Kind::Tiff;
    return number >= firstPng ? std::optional(Predictor::Kind::Png) : std::nullopt;
}

std::uint8_t paeth(int left, int above, int aboveLeft) noexcept {
    const int estimate = left + above - aboveLeft;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toAboveLeft = std::abs(estimate - aboveLeft);
    if (toLeft <= toAbove && toLeft <= toAboveLeft) return static_cast<std::uint8_t>(left);
    return static_cast<std::uint8_t>(toAbove <= toAboveLeft ? above : aboveLeft);
}

/// One row of a PNG's kind. `row` holds the differences and takes the result; `above` is the row
/// before it, null for the first one.
bool undoPngRow(int kind, std::uint8_t* row, const std::uint8_t* above, std::uint64_t size,
                std::uint64_t pixel) noexcept {
    enum { None, Sub, Up, Average, Paeth };
    if (kind > Paeth) return false;
    for (std::uint64_t index = 0; index < size && kind != None; ++index) {
        const int left = index < pixel ? 0 : row[index - pixel];
        const int up = above == nullptr ? 0 : above[index];
        const int upLeft = above == nullptr || index < pixel ? 0 : above[index - pixel];
        const int guess = kind == Sub       ? left
                          : kind == Up      ? up
                          : kind == Average ? (left + up) / 2
                                            : paeth(left, up, upLeft);
        row[index] = static_cast<std::uint8_t>(row[index] + guess);
    }
    return true;
}

bool undoPng(const Predictor& predictor, Host::ByteBuffer& data) noexcept {
    const std::uint64_t size = predictor.bytesOfRow();
    const std::uint64_t rows = data.size() / (size + 1);
    if (data.size() % (size + 1) != 0) return false;
    std::uint8_t* const bytes = data.data();
    for (std::uint64_t index = 0; index < rows; ++index) {
        const std::uint8_t* const stored = bytes + index * (size + 1);
        const int kind = *stored;
        std::uint8_t* const row = bytes + index * size;
        std::memmove(row, stored + 1, size);
        const std::uint8_t* const above = index == 0 ? nullptr : row - size;
        if (!undoPngRow(kind, row, above, size, predictor.bytesOfPixel())) return false;
    }
    data.truncate(rows * size);
    return true;
}

/// Components of less than a byte: they lie packed, the first one in the highest bits.
void undoSmallComponents(const Predictor& predictor, std::uint8_t* row,
                         std::uint64_t count) noexcept {
    const std::uint64_t bits = predictor.bits;
    const unsigned mask = (1U << bits) - 1;
    const auto shiftOf = [&](std::uint64_t index) {
        return wholeByte - bits - index * bits % wholeByte;
    };
    const auto at = [&](std::uint64_t index) -> std::uint8_t& {
        return row[index * bits / wholeByte];
    };
    for (std::uint64_t index = predictor.colors; index < count; ++index) {
        const std::uint64_t left = index - predictor.colors;
        const unsigned own = at(index);
        const unsigned before = at(left);
        const unsigned sum = (own >> shiftOf(index)) + (before >> shiftOf(left));
        const unsigned others = own & ~(mask << shiftOf(index));
        at(index) = static_cast<std::uint8_t>(others | (sum & mask) << shiftOf(index));
    }
}

void undoTiffRow(const Predictor& predictor, std::uint8_t* row) noexcept {
    const std::uint64_t count = predictor.colors * predictor.columns;
    if (predictor.bits < wholeByte) return undoSmallComponents(predictor, row, count);
    const std::uint64_t width = predictor.bits / wholeByte;
    for (std::uint64_t index = predictor.colors; index < count; ++index) {
        std::uint8_t* const component = row + index * width;
        const std::uint8_t* const left = component - predictor.colors * width;
        if (predictor.bits == twoBytes) {
            const int sum = (component[0] << 8) + component[1] + (left[0] << 8) + left[1];
            component[0] = static_cast<std::uint8_t>(sum >> 8);
            component[1] = static_cast<std::uint8_t>(sum);
        } else {
            *component = static_cast<std::uint8_t>(*component + *left);
        }
    }
}

bool undoTiff(const Predictor& predictor, Host::ByteBuffer& data) noexcept {
    const std::uint64_t size = predictor.bytesOfRow();
    if (data.size() % size != 0) return false;
    for (std::uint64_t start = 0; start < data.size(); start += size)
        undoTiffRow(predictor, data.data() + start);
    return true;
}

} // namespace

std::optional<Predictor> predictorOf(const Document& document, const Ref<Dictionary>& parameters) {
    if (!parameters) return Predictor();
    const Dictionary& entries = *parameters;
    constexpr std::int64_t lastPng = 15;
    const auto number = positive(document, entries, "Predictor", 1, lastPng);
    const auto kind = number ? kindOf(*number) : std::nullopt;
    if (!kind || *kind == Predictor::Kind::None) {
        return kind ? std::optional(Predictor()) : std::nullopt;
    }
    const auto colors = positive(document, entries, "Colors", 1, mostColors);
    const auto bits = positive(document, entries, "BitsPerComponent", wholeByte, twoBytes);
    const auto columns = positive(document, entries, "Columns", 1, mostColumns);
    const bool legal = colors && bits && columns && (*bits & (*bits - 1)) == 0;
    return legal ? std::optional(Predictor{*kind, *colors, *bits, *columns}) : std::nullopt;
}

bool undo(const Predictor& predictor, Host::ByteBuffer& data) noexcept {
    switch (predictor.kind) {
    case Predictor::Kind::Png:
        return undoPng(predictor, data);
    case Predictor::Kind::Tiff:
        return undoTiff(predictor, data);
    default:
        return true;
    }
}

} // namespace Libraries::Files::PDF::Tools
