#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Host::Unicode {

inline constexpr char32_t replacement = 0xFFFD;

/// Length of the sequence that a lead byte announces; 0 for a byte that cannot lead.
inline std::size_t utf8Length(unsigned char lead) noexcept {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead < 0xE0) return 2;
    if (lead >= 0xE0 && lead < 0xF0) return 3;
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

inline bool isSurrogate(char32_t code) noexcept {
    return code >= 0xD800 && code < 0xE000;
}

/// The code point at the start of `text` and its length in bytes. A bad byte is one by itself.
inline char32_t decodeUtf8(std::string_view text, std::size_t& used) noexcept {
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = utf8Length(lead);
    used = 1;
    if (length == 1) return lead;
    if (length == 0 || length > text.size()) return replacement;

    char32_t code = lead & (0x7FU >> length);
    for (std::size_t index = 1; index < length; ++index) {
        const auto next = static_cast<unsigned char>(text[index]);
        if ((next & 0xC0U) != 0x80) return replacement;
        code = code << 6 | (next & 0x3FU);
    }
    if (code < smallest[length] || code > 0x10FFFF || isSurrogate(code)) return replacement;
    used = length;
    return code;
}

template <class Take>
void fromUtf8(std::string_view text, Take&& take) {
    for (std::size_t used = 0; !text.empty(); text.remove_prefix(used)) {
        take(decodeUtf8(text, used));
    }
}

template <class Take>
void fromUtf16(std::u16string_view text, Take&& take) {
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char32_t high = text[index];
        const char32_t low = index + 1 < text.size() ? text[index + 1] : 0;
        const bool pair = high >= 0xD800 && high < 0xDC00 && low >= 0xDC00 && low < 0xE000;
        if (pair) ++index;
        take(pair ? 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00) : high);
    }
}

inline void appendUtf8(std::string& out, char32_t code) {
    const auto add = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (code < 0x80) return add(code);
    if (code < 0x800) {
        add(0xC0 | code >> 6);
    } else {
        if (code < 0x10000) {
            add(0xE0 | code >> 12);
        } else {
            add(0xF0 | (code >> 18 & 0x07));
            add(0x80 | (code >> 12 & 0x3F));
        }
        add(0x80 | (code >> 6 & 0x3F));
    }
    add(0x80 | (code & 0x3F));
}

inline void appendUtf16(std::u16string& out, char32_t code) {
    if (code < 0x10000) {
        out.push_back(static_cast<char16_t>(code));
        return;
    }
    out.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10 & 0x3FF)));
    out.push_back(static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF)));
}

} // namespace Host::Unicode
