#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Libraries::Files::PDF {

/// What a file's cross-reference sections say of an object's number, and what becomes of it.
struct Entry {
    enum class Kind : std::uint8_t {
        Free,
        InFile,
        InStream,
        Storage ///< in the file, but a part of how the document is stored
    };

    /// Offset from the header, or the number of the object stream.
    std::uint64_t place = 0;
    std::uint32_t number = 0;
    /// Where the object stands in its object stream.
    std::uint32_t index = 0;
    /// The number that it gets; 0 where it is no object of the document.
    std::uint32_t newNumber = 0;
    std::uint16_t generation = 0;
    Kind kind = Kind::Free;

    /// Whether it is an object of the document, as far as the entries tell.
    [[nodiscard]] bool isObject() const noexcept {
        return kind == Kind::InFile || kind == Kind::InStream;
    }
};

/// The entries of all sections of a file (ISO 32000-1, 7.5.4, 7.5.8): one for each number, the
/// newest. As small as can be, since there is one for each object.
class Entries {
public:
    using List = std::vector<Entry>;

    /// Adds an entry, which counts unless one of its number was added before.
    void add(const Entry& entry) { entries_.push_back(entry); }
    void reserve(std::size_t more);
    /// Puts what was added in order. Nothing is added behind that.
    void settle();
    /// Numbers the objects from 1 on, in the order of their numbers.
    void number() noexcept;

    [[nodiscard]] const List& list() const noexcept { return entries_; }
    /// Once there are numbers, how many.
    [[nodiscard]] std::uint32_t objects() const noexcept { return objects_; }
    /// The entry of a number; null where there is none.
    [[nodiscard]] const Entry* find(std::uint64_t number) const noexcept;
    /// The new number of what a reference leads to; 0 where that is nothing.
    [[nodiscard]] std::uint32_t newNumber(std::int64_t number,
                                          std::int64_t generation) const noexcept;
    /// Makes an entry, which is there, one of another kind.
    void mark(std::uint64_t number, Entry::Kind kind) noexcept;

private:
    List entries_;
    std::uint32_t objects_ = 0;
};

} // namespace Libraries::Files::PDF
