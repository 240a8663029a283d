#pragma once

#include <pdf/document.h>

#include <string>

namespace Libraries::Files::PDF::Tools {

/// Says of the first text or name that is not read again as it is, once it is written, where it
/// stands and why; empty where there is none. Looks at what an application may have set. Texts that
/// came that way from the file, which `losses` tells, count only where `all` is true. Throws
/// `std::bad_alloc`.
[[nodiscard]] std::string firstIllegible(const Document& document, bool all);

} // namespace Libraries::Files::PDF::Tools
