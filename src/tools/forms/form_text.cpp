#include "tools/forms/form_text.h"

#include "spelling/digits.h"
#include "spelling/names.h"
#include "tools/failure.h"
#include "tools/fonts/text_font.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// What stands for a code of a literal string that is no byte any more: those from 128 to 159 were
/// taken for characters.
char byteOf(char32_t code, const TextFont& codePage) {
    return static_cast<char>(code <= 0xFF ? code : codePage.codeOf(code).value_or(0));
}

bool isUtf16(std::string_view bytes) noexcept {
    return bytes.starts_with("\xFE\xFF");
}

/// A character for each byte.
std::string fromBytes(std::string_view bytes) {
    const std::span codes(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return orThrow(Host::String::create(codes))->utf8();
}

/// Some producers encode Latin text twice: behind two byte-order marks each character takes three
/// bytes, of which the last is not 0. What else begins so is none of theirs.
std::optional<std::string> encodedTwice(std::string_view bytes) {
    constexpr std::string_view marks = "\xFE\xFF\xFE\xFF";
    constexpr std::string_view before("\0\0", 2);
    if (!bytes.starts_with(marks) || (bytes.size() - marks.size()) % 3 != 0) return std::nullopt;
    std::string latin;
    for (std::size_t index = marks.size(); index < bytes.size(); index += 3) {
        if (bytes.substr(index, 2) != before || bytes[index + 2] == 0) return std::nullopt;
        latin += bytes[index + 2];
    }
    return fromBytes(latin);
}

std::string fromUtf16(std::string_view bytes) {
    if (auto text = encodedTwice(bytes)) return *std::move(text);
    while (isUtf16(bytes)) // nobody sees further marks
        bytes.remove_prefix(2);
    std::u16string units;
    for (std::size_t index = 0; index + 1 < bytes.size(); index += 2) {
        const auto high = static_cast<unsigned char>(bytes[index]);
        units += static_cast<char16_t>(high << 8 | static_cast<unsigned char>(bytes[index + 1]));
    }
    return orThrow(Host::String::create(std::u16string_view(units)))->utf8();
}

std::string literalText(const Host::String& text) {
    if (text.length() < 2 || text[0] != 0xFE || text[1] != 0xFF) return text.utf8();
    const TextFont codePage = TextFont::helvetica();
    std::string bytes;
    for (std::uint64_t index = 0; index < text.length(); ++index)
        bytes += byteOf(text[index], codePage);
    return fromUtf16(bytes);
}

/// Some producers write into a name what a literal string would say (ISO 32000-1, 7.3.4.2): UTF-16
/// with octal escapes.
std::string withoutEscapes(std::string_view text) {
    std::string bytes;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const bool escape = text[index] == '\\' && index + 1 < text.size();
        const std::string_view digits = text.substr(index + escape, 3);
        if (escape && digits.size() == 3 && std::ranges::all_of(digits, Spelling::isOctal)) {
            bytes += static_cast<char>(Spelling::octalValue(digits));
            index += 3;
        } else {
            if (escape) ++index;
            bytes += text[index];
        }
    }
    return bytes;
}

} // namespace

std::u32string charactersOf(std::string_view utf8) {
    const Ref<Host::String> text = orThrow(Host::String::create(utf8));
    std::u32string characters(text->length(), 0);
    for (std::uint64_t index = 0; index < characters.size(); ++index)
        characters[index] = (*text)[index];
    return characters;
}

std::string textOf(const String& string) {
    if (const Ref<Host::String> text = string.text()) return literalText(*text);
    const auto bytes = string.bytes();
    if (!bytes) return {};
    const std::string_view view(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    return isUtf16(view) ? fromUtf16(view) : fromBytes(view);
}

std::string textOf(const Ref<Value>& value) {
    const Ref<String> string = Host::cast<String>(value);
    return string ? textOf(*string) : std::string();
}

std::string textOf(const Name& name) {
    const std::string text = Spelling::decodedName(name.name()->utf8());
    if (text.starts_with("\\376\\377")) return fromUtf16(withoutEscapes(text));
    // Names are mostly UTF-8; what is none was made for a page of 256 codes.
    const bool valid = orThrow(Host::String::create(std::string_view(text)))->utf8() == text;
    return valid ? text : fromBytes(text);
}

} // namespace Libraries::Files::PDF::Tools
