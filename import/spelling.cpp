#include "spelling.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

namespace Libraries::Files::PDF::Import::Spelling {

namespace {

constexpr std::string_view escaped = "\b\t\n\f\r()";
constexpr std::string_view escapes = "btnfr()";

unsigned codeOf(char character) noexcept {
    return static_cast<unsigned char>(character);
}

void appendHex(std::string& text, unsigned code) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    text += digits[code >> 4U];
    text += digits[code & 0x0FU];
}

bool isPlainInName(char character) noexcept {
    constexpr std::string_view others = "#%()/<>[]{}";
    return character > ' ' && character <= '~' && others.find(character) == std::string_view::npos;
}

/// Whether the library reads the byte in a literal string and writes the same byte: it has no
/// escape for a backslash, and no character for five of the codes from 128 on.
bool isText(char character) noexcept {
    constexpr std::string_view unassigned = "\x81\x8D\x8F\x90\x9D";
    const unsigned code = codeOf(character);
    if (code < ' ') return escaped.find(character) != std::string_view::npos;
    if (code < 0x7F) return character != '\\';
    return code >= 0x80 && unassigned.find(character) == std::string_view::npos;
}

bool isUnicode(std::string_view bytes) noexcept {
    return bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE") ||
           bytes.starts_with("\xEF\xBB\xBF");
}

void appendCharacter(std::string& text, char character) {
    const unsigned code = codeOf(character);
    const std::size_t known = escaped.find(character);
    if (known != std::string_view::npos) {
        text += '\\';
        text += escapes[known];
    } else if (code >= 0x80) {
        text += '\\';
        for (const unsigned shift : {6U, 3U, 0U})
            text += static_cast<char>('0' + (code >> shift & 7U));
    } else {
        text += character;
    }
}

/// Whether the digits are a number of this type.
template <class Number>
bool fits(std::string_view digits) noexcept {
    Number number{};
    const char* const end = digits.data() + digits.size();
    return digits.empty() || std::from_chars(digits.data(), end, number).ec == std::errc{};
}

} // namespace

void appendName(std::string& text, std::string_view name) {
    text += '/';
    for (const char character : name.substr(1)) {
        if (isPlainInName(character)) {
            text += character;
        } else {
            // libqpdf keeps a number sign that encodes nothing as NUL, which no name holds.
            text += '#';
            appendHex(text, codeOf(character == '\0' ? '#' : character));
        }
    }
}

void appendString(std::string& text, std::string_view bytes) {
    if (isUnicode(bytes) || !std::ranges::all_of(bytes, isText)) {
        appendHexString(text, bytes);
        return;
    }
    text += '(';
    for (const char character : bytes)
        appendCharacter(text, character);
    text += ')';
}

void appendHexString(std::string& text, std::string_view bytes) {
    text += '<';
    for (const char character : bytes)
        appendHex(text, codeOf(character));
    text += '>';
}

void appendReal(std::string& text, std::string_view real) {
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

} // namespace Libraries::Files::PDF::Import::Spelling
