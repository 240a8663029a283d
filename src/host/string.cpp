#include "host/unicode.h"

#include <host/heap.h>
#include <host/string.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>

namespace Host {

namespace {

template <class Wide, class Narrow>
std::strong_ordering compareCodes(const Wide* left, std::uint64_t leftLength, const Narrow* right,
                                  std::uint64_t rightLength) noexcept {
    const std::uint64_t shared = std::min(leftLength, rightLength);
    for (std::uint64_t index = 0; index < shared; ++index) {
        const auto a = static_cast<char32_t>(left[index]);
        const auto b = static_cast<char32_t>(right[index]);
        if (a != b) return a <=> b;
    }
    return leftLength <=> rightLength;
}

const unsigned char* codes(const char* narrow) noexcept {
    return reinterpret_cast<const unsigned char*>(narrow);
}

/// Walks a source of code points once, for the length and the widest code. `walk` is a function, so
/// that the caller can walk the source again.
template <class Walk>
bool anyWide(Walk walk, std::uint64_t& length) noexcept {
    bool wide = false;
    length = 0;
    walk([&](char32_t code) {
        wide = wide || code > 0xFF;
        ++length;
    });
    return wide;
}

} // namespace

template <class Code, class Walk>
Ref<String> String::fill(Walk walk, std::uint64_t length) noexcept {
    if (length > maxLength) {
        Error::set(OutOfMemory);
        return nullptr;
    }
    void* memory = Heap::alloc(sizeof(String) + length * sizeof(Code));
    if (memory == nullptr) {
        Error::set(OutOfMemory);
        return nullptr;
    }
    auto* string = new (memory) String();
    auto* next = reinterpret_cast<Code*>(string + 1);
    string->characters_ = next;
    string->length_ =
        static_cast<std::uint32_t>(length) | (sizeof(Code) == sizeof(char32_t) ? wideFlag : 0U);
    walk([&next](char32_t code) { *next++ = static_cast<Code>(code); });
    return Ref<String>::adopt(string);
}

template <class Walk>
Ref<String> String::build(Walk walk) noexcept {
    std::uint64_t length = 0;
    return anyWide(walk, length) ? fill<char32_t>(walk, length) : fill<unsigned char>(walk, length);
}

void String::destroy(const String* string) noexcept {
    const std::size_t codeSize = string->wide() ? sizeof(char32_t) : sizeof(char);
    const std::size_t size = sizeof(String) + string->length() * codeSize;
    string->~String();
    Heap::free(const_cast<String*>(string), size);
}

Ref<String> String::create(std::string_view utf8) noexcept {
    return build([utf8](auto&& take) { Unicode::fromUtf8(utf8, take); });
}

Ref<String> String::create(std::span<const std::uint8_t> narrow) noexcept {
    return fill<unsigned char>(
        [narrow](auto&& take) {
            for (std::uint8_t code : narrow)
                take(code);
        },
        narrow.size());
}

Ref<String> String::create(std::u32string_view codePoints) noexcept {
    return build([codePoints](auto&& take) {
        for (char32_t code : codePoints)
            take(code);
    });
}

Ref<String> String::create(std::u16string_view utf16) noexcept {
    return build([utf16](auto&& take) { Unicode::fromUtf16(utf16, take); });
}

Ref<String> String::create(char32_t character) noexcept {
    return create(std::u32string_view(&character, 1));
}

std::strong_ordering String::compare(const String& other) const noexcept {
    const unsigned char* narrow = codes(narrowData());
    const unsigned char* otherNarrow = codes(other.narrowData());
    if (wide() && other.wide()) {
        return compareCodes(wideData(), length(), other.wideData(), other.length());
    }
    if (wide()) return compareCodes(wideData(), length(), otherNarrow, other.length());
    if (other.wide()) return compareCodes(narrow, length(), other.wideData(), other.length());

    const std::size_t shared = std::min(length_, other.length_);
    const int order = shared == 0 ? 0 : std::memcmp(narrow, otherNarrow, shared);
    return order != 0 ? order <=> 0 : length() <=> other.length();
}

std::string String::utf8() const {
    std::string result;
    for (std::uint64_t index = 0; index < length(); ++index) {
        Unicode::appendUtf8(result, (*this)[index]);
    }
    return result;
}

std::u16string String::utf16() const {
    std::u16string result;
    for (std::uint64_t index = 0; index < length(); ++index) {
        Unicode::appendUtf16(result, (*this)[index]);
    }
    return result;
}

void StringBuilder::appendWide(char32_t character) {
    if (wide_.empty()) {
        wide_.reserve(narrow_.size() + 16);
        for (char narrow : narrow_)
            wide_.push_back(static_cast<unsigned char>(narrow));
    }
    wide_.push_back(character);
}

void StringBuilder::append(std::string_view codes) {
    if (wide_.empty()) {
        narrow_.append(codes);
        return;
    }
    for (char code : codes)
        wide_.push_back(static_cast<unsigned char>(code));
}

void StringBuilder::append(const String& text) {
    if (text.isNarrow()) {
        append(text.narrow());
        return;
    }
    for (std::uint64_t index = 0; index < text.length(); ++index)
        append(text[index]);
}

void StringBuilder::appendNumber(std::uint64_t number) {
    char digits[20];
    const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
    append(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void StringBuilder::appendNumber(std::int64_t number) {
    char digits[20];
    const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
    append(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void StringBuilder::clear() noexcept {
    narrow_.clear();
    wide_.clear();
}

Ref<String> StringBuilder::build() const noexcept {
    if (!wide_.empty()) return String::create(std::u32string_view(wide_));
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(narrow_.data());
    return String::create(std::span(bytes, narrow_.size()));
}

} // namespace Host
