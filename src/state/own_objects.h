#pragma once

#include "state/document_state.h"

#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// Adds an object under the next number. Null, with the code set, on failure: nothing is added
/// then. Throws `std::bad_alloc`.
[[nodiscard]] Ref<Object> addObject(DocumentState& state, Ref<Value> value);

/// Removes an object. False, with the code set, if it does not belong to this document.
[[nodiscard]] bool removeObject(DocumentState& state, const Object& object) noexcept;

} // namespace Libraries::Files::PDF
