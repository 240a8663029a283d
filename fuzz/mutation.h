#pragma once

#include "document_input.h"

#include <string>

namespace Fuzzing {

/// Makes true again what a change of an input broke: each mutator has its own. `seed` chooses how.
[[nodiscard]] std::string mended(Bytes input, unsigned seed);

} // namespace Fuzzing
