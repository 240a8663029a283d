#pragma once

#include <pdf/document.h>

namespace Fuzzing {

/// What to expect of a loaded document that nobody changed.
enum class Rewriting {
    Refused,    ///< it cannot be written
    Unloadable, ///< what it writes cannot be loaded
    Uncertain,  ///< what it writes may be unloadable, or loads as a different document
    Kept        ///< what it writes loads again, and writes the same bytes
};

/// Decides from the document alone. To be asked after a first attempt to write it, which has set
/// the trailer's Size.
[[nodiscard]] Rewriting expectedOf(Libraries::Files::PDF::Document& document);

} // namespace Fuzzing
