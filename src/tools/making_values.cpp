#include "tools/failure.h"
#include "tools/geometry.h"
#include "tools/new_values.h"

#include <pdf/tools/editing.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <string>
#include <vector>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Whether the text comes back as it is from a literal string.
bool isPlain(const Host::String& text) noexcept {
    constexpr char32_t firstPrintable = 0x20;
    constexpr char32_t deleteCode = 0x7F;
    const std::string_view codes = text.narrow();
    return std::ranges::all_of(codes, [](char code) {
        const bool control = static_cast<unsigned char>(code) < firstPrintable;
        return code != '\\' && code != deleteCode && (!control || code == '\n');
    });
}

Ref<String> stringOf(std::span<const unsigned char> bytes) {
    return orThrow(String::create(orThrow(Host::TConstArray<unsigned char>::create(bytes))));
}

Ref<String> utf16String(const Host::String& text) {
    std::vector<unsigned char> bytes = {0xFE, 0xFF};
    for (const char16_t unit : text.utf16()) {
        bytes.push_back(static_cast<unsigned char>(unit >> 8));
        bytes.push_back(static_cast<unsigned char>(unit & 0xFF));
    }
    return stringOf(bytes);
}

} // namespace

Ref<String> newText(std::string_view utf8) {
    const Ref<Host::String> text = orThrow(Host::String::create(utf8));
    return isPlain(*text) ? orThrow(String::create(text)) : utf16String(*text);
}

Result<Ref<Value>> parseValue(std::string_view syntax) noexcept {
    return guarded([&] {
        SyntaxError error;
        Ref<Value> value = Value::parse(syntax, &error);
        if (!value && Host::Error::get() == InvalidArgument)
            fail(InvalidArgument, "No value, at byte ", error.offset, ": ", error.cause);
        return orFail(std::move(value));
    });
}

Result<Ref<Number>> real(double number) noexcept {
    return guarded([&] {
        constexpr double beyond = 9223372036854775808.0; // 2^63
        if (!(std::abs(number) < beyond))
            fail(InvalidArgument,
                 "No number, or one that is too large for a document: ", std::to_string(number));
        const Ref<Value> value = orFail(Value::parse(fixedPoint(number)));
        return orFail(Host::cast<Number>(value));
    });
}

double toDouble(const Ref<Number>& number) noexcept {
    const auto value = guarded([&] { return number ? valueOf(*number) : 0; });
    return value ? *value : 0;
}

Result<Ref<String>> textString(std::string_view utf8) noexcept {
    return guarded([&] { return newText(utf8); });
}

Result<Ref<String>> byteString(Bytes bytes) noexcept {
    return guarded([&] { return stringOf(bytes.span()); });
}

Result<Ref<Host::String>> keyOf(std::string_view utf8) noexcept {
    return guarded([&] { return orThrow(Host::String::create(spelledName(utf8))); });
}

Result<Ref<Name>> nameOf(std::string_view utf8) noexcept {
    return guarded([&] { return orThrow(Name::create(spelledName(utf8))); });
}

} // namespace Libraries::Files::PDF::Tools
