#pragma once

/// @file
/// The parts of a file that lead to its objects (ISO 32000-1, 7.5), in the order in which they are
/// read.

#include "host/cursor.h"
#include "reader/scanner.h"
#include "state/document_state.h"

#include <string_view>

namespace Libraries::Files::PDF {

/// Reads the version and the line ending from the file's first line (ISO 32000-1, 7.5.2). False
/// with the code set.
[[nodiscard]] bool readHeader(DocumentState& state, Host::Cursor& cursor);

/// The version that two texts spell; `Unsupported`, logged, where there is no such version.
[[nodiscard]] PdfVersion parseVersion(std::string_view major, std::string_view minor) noexcept;

/// Finds the end marker, "startxref" and the trailer backwards from the end of the file
/// (ISO 32000-1, 7.5.5) and reads the table's offset and the trailer dictionary. False with the
/// code set.
[[nodiscard]] bool readTrailer(DocumentState& state, Host::Cursor& cursor, Scanner& scanner);

/// Reads the one subsection of the cross-reference table at `state.xrefOffset` (ISO 32000-1,
/// 7.5.4), of which any line of three parts is an entry. False, with no code set, on failure.
[[nodiscard]] bool readXrefTable(DocumentState& state, Host::Cursor& cursor);

} // namespace Libraries::Files::PDF
