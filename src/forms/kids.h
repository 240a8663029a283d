#pragma once

#include <pdf/form.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// Fields in order: those of a form, or the kids of a field.
///
/// A tree may be deeper than the stack allows. So releasing it takes no more stack than releasing a
/// flat list.
class Kids {
public:
    Kids() noexcept = default;
    Kids(const Kids&) = delete;
    Kids& operator=(const Kids&) = delete;
    ~Kids();

    /// Throws `std::bad_alloc`.
    void add(Ref<Field> field);
    [[nodiscard]] std::uint64_t size() const noexcept;
    /// The field at an index; null with `OutOfRange` set behind the last.
    [[nodiscard]] Ref<Field> get(std::uint64_t index) const noexcept;
    /// The first field of a name. The name of a field is its partial name or, without one, its
    /// index in decimal. Null with `NullArgument`, `InvalidArgument` (empty) or `FormNotFound` set.
    [[nodiscard]] Ref<Field> find(const Ref<Host::String>& name) const noexcept;

private:
    struct List;

    /// Null without fields. It is on the heap because it waits there for its release when the field
    /// is gone already.
    List* list_ = nullptr;
};

} // namespace Libraries::Files::PDF
