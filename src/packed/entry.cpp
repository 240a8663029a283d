#include "packed/entry.h"

#include <algorithm>
#include <cstddef>

namespace Libraries::Files::PDF {

namespace {

const char* behindText(const char* next) noexcept {
    for (; *next != ')'; ++next) {
        if (*next == '\\') ++next;
    }
    return next + 1;
}

/// Behind a value that begins at `next`: at the space before the next key or before the closing
/// brackets of the dictionary.
const char* behindValue(const char* next) noexcept {
    std::size_t open = 0;
    do {
        // Of a reference there are three tokens: what counts is what comes next.
        if (*next == '(') {
            next = behindText(next);
        } else if (*next == '[' || (next[0] == '<' && next[1] == '<')) {
            ++open;
            next += *next == '[' ? 1 : 2;
        } else if (*next == ']' || (next[0] == '>' && next[1] == '>')) {
            --open;
            next += *next == ']' ? 1 : 2;
        } else {
            ++next;
        }
    } while (open != 0 || *next != ' ' || (next[1] != '/' && next[1] != '>'));
    return next;
}

} // namespace

std::string_view findPackedEntry(std::string_view dictionary, std::string_view key) noexcept {
    const char* next = dictionary.data() + 3; // behind "<< "
    while (*next == '/') {
        const char* const name = next + 1;
        const char* const end = std::find(name, dictionary.data() + dictionary.size(), ' ');
        const char* const value = end + 1;
        next = *value == '/' ? std::find(value, dictionary.data() + dictionary.size(), ' ')
                             : behindValue(value);
        const std::string_view found(name, static_cast<std::size_t>(end - name));
        if (found == key) return {value, static_cast<std::size_t>(next - value)};
        if (found > key) return {}; // keys ascend
        ++next;
    }
    return {};
}

} // namespace Libraries::Files::PDF
