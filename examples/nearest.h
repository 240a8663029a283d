#pragma once

/// @file
/// Which name was meant: of an option, of a field.

#include <algorithm>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Program {

/// How many characters have to be changed, added or taken away to make one text of the other.
inline std::size_t distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t line = 0; line < from.size(); ++line) {
        std::size_t diagonal = std::exchange(row[0], line + 1);
        for (std::size_t column = 0; column < to.size(); ++column) {
            const std::size_t changed = diagonal + (from[line] == to[column] ? 0 : 1);
            diagonal = row[column + 1];
            row[column + 1] = std::min({changed, diagonal + 1, row[column] + 1});
        }
    }
    return row[to.size()];
}

/// The names that `text` was most likely meant to be, three at most, the nearest first: spelled
/// much the same, as a whole or behind the last period.
inline std::vector<std::string> nearest(std::string_view text,
                                        const std::vector<std::string>& names) {
    const std::size_t limit = 1 + text.size() / 3;
    std::vector<std::pair<std::size_t, std::string>> found;
    const auto look = [&](std::string_view part, const std::string& name, std::size_t more) {
        const bool alike = part.size() <= text.size() + limit && text.size() <= part.size() + limit;
        const std::size_t apart = alike ? distance(text, part) + more : limit + 1;
        if (apart <= limit) found.emplace_back(apart, name);
    };
    for (const std::string& name : names) {
        const std::size_t before = found.size();
        look(name, name, 0);
        const std::size_t period = name.rfind('.');
        if (found.size() == before && period != std::string::npos)
            look(std::string_view(name).substr(period + 1), name, 1);
    }
    std::ranges::stable_sort(found, {}, &std::pair<std::size_t, std::string>::first);
    std::vector<std::string> result;
    for (std::size_t index = 0; index < std::min<std::size_t>(found.size(), 3); ++index)
        result.push_back(found[index].second);
    return result;
}

/// Texts behind each other: "a, b, c".
inline std::string joined(const std::vector<std::string>& texts) {
    std::string result;
    for (const std::string& text : texts)
        result += (result.empty() ? "" : ", ") + text;
    return result;
}

} // namespace Program
