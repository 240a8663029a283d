#include "page_table.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>

namespace Benchmarks {
namespace {

std::string lineOf(const std::vector<std::string>& cells) {
    std::string line = "|";
    for (const std::string& cell : cells)
        line += cell.empty() ? " |" : " " + cell + " |";
    return line;
}

std::vector<std::string> cellsOf(const std::string& line) {
    std::vector<std::string> cells;
    for (std::size_t at = 1; at < line.size();) {
        const std::size_t end = std::min(line.find('|', at), line.size());
        const std::string_view cell = std::string_view(line).substr(at, end - at);
        const std::size_t first = cell.find_first_not_of(' ');
        const std::size_t last = cell.find_last_not_of(' ');
        cells.emplace_back(first == cell.npos ? "" : cell.substr(first, last - first + 1));
        at = end + 1;
    }
    return cells;
}

/// The number that a cell begins with, and what stands behind it.
struct Figure {
    explicit Figure(const std::string& cell) : rest(cell) {
        const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), value);
        known = error == std::errc();
        if (known) rest.remove_prefix(static_cast<std::size_t>(end - cell.data()));
    }

    double value = 0;
    bool known = false;
    std::string_view rest;
};

bool near(const std::string& shown, const std::string& measured, const Column& column) {
    const Figure a(shown);
    const Figure b(measured);
    if (a.known != b.known || a.rest != b.rest) return false;
    return std::abs(a.value - b.value) <= column.relative * b.value + column.absolute;
}

} // namespace

std::string pageAt(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> PageTable::heads() const {
    std::vector<std::string> heads;
    for (const Column& column : columns_)
        heads.push_back(column.head);
    return heads;
}

void PageTable::print() const {
    std::printf("%s\n|%s\n", lineOf(heads()).c_str(),
                [&] {
                    std::string rule;
                    for (std::size_t column = 0; column < columns_.size(); ++column)
                        rule += "---|";
                    return rule;
                }()
                    .c_str());
    for (const auto& row : rows_)
        std::puts(lineOf(row).c_str());
    std::puts("");
}

bool PageTable::agree(const std::vector<std::string>& shown,
                      const std::vector<std::string>& measured) const {
    if (shown.size() != measured.size()) return false;
    for (std::size_t column = 0; column < shown.size(); ++column) {
        if (!near(shown[column], measured[column], columns_[column])) return false;
    }
    return true;
}

bool PageTable::isOn(const std::string& page) const {
    const std::string head = lineOf(heads());
    std::istringstream lines(page);
    std::string line;
    while (line != head && std::getline(lines, line)) {
    }
    if (!lines) {
        std::fprintf(stderr, "The page has no table %s\n", head.c_str());
        return false;
    }
    std::getline(lines, line); // the rule below the heads
    bool same = true;
    std::size_t row = 0;
    for (; std::getline(lines, line) && line.starts_with('|'); ++row) {
        if (row < rows_.size() && agree(cellsOf(line), rows_[row])) continue;
        const std::string measured = row < rows_.size() ? lineOf(rows_[row]) : "nothing";
        std::fprintf(stderr, "The page says %s\n  measured is %s\n", line.c_str(),
                     measured.c_str());
        same = false;
    }
    for (; row < rows_.size(); ++row) {
        std::fprintf(stderr, "The page lacks %s\n", lineOf(rows_[row]).c_str());
        same = false;
    }
    return same;
}

} // namespace Benchmarks
