#pragma once

#include "document/state.h"
#include "writer/stored_stream.h"

#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// What `Document::setCompression` does. Throws `std::bad_alloc`, the document then being as it
/// was, as after any other failure.
bool setCompression(DocumentState& state, Compression target, const ReadRaw& readRaw);

} // namespace Libraries::Files::PDF
