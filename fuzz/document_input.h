#pragma once

#include "target.h"

#include <string>
#include <string_view>
#include <utility>

namespace Fuzzing {

/// Makes a file of `bytes` that gets past the loader's search for structure, whatever they are: a
/// header where there is none, then everything in front of the cross-reference table as it stands,
/// a table of the objects "N G obj" found in it, and the trailer dictionary as it stands. `fill`
/// appends objects for numbers that are missing, so that the document is one that a rewrite keeps.
[[nodiscard]] std::string withTable(std::string_view bytes, bool fill);

/// An input that is two documents, parted behind the end marker of the first. Where there is no
/// second, both are the same.
[[nodiscard]] std::pair<Bytes, Bytes> documentsOf(Bytes bytes) noexcept;

} // namespace Fuzzing
