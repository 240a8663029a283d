#include "packed/entry.h"

#include "spelling/digits.h"

#include <algorithm>
#include <cstddef>

namespace Libraries::Files::PDF {

namespace {

using Spelling::isDigit;

const char* behindText(const char* next) noexcept {
    for (; *next != ')'; ++next) {
        if (*next == '\\') ++next;
    }
    return next + 1;
}

/// Behind the token that begins at `next`; `open` counts the lists that it leaves open.
const char* behindToken(const char* next, std::size_t& open) noexcept {
    if (*next == '(') return behindText(next);
    if (*next == '[' || (next[0] == '<' && next[1] == '<')) {
        ++open;
        return next + (*next == '[' ? 1 : 2);
    }
    if (*next == ']' || (next[0] == '>' && next[1] == '>')) {
        --open;
        return next + (*next == ']' ? 1 : 2);
    }
    return next + 1;
}

/// Behind a value that begins at `next`: at the space before the next key or before the closing
/// brackets of the dictionary.
const char* behindValue(const char* next) noexcept {
    std::size_t open = 0;
    do {
        // Of a reference there are three tokens: what counts is what comes next.
        next = behindToken(next, open);
    } while (open != 0 || *next != ' ' || (next[1] != '/' && next[1] != '>'));
    return next;
}

/// The same of an array, whose elements no keys stand between.
const char* behindElement(const char* next) noexcept {
    const bool mayRefer = isDigit(*next);
    std::size_t open = 0;
    do {
        next = behindToken(next, open);
    } while (open != 0 || *next != ' ');
    if (!mayRefer || !isDigit(next[1])) return next;
    const char* digit = next + 1;
    while (isDigit(*digit))
        ++digit;
    return digit[0] == ' ' && digit[1] == 'R' ? digit + 2 : next;
}

} // namespace

std::string_view findPackedEntry(std::string_view dictionary, std::string_view key) noexcept {
    PackedEntries entries(dictionary);
    for (auto entry = entries.next(); !entry.key.empty(); entry = entries.next()) {
        if (entry.key == key) return entry.value;
        if (entry.key > key) break; // keys ascend
    }
    return {};
}

PackedEntries::Entry PackedEntries::next() noexcept {
    if (*next_ != '/') return {};
    const char* const key = next_ + 1;
    const char* const keyEnd = std::find(key, end_, ' ');
    const char* const value = keyEnd + 1;
    const char* const end = *value == '/' ? std::find(value, end_, ' ') : behindValue(value);
    next_ = end + 1;
    return {{key, static_cast<std::size_t>(keyEnd - key)},
            {value, static_cast<std::size_t>(end - value)}};
}

std::string_view PackedElements::next() noexcept {
    if (*next_ == ']') return {};
    const char* const first = next_;
    const char* const end = behindElement(first);
    next_ = end + 1;
    return {first, static_cast<std::size_t>(end - first)};
}

} // namespace Libraries::Files::PDF
