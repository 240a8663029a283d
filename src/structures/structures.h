#pragma once

/// @file
/// What the stage of reading files of any sound structure does for a document. Throws
/// `std::bad_alloc`.

#include "state/document_state.h"

namespace Libraries::Files::PDF {

/// Loads a document from `state.source`, whatever sound structure it is stored in (ISO 32000-1,
/// 7.5). The objects are numbered from 1 on. False, logged, with the code set, on failure; the
/// state is then of no use.
[[nodiscard]] bool loadAny(DocumentState& state);

} // namespace Libraries::Files::PDF
