#pragma once

#include <pdf/values.h>

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF {

/// The indirect objects of a document, in the order in which they were loaded or appended.
///
/// A lookup gives what a walk from the front gives: the first object with that id and generation.
/// While the ids ascend, which loading and appending keep up, it is found without a walk.
class ObjectTable {
public:
    /// An object beside its identity, so that a search stays within the table.
    struct Slot {
        std::uint32_t id;
        std::uint16_t generation;
        Ref<Object> object;
    };

    void append(Ref<Object> object);
    /// Erases the first match and keeps the order of the rest; false where there is none.
    bool remove(std::uint32_t id, std::uint16_t generation) noexcept;
    /// Erases every object that `unwanted` accepts, asked about each slot once and in order, and
    /// keeps the order of the rest.
    template <class Unwanted>
    void removeIf(Unwanted unwanted) noexcept {
        std::size_t kept = 0;
        std::size_t keptAscending = 0;
        for (std::size_t index = 0; index < slots_.size(); ++index) {
            if (unwanted(std::as_const(slots_[index]))) continue;
            if (index < ascending_) ++keptAscending;
            if (kept != index) slots_[kept] = std::move(slots_[index]);
            ++kept;
        }
        slots_.erase(slots_.begin() + static_cast<std::ptrdiff_t>(kept), slots_.end());
        ascending_ = keptAscending;
    }
    /// Cuts the table off behind its first `size` objects.
    void truncate(std::size_t size) noexcept;
    void reserve(std::size_t size) { slots_.reserve(size); }

    /// Borrowed: valid until the table changes. Null where there is none.
    [[nodiscard]] Object* find(std::uint32_t id, std::uint16_t generation) const noexcept;

    [[nodiscard]] std::size_t size() const noexcept { return slots_.size(); }
    [[nodiscard]] const Ref<Object>& operator[](std::size_t index) const noexcept {
        return slots_[index].object;
    }
    [[nodiscard]] const std::vector<Slot>& slots() const noexcept { return slots_; }
    [[nodiscard]] bool ascending() const noexcept { return ascending_ == slots_.size(); }

private:
    [[nodiscard]] std::size_t place(std::uint32_t id, std::uint16_t generation) const noexcept;
    [[nodiscard]] std::size_t placeOfId(std::uint32_t id) const noexcept;

    std::vector<Slot> slots_;
    /// How many objects from the front on have ascending ids.
    std::size_t ascending_ = 0;
};

} // namespace Libraries::Files::PDF
