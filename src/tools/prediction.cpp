#include "tools/references.h"
#include "tools/stream_coding.h"

#include <string_view>

namespace Libraries::Files::PDF::Tools {

using Host::Prediction;

namespace {

/// Far beyond what viewers draw; products of them fit.
constexpr std::int64_t mostColors = 65535;
constexpr std::int64_t mostColumns = std::int64_t{1} << 31;

constexpr std::uint64_t wholeByte = 8;
constexpr std::uint64_t twoBytes = 16;

/// A whole number between 1 and `most`, or nothing.
std::optional<std::uint64_t> positive(const Document& document, const Ref<Dictionary>& parameters,
                                      std::string_view key, std::uint64_t absent,
                                      std::int64_t most) {
    const Ref<Value> value = followEntry(document, parameters, key);
    if (!value) return absent;
    const Ref<Number> number = Host::cast<Number>(value);
    if (!number || number->fraction() != 0) return std::nullopt;
    if (number->integer() < 1 || number->integer() > most) return std::nullopt;
    return static_cast<std::uint64_t>(number->integer());
}

std::optional<Prediction::Kind> kindOf(std::uint64_t number) noexcept {
    constexpr std::uint64_t none = 1;
    constexpr std::uint64_t tiff = 2;
    constexpr std::uint64_t firstPng = 10;
    if (number == none) return Prediction::Kind::None;
    if (number == tiff) return Prediction::Kind::Tiff;
    return number >= firstPng ? std::optional(Prediction::Kind::Png) : std::nullopt;
}

} // namespace

std::optional<Prediction> predictionOf(const Document& document,
                                       const Ref<Dictionary>& parameters) {
    if (!parameters) return Prediction();
    constexpr std::int64_t lastPng = 15;
    const auto number = positive(document, parameters, "Predictor", 1, lastPng);
    const auto kind = number ? kindOf(*number) : std::nullopt;
    if (!kind || *kind == Prediction::Kind::None) {
        return kind ? std::optional(Prediction()) : std::nullopt;
    }
    const auto colors = positive(document, parameters, "Colors", 1, mostColors);
    const auto bits = positive(document, parameters, "BitsPerComponent", wholeByte, twoBytes);
    const auto columns = positive(document, parameters, "Columns", 1, mostColumns);
    const bool legal = colors && bits && columns && (*bits & (*bits - 1)) == 0;
    return legal ? std::optional(Prediction{*kind, *colors, *bits, *columns}) : std::nullopt;
}

} // namespace Libraries::Files::PDF::Tools
