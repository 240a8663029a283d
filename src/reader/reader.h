#pragma once

/// @file
/// What the stage of reading does for a document. Throws `std::bad_alloc`.

#include "state/document_state.h"

#include <host/stripe.h>
#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// Loads a document from `state.source`: header, trailer, cross-reference table and every object in
/// use, in table order. False with the code of the first rule that the file breaks; the state is
/// then of no use.
[[nodiscard]] bool load(DocumentState& state);

/// What `Document::readStreamData` does.
[[nodiscard]] Ref<Interfaces::Stripe> readStreamData(const DocumentState& state,
                                                     const Ref<Stream>& stream, bool decode);

/// What `Document::cacheStreamData` does.
[[nodiscard]] bool cacheStreamData(const DocumentState& state);

} // namespace Libraries::Files::PDF
