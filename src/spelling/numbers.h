#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

namespace Libraries::Files::PDF::Spelling {

/// Whether the digits are a number of this type; none at all are.
template <class Number>
bool fits(std::string_view digits) noexcept {
    Number number{};
    const char* const end = digits.data() + digits.size();
    return digits.empty() || std::from_chars(digits.data(), end, number).ec == std::errc{};
}

/// A real number as it was spelled, as far as its parts fit into 64 bits: of a longer fraction the
/// first 19 digits are kept, and a greater number becomes the greatest.
inline void appendReal(std::string& text, std::string_view real) {
    constexpr std::size_t digitsThatFit = std::numeric_limits<std::uint64_t>::digits10;
    const bool isSigned = real.starts_with('-') || real.starts_with('+');
    const std::size_t point = std::min(real.find('.'), real.size());
    const std::string_view integer = real.substr(isSigned, point - isSigned);
    std::string_view fraction = real.substr(std::min(point + 1, real.size()));
    text += real.substr(0, isSigned);
    if (!fits<std::int64_t>(integer)) {
        text += std::to_string(std::numeric_limits<std::int64_t>::max());
        return;
    }
    if (!fits<std::uint64_t>(fraction)) fraction = fraction.substr(0, digitsThatFit);
    text += integer;
    text += '.';
    text += fraction;
}

} // namespace Libraries::Files::PDF::Spelling
