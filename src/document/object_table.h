#pragma once

#include <pdf/values.h>

#include <cstddef>
#include <cstdint>
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
    [[nodiscard]] bool ascending() const noexcept { return ascending_; }

private:
    [[nodiscard]] std::size_t place(std::uint32_t id, std::uint16_t generation) const noexcept;
    [[nodiscard]] std::size_t placeOfId(std::uint32_t id) const noexcept;

    std::vector<Slot> slots_;
    bool ascending_ = true;
};

} // namespace Libraries::Files::PDF
