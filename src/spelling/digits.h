#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Libraries::Files::PDF::Spelling {

/// The value of a decimal digit; of anything else it is greater than 9.
constexpr unsigned digitValue(int code) noexcept {
    return static_cast<unsigned>(code - '0');
}

constexpr bool isDigit(int code) noexcept {
    return digitValue(code) <= 9;
}

constexpr bool isOctal(int code) noexcept {
    return code >= '0' && code <= '7';
}

/// The number that octal digits spell.
constexpr unsigned octalValue(std::string_view digits) noexcept {
    unsigned value = 0;
    for (const char digit : digits)
        value = value << 3U | digitValue(digit);
    return value;
}

inline constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// The value of each byte as a hexadecimal digit, or -1.
inline constexpr std::array<std::int8_t, 256> hexValues = [] {
    std::array<std::int8_t, 256> values{};
    values.fill(-1);
    for (std::size_t value = 0; value < hexDigits.size(); ++value) {
        const auto capital = static_cast<unsigned char>(hexDigits[value]);
        const auto small = static_cast<unsigned char>(capital | 0x20U); // of a digit: the digit
        values[capital] = values[small] = static_cast<std::int8_t>(value);
    }
    return values;
}();

/// The value of a hexadecimal digit, or -1; of what is no byte, too.
constexpr int hexValue(int code) noexcept {
    return code >= 0 && code <= 0xFF ? hexValues[static_cast<std::size_t>(code)] : -1;
}

/// The two hexadecimal digits of a byte, in upper case.
constexpr std::array<char, 2> hexOf(unsigned byte) noexcept {
    return {hexDigits[byte >> 4U & 0x0FU], hexDigits[byte & 0x0FU]};
}

inline void appendHex(std::string& text, unsigned byte) {
    const auto pair = hexOf(byte);
    text.append(pair.data(), pair.size());
}

} // namespace Libraries::Files::PDF::Spelling
