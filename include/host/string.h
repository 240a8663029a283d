#pragma once

/// @file
/// Texts: immutable sequences of code points.

#include <host/error.h>
#include <host/export.h>
#include <host/ref.h>

#include <compare>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Host {

/// Immutable text: a counted sequence of code points that may hold NUL.
///
/// A text takes one byte for each character if all its codes are below 256, else four. Texts
/// compare by code point. A text holds at most 2147483647 characters. Every `create` gives null
/// with `OutOfMemory` set when memory is exhausted.
class FILES_PDF_EXPORT String {
public:
    /// Longest text, in characters.
    static constexpr std::uint64_t maxLength = 0x7FFF'FFFF;

    /// From UTF-8; a byte that belongs to no valid sequence becomes U+FFFD.
    [[nodiscard]] static Ref<String> create(std::string_view utf8) noexcept;
    /// From 8-bit codes: each byte is the code of one character.
    [[nodiscard]] static Ref<String> create(std::span<const std::uint8_t> codes) noexcept;
    /// From code points.
    [[nodiscard]] static Ref<String> create(std::u32string_view codePoints) noexcept;
    /// From UTF-16 code units; an unpaired surrogate is kept as a character of that code.
    [[nodiscard]] static Ref<String> create(std::u16string_view utf16) noexcept;
    /// From one character.
    [[nodiscard]] static Ref<String> create(char32_t character) noexcept;

    /// For literals, see `_str`: a text over characters that outlive it. It starts with one
    /// reference.
    constexpr explicit String(const char* ascii, std::uint32_t length) noexcept
        : length_(length), characters_(ascii) {}

    String(const String&) = delete;
    String& operator=(const String&) = delete;

    /// Length in characters (code points).
    [[nodiscard]] std::uint64_t length() const noexcept { return length_ & maxLength; }
    /// Whether there is no character; a NUL is one.
    [[nodiscard]] bool empty() const noexcept { return length() == 0; }

    /// The code of the character at a zero-based index, which must be below `length()`.
    [[nodiscard]] char32_t operator[](std::uint64_t index) const noexcept {
        return wide() ? wideData()[index] : static_cast<unsigned char>(narrowData()[index]);
    }

    /// The characters as 8-bit codes; empty unless `isNarrow`.
    [[nodiscard]] std::string_view narrow() const noexcept {
        return wide() ? std::string_view{} : std::string_view{narrowData(), length_};
    }
    /// Whether all codes are below 256.
    [[nodiscard]] bool isNarrow() const noexcept { return !wide(); }

    /// Whether both have the same length and the same code points.
    [[nodiscard]] bool equals(const String& other) const noexcept {
        return this == &other || std::is_eq(compare(other));
    }
    /// The same for ASCII text. It makes no `String`.
    [[nodiscard]] bool equals(std::string_view ascii) const noexcept {
        return !wide() && narrow() == ascii;
    }

    /// The order by code point. A text comes behind each of its beginnings.
    [[nodiscard]] std::strong_ordering compare(const String& other) const noexcept;

    /// The text in UTF-8. Throws `std::bad_alloc` like any standard string.
    [[nodiscard]] std::string utf8() const;
    /// The text as UTF-16 code units. Throws `std::bad_alloc` like any standard string.
    [[nodiscard]] std::u16string utf16() const;

    /// For `Ref`. Thread-safe; the last `decRef` frees the text.
    ///@{
    void incRef() const noexcept { count_.increase(); }
    void decRef() const noexcept {
        if (count_.decrease()) destroy(this);
    }
    ///@}

private:
    static constexpr std::uint32_t wideFlag = 0x8000'0000;

    String() noexcept : String(nullptr, 0) {}
    template <class Walk>
    static Ref<String> build(Walk walk) noexcept;
    template <class Code, class Walk>
    static Ref<String> fill(Walk walk, std::uint64_t length) noexcept;
    static void destroy(const String* string) noexcept;

    [[nodiscard]] bool wide() const noexcept { return (length_ & wideFlag) != 0; }
    [[nodiscard]] const char* narrowData() const noexcept {
        return static_cast<const char*>(characters_);
    }
    [[nodiscard]] const char32_t* wideData() const noexcept {
        return static_cast<const char32_t*>(characters_);
    }

    mutable Counter count_{1};
    std::uint32_t length_;
    const void* characters_;
};

/// As `String::equals`.
inline bool operator==(const String& left, const String& right) noexcept {
    return left.equals(right);
}
/// As `String::compare`.
inline std::strong_ordering operator<=>(const String& left, const String& right) noexcept {
    return left.compare(right);
}

/// Characters of a literal as a template argument.
template <std::size_t size>
struct LiteralText {
    /// Does not compile for anything but ASCII.
    consteval LiteralText(const char (&text)[size]) { // NOLINT: a literal converts
        for (std::size_t index = 0; index < size; ++index) {
            if (static_cast<unsigned char>(text[index]) > 0x7F) throw "a literal holds ASCII only";
            characters[index] = text[index];
        }
    }
    char characters[size]{}; ///< the closing NUL included
};

/// The one text object of a literal. It is never destroyed, so it may be used at any time.
template <LiteralText text>
class Literal {
public:
    /// The text, valid for the life of the process. Allocates nothing.
    static const Ref<String>& ref() noexcept { return holder_.ref; }

private:
    union Holder {
        Ref<String> ref;
        constexpr ~Holder() {} // NOLINT(modernize-use-equals-default): that one would be deleted
    };
    static inline constinit String string_{text.characters, sizeof(text.characters) - 1};
    static inline constinit Holder holder_{Ref<String>::adopt(&string_)};
};

/// The suffix `_str`, for `using namespace Host::Literals`.
inline namespace Literals {
/// The text of a literal: `dictionary->find("Root"_str)`. It is there from the start, so that
/// nothing is allocated or looked up.
template <LiteralText text>
[[nodiscard]] const Ref<String>& operator""_str() noexcept {
    return Literal<text>::ref();
}
} // namespace Literals

/// Collects characters and makes one text of them. Throws `std::bad_alloc`.
class FILES_PDF_EXPORT StringBuilder {
public:
    /// Appends one character.
    void append(char32_t character) {
        if (character <= 0xFF && wide_.empty()) {
            narrow_.push_back(static_cast<char>(character));
        } else {
            appendWide(character);
        }
    }
    /// Appends 8-bit codes, such as ASCII text. Each code is a character.
    void append(std::string_view codes);
    /// Appends all characters of a text.
    void append(const String& text);
    /// Appends a number in decimal.
    ///@{
    void appendNumber(std::uint64_t number);
    void appendNumber(std::int64_t number);
    ///@}

    /// Drops the characters and keeps the memory.
    void clear() noexcept;
    /// A text of the characters collected so far, which stay here. Null with `OutOfMemory` set.
    [[nodiscard]] Ref<String> build() const noexcept;

private:
    void appendWide(char32_t character);

    std::string narrow_;
    std::u32string wide_;
};

} // namespace Host
