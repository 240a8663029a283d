#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Libraries::Files::PDF::Characters {

/// Every code from 0 to 32 counts as white space.
constexpr bool isWhite(int code) noexcept {
    return code >= 0 && code <= 32;
}

constexpr bool isLineEnding(int code) noexcept {
    return code == '\r' || code == '\n';
}

constexpr bool isDigit(int code) noexcept {
    return code >= '0' && code <= '9';
}

constexpr bool isOctal(int code) noexcept {
    return code >= '0' && code <= '7';
}

/// The value of a hexadecimal digit, or -1.
constexpr int hexValue(int code) noexcept {
    if (isDigit(code)) return code - '0';
    if (code >= 'a' && code <= 'f') return code - 'a' + 10;
    return code >= 'A' && code <= 'F' ? code - 'A' + 10 : -1;
}

/// A set of bytes, for walking runs of them.
class Set {
public:
    constexpr explicit Set(std::string_view members, bool withWhite) noexcept {
        for (char member : members)
            in_[static_cast<unsigned char>(member)] = true;
        for (std::size_t code = 0; withWhite && code <= 32; ++code)
            in_[code] = true;
    }

    /// A set that also holds the codes from `first` to `last`.
    [[nodiscard]] constexpr Set with(std::size_t first, std::size_t last) const noexcept {
        Set wider = *this;
        for (std::size_t code = first; code <= last; ++code)
            wider.in_[code] = true;
        return wider;
    }

    [[nodiscard]] constexpr bool has(int code) const noexcept {
        return in_[static_cast<unsigned char>(code)];
    }

    /// Index of the first member in `text`, or its size.
    [[nodiscard]] std::size_t find(std::string_view text) const noexcept {
        std::size_t index = 0;
        while (index < text.size() && !has(static_cast<unsigned char>(text[index])))
            ++index;
        return index;
    }

private:
    std::array<bool, 256> in_{};
};

/// What ends a name (ISO 32000-1, 7.2.2: white space and delimiters).
inline constexpr Set nameEnd{"%()/<>[]{}", true};

/// What needs a look at the mode before it can end a bare token; all else belongs to the token.
inline constexpr Set tokenStop{"%(/<>[]", true};

/// What stands otherwise in the packed spelling of a literal string, or ends it: escapes,
/// parentheses, line endings, what is escaped there, and all that is no ASCII.
inline constexpr Set stringStop = Set{"\\()\r\n\b\t\f", false}.with(0x7F, 0xFF);

} // namespace Libraries::Files::PDF::Characters
