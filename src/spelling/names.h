#pragma once

#include "spelling/characters.h"
#include "spelling/digits.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace Libraries::Files::PDF::Spelling {

/// What ends a name by the exact rules, to which every code up to 32 is white space.
inline constexpr Set exactNameEnd = Set{delimiters}.with(0, ' ');

/// What is written in a name with a number sign (ISO 32000-1, 7.3.5).
inline constexpr Set notPlainInName = exactNameEnd.with('#', '#').with(0x7F, 0xFF);

/// Whether a character stands in a name as it is.
constexpr bool isPlainInName(char character) noexcept {
    return !notPlainInName.has(character);
}

/// A character of a name, encoded where it is not plain.
inline void appendNameCharacter(std::string& text, char character) {
    if (isPlainInName(character)) {
        text += character;
    } else {
        text += '#';
        appendHex(text, codeOf(character));
    }
}

/// The code that `text` encodes at its start, by a number sign and two digits; -1 where it has no
/// such start.
constexpr int encodedCode(std::string_view text) noexcept {
    if (text.size() < 3 || text[0] != '#') return -1;
    const int high = hexValue(text[1]);
    const int low = hexValue(text[2]);
    return high < 0 || low < 0 ? -1 : high * 16 + low;
}

/// Takes a character of a name from the front of `text`, which is not empty, however it is spelled.
constexpr char takeNameCharacter(std::string_view& text) noexcept {
    const int encoded = encodedCode(text);
    const char character = encoded < 0 ? text.front() : static_cast<char>(encoded);
    text.remove_prefix(encoded < 0 ? 1 : 3);
    return character;
}

/// The name as readers take it: "#4C" is an L.
inline std::string decodedName(std::string_view name) {
    std::string text;
    while (!name.empty())
        text += takeNameCharacter(name);
    return text;
}

} // namespace Libraries::Files::PDF::Spelling
