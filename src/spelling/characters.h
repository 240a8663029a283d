#pragma once

#include <array>
#include <cstddef>
#include <string_view>

/// How names, strings and numbers of any file are spelled. All rooms share it, and so does the
/// import; it includes nothing but the standard library.
namespace Libraries::Files::PDF::Spelling {

constexpr unsigned codeOf(char character) noexcept {
    return static_cast<unsigned char>(character);
}

/// A set of bytes, for walking runs of them.
class Set {
public:
    constexpr explicit Set(std::string_view members) noexcept {
        for (const char member : members)
            in_[codeOf(member)] = true;
    }

    /// A set that also holds the codes of which `isMember` says so.
    [[nodiscard]] constexpr Set with(bool (*isMember)(int)) const noexcept {
        Set wider = *this;
        for (std::size_t code = 0; code < in_.size(); ++code)
            wider.in_[code] = in_[code] || isMember(static_cast<int>(code));
        return wider;
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
    [[nodiscard]] constexpr std::size_t find(std::string_view text) const noexcept {
        std::size_t index = 0;
        while (index < text.size() && !has(static_cast<unsigned char>(text[index])))
            ++index;
        return index;
    }

private:
    std::array<bool, 256> in_{};
};

/// The delimiters (ISO 32000-1, 7.2.2).
inline constexpr std::string_view delimiters = "%()/<>[]{}";

/// What readers of any file take for white space: a vertical tabulator, too.
constexpr bool isReadAsWhite(int code) noexcept {
    return code == ' ' || (code >= '\t' && code <= '\r') || code == 0;
}

/// White space (ISO 32000-1, 7.2.2).
constexpr bool isWhite(int code) noexcept {
    return isReadAsWhite(code) && code != '\v';
}

/// White space and delimiters: what ends a word.
inline constexpr Set notRegular = Set{delimiters}.with(isWhite);

constexpr bool isRegular(char character) noexcept {
    return !notRegular.has(character);
}

constexpr bool isLineEnding(int code) noexcept {
    return code == '\r' || code == '\n';
}

} // namespace Libraries::Files::PDF::Spelling
