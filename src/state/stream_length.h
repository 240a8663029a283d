#pragma once

#include "state/document_state.h"

#include <pdf/values.h>

#include <cstdint>
#include <optional>

namespace Libraries::Files::PDF {

/// The value that a stream's Length entry leads to. Looking it up logs nothing, because each
/// operation has its own messages about a Length that it cannot use.
struct StreamLength {
    /// The entry in the dictionary; null if there is none.
    Ref<Value> entry;
    /// The reference that the entry is, if it is one.
    const ObjectRef* ref = nullptr;
    /// Whether there is an entry and, if it is a reference, the object that it refers to.
    bool resolved = false;
    /// The entry or, if it is a reference, the object's value; null if there is none.
    Ref<Value> value;
};

/// Throws `std::bad_alloc`.
[[nodiscard]] StreamLength findStreamLength(const DocumentState& state, const Dictionary& dict);

/// The number of bytes that a Length stands for: a whole number, not negative.
[[nodiscard]] std::optional<std::uint64_t> wholeLength(const Number& length) noexcept;

} // namespace Libraries::Files::PDF
