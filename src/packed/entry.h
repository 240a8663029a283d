#pragma once

#include <string_view>

namespace Libraries::Files::PDF {

/// The packed spelling of the value under a key of a packed dictionary; empty where there is none.
/// Takes no memory.
[[nodiscard]] std::string_view findPackedEntry(std::string_view dictionary,
                                               std::string_view key) noexcept;

/// The entries of a packed dictionary, in the order of their keys. Takes no memory.
class PackedEntries {
public:
    struct Entry {
        std::string_view key; ///< without its solidus; empty behind the last one
        std::string_view value;
    };

    explicit PackedEntries(std::string_view dictionary) noexcept
        : next_(dictionary.data() + 3), end_(dictionary.data() + dictionary.size()) {}

    [[nodiscard]] Entry next() noexcept;

private:
    const char* next_; // at a key or at the closing brackets
    const char* end_;
};

/// The elements of a packed array, in order. Takes no memory.
class PackedElements {
public:
    explicit PackedElements(std::string_view array) noexcept : next_(array.data() + 2) {}

    /// The packed spelling of the next element; empty behind the last one.
    [[nodiscard]] std::string_view next() noexcept;

private:
    const char* next_; // at an element or at the closing bracket
};

} // namespace Libraries::Files::PDF
