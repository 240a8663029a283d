#pragma once

/// @file
/// The rules by which names, strings and numbers of any file are spelled so that `Document::create`
/// reads them as what they are, and others do as well. The core and the import share them.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

namespace Libraries::Files::PDF::Spelling {

/// What has an escape of one letter in a literal string, and the letters.
inline constexpr std::string_view escaped = "\b\t\n\f\r()";
inline constexpr std::string_view escapes = "btnfr()";

constexpr unsigned codeOf(char character) noexcept {
    return static_cast<unsigned char>(character);
}

/// Whether a character stands in a name as it is; any other is written with a number sign
/// (ISO 32000-1, 7.3.5).
constexpr bool isPlainInName(char character) noexcept {
    constexpr std::string_view others = "#%()/<>[]{}";
    return character > ' ' && character <= '~' && others.find(character) == std::string_view::npos;
}

/// Whether the library reads the byte in a literal string and writes the same byte: it has no
/// escape for a backslash, and no character for five of the codes from 128 on.
constexpr bool isText(char character) noexcept {
    constexpr std::string_view unassigned = "\x81\x8D\x8F\x90\x9D";
    const unsigned code = codeOf(character);
    if (code < ' ') return escaped.find(character) != std::string_view::npos;
    if (code < 0x7F) return character != '\\';
    return code >= 0x80 && unassigned.find(character) == std::string_view::npos;
}

/// Whether the bytes begin with a byte-order mark.
constexpr bool isUnicode(std::string_view bytes) noexcept {
    return bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE") ||
           bytes.starts_with("\xEF\xBB\xBF");
}

/// Whether a literal string keeps every byte, and they are text; all else is hexadecimal: Unicode
/// behind its byte-order mark, backslashes, binary data.
constexpr bool isLiteral(std::string_view bytes) noexcept {
    return !isUnicode(bytes) && std::ranges::all_of(bytes, isText);
}

inline void appendHex(std::string& text, char character) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    text += digits[codeOf(character) >> 4U];
    text += digits[codeOf(character) & 0x0FU];
}

/// A character of a name, encoded where it is not plain.
inline void appendNameCharacter(std::string& text, char character) {
    if (isPlainInName(character)) {
        text += character;
    } else {
        text += '#';
        appendHex(text, character);
    }
}

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
