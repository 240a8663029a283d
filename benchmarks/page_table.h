#pragma once

/// @file
/// Tables of measured figures, as pages of the documentation show them.

#include <string>
#include <utility>
#include <vector>

namespace Benchmarks {

/// A column, and how far a figure of it on a page may be from the measured one: both at once are
/// allowed. Cells begin with a number or are compared as texts.
struct Column {
    std::string head;
    double relative = 0;
    double absolute = 0;
};

/// The bytes of a page; empty where it cannot be read.
[[nodiscard]] std::string pageAt(const std::string& path);

class PageTable {
public:
    explicit PageTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// A cell for each column; the first one names the row.
    void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
    /// As the page has it, on standard output.
    void print() const;
    /// Whether a page, given whole, has the table with these rows and figures. Says on standard
    /// error what differs.
    [[nodiscard]] bool isOn(const std::string& page) const;

private:
    [[nodiscard]] std::vector<std::string> heads() const;
    [[nodiscard]] bool agree(const std::vector<std::string>& shown,
                             const std::vector<std::string>& measured) const;

    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace Benchmarks
