#pragma once

#include "document/state.h"
#include "writer/stored_stream.h"

#include <host/stripe.h>
#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// What `Document::writeStreamData` does for a stream of the library's own and a usable target.
bool writeStreamData(const DocumentState& state, StreamObj& stream, Interfaces::Stripe& target,
                     bool encode, const ReadRaw& readRaw);

} // namespace Libraries::Files::PDF
