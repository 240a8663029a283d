#pragma once

/// @file
/// What the stage of writing does for a document. Throws `std::bad_alloc`.

#include "state/document_state.h"

#include <host/stripe.h>
#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// What `Document::write` does: a complete new file of header, objects by ascending id, one
/// cross-reference section, trailer and end marker.
[[nodiscard]] bool writeDocument(DocumentState& state, Interfaces::Stripe& target);

/// What `Document::writeStreamData` does for a stream of the library's own and a usable target.
[[nodiscard]] bool writeStreamData(const DocumentState& state, StreamObj& stream,
                                   Interfaces::Stripe& target, bool encode);

/// What `Document::setCompression` does. All data is as it was after any failure, exhausted memory
/// included.
[[nodiscard]] bool setCompression(DocumentState& state, Compression target);

/// The streams whose data begins with a line feed that is lost: where a carriage return alone ends
/// the line of the keyword before it, readers take the two for one line ending.
[[nodiscard]] LossCount lostLineFeeds(const DocumentState& state);

} // namespace Libraries::Files::PDF
