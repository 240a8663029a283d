#pragma once

#include "document/state.h"

namespace Libraries::Files::PDF {

/// Loads a document from `state.source`: header, trailer, cross-reference table and every object in
/// use, in table order. False with the code of the first rule that the file breaks; the state is
/// then of no use. Throws `std::bad_alloc`.
[[nodiscard]] bool load(DocumentState& state);

} // namespace Libraries::Files::PDF
