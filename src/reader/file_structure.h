#pragma once

/// @file
/// The parts of a file that lead to its objects (ISO 32000-1, 7.5), in the order in which they are
/// read.

#include "host/cursor.h"
#include "reader/scanner.h"
#include "state/document_state.h"

#include <cstdint>
#include <string_view>
#include <vector>

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

/// One line of the cross-reference table; its object's number follows from its place.
struct XrefEntry {
    std::uint64_t offset = 0;
    std::uint16_t generation = 0;
    bool inUse = false;
};

/// Reads the one subsection of the cross-reference table at `state.xrefOffset` (ISO 32000-1,
/// 7.5.4), of which any line of three parts is an entry. False, with no code set, on failure.
[[nodiscard]] bool readXrefTable(DocumentState& state, Host::Cursor& cursor,
                                 std::vector<XrefEntry>& entries);

} // namespace Libraries::Files::PDF
