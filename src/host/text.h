#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace Host::StringUtil {

/// Calls `take` with each part between the separators that is not empty.
template <class Take>
void split(std::string_view text, char separator, Take&& take) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end != 0) take(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

/// Splits a text into exactly `count` parts; false if it has more or fewer.
template <std::size_t count>
bool splitExactly(std::string_view text, char separator,
                  std::array<std::string_view, count>& parts) noexcept {
    std::size_t found = 0;
    split(text, separator, [&](std::string_view part) {
        if (found < count) parts[found] = part;
        ++found;
    });
    return found == count;
}

/// The text without the codes 0 to 32 at its ends.
inline std::string_view trim(std::string_view text) noexcept {
    const auto blank = [](char code) { return static_cast<unsigned char>(code) <= 32; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace Host::StringUtil
