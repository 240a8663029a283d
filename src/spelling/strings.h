#pragma once

#include "spelling/characters.h"
#include "spelling/digits.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace Libraries::Files::PDF::Spelling {

/// What has an escape of one letter in a literal string, and the letters (ISO 32000-1, 7.3.4.2).
inline constexpr std::string_view escaped = "\b\t\n\f\r()\\";
inline constexpr std::string_view escapes = "btnfr()\\";

/// For each letter what it stands for behind a backslash; 0 where it makes no escape.
inline constexpr std::array<char, 256> meaningOf = [] {
    std::array<char, 256> meanings{};
    for (std::size_t index = 0; index < escaped.size(); ++index)
        meanings[codeOf(escapes[index])] = escaped[index];
    return meanings;
}();

/// What a letter behind a backslash stands for; nothing where it makes no escape.
constexpr std::optional<char> escapedBy(char letter) noexcept {
    const char meaning = meaningOf[codeOf(letter)];
    return meaning == 0 ? std::nullopt : std::optional(meaning);
}

/// What does not stand for itself in a literal string that is written here.
inline constexpr Set notPlainInLiteral = Set{escaped}.with(0x7F, 0xFF);

/// What is written in a literal string for a code: its character, or an escape of one letter or of
/// three octal digits.
struct LiteralCode {
    std::array<char, 4> text{};
    unsigned char size = 0;

    [[nodiscard]] constexpr std::string_view view() const noexcept { return {text.data(), size}; }
};

/// That of each code up to octal 777.
inline constexpr std::array<LiteralCode, 512> literalCodes = [] {
    constexpr auto octal = [](std::size_t code) { return static_cast<char>('0' + (code & 7U)); };
    std::array<LiteralCode, 512> codes{};
    for (std::size_t code = 0; code < codes.size(); ++code) {
        const char character = static_cast<char>(code);
        if (code >= 0x7F) {
            codes[code] = {{'\\', octal(code >> 6U), octal(code >> 3U), octal(code)}, 4};
        } else if (notPlainInLiteral.has(character)) {
            codes[code] = {{'\\', escapes[escaped.find(character)]}, 2};
        } else {
            codes[code] = {{character}, 1};
        }
    }
    return codes;
}();

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

} // namespace Libraries::Files::PDF::Spelling
