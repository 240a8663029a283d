#include "tools/names.h"

#include "tools/failure.h"

#include <pdf/tools/editing.h>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr std::string_view delimiters = "()<>[]{}/%";

bool canBeName(std::string_view text) noexcept {
    return !text.empty() && text.find('\0') == std::string_view::npos;
}

} // namespace

bool isRegular(char32_t code) noexcept {
    constexpr char32_t lastByte = 0xFF;
    return code > U' ' && code <= lastByte &&
           delimiters.find(static_cast<char>(code)) == std::string_view::npos;
}

std::string spelledName(std::string_view text) {
    constexpr char digits[] = "0123456789ABCDEF";
    constexpr unsigned char firstNotPrintable = 0x7F;
    std::string name;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (isRegular(code) && code < firstNotPrintable && character != '#') {
            name += character;
        } else {
            name += {'#', digits[code >> 4], digits[code & 0xF]};
        }
    }
    return name;
}

Ref<Host::String> keyOf(std::string_view utf8) noexcept {
    if (!canBeName(utf8)) return fail(InvalidArgument, "No name can be empty or hold a null");
    return guarded([&] { return orThrow(Host::String::create(spelledName(utf8))); });
}

Ref<Name> nameOf(std::string_view utf8) noexcept {
    const Ref<Host::String> key = keyOf(utf8);
    return key ? Name::create(key) : nullptr;
}

} // namespace Libraries::Files::PDF::Tools
