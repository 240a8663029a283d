#pragma once

#include "document/state.h"
#include "host/cursor.h"

namespace Libraries::Files::PDF {

/// Reads the one subsection of the cross-reference table at `state.xrefOffset` (ISO 32000-1,
/// 7.5.4), of which any line of three parts is an entry. False, with no code set, on failure.
[[nodiscard]] bool readXrefTable(DocumentState& state, Host::Cursor& cursor);

} // namespace Libraries::Files::PDF
