#pragma once

#include "state/document_state.h"

#include <pdf/values.h>

#include <cstdint>
#include <optional>

namespace Libraries::Files::PDF {

/// What a stream's Length entry leads to. Looking it up logs nothing: what is said of a Length that
/// cannot be used differs from operation to operation.
struct StreamLength {
    /// What stands in the dictionary; null where there is no such entry.
    Ref<Value> entry;
    /// The reference that the entry is, if it is one.
    const ObjectRef* ref = nullptr;
    /// Whether there is an entry and, where it is a reference, the object that it refers to.
    bool resolved = false;
    /// The entry or, where it is a reference, the object's value; null where there is none.
    Ref<Value> value;
};

/// Throws `std::bad_alloc`.
[[nodiscard]] StreamLength findStreamLength(const DocumentState& state, const Dictionary& dict);

/// The number of bytes that a Length may stand for: a whole number, not negative.
[[nodiscard]] std::optional<std::uint64_t> wholeLength(const Number& length) noexcept;

} // namespace Libraries::Files::PDF
