#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace Libraries::Strings::Encodings::ANSI {

/// The code page of literal strings. It differs from the first 256 code points in 0x80 to 0x9F
/// only, five of which are unassigned.
class Windows_1252 {
public:
    static constexpr char32_t first = 0x80;
    static constexpr char32_t last = 0x9F;

    /// The code point of a code; 0 for an unassigned one. A code outside the block is its own code
    /// point.
    static constexpr char32_t toUnicode(char32_t code) noexcept {
        return code >= first && code <= last ? block[code - first] : code;
    }

    /// The byte in 0x80 to 0x9F that stands for a code point behind 0xFF.
    static constexpr std::optional<std::uint8_t> fromUnicode(char32_t codePoint) noexcept {
        for (std::size_t index = 0; codePoint != 0 && index < block.size(); ++index) {
            if (block[index] == codePoint) return static_cast<std::uint8_t>(first + index);
        }
        return std::nullopt;
    }

private:
    static constexpr std::array<char32_t, 32> block{
        0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
};

} // namespace Libraries::Strings::Encodings::ANSI
