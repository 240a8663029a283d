#pragma once

#include "document/state.h"
#include "host/cursor.h"
#include "reader/scanner.h"

namespace Libraries::Files::PDF {

/// Finds the end marker, "startxref" and the trailer backwards from the end of the file
/// (ISO 32000-1, 7.5.5) and reads the table's offset and the trailer dictionary. False with the
/// code set.
[[nodiscard]] bool readTrailer(DocumentState& state, Host::Cursor& cursor, Scanner& scanner);

} // namespace Libraries::Files::PDF
