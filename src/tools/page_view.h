#pragma once

#include "tools/geometry.h"

#include <pdf/tools/pages.h>

namespace Libraries::Files::PDF::Tools {

/// The part of a page that a reader sees, in the page's coordinates (ISO 32000-1, 14.11.2): four
/// direct numbers, those of the page's boxes, in order. Throws `std::bad_alloc`.
[[nodiscard]] Ref<Array> visibleBox(const Document& document, const Page& page);

/// What turns the page upright, about the origin: as its Rotate says, a quarter or a multiple of
/// it.
[[nodiscard]] Matrix uprightTurn(const Page& page) noexcept;

} // namespace Libraries::Files::PDF::Tools
