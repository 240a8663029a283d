#pragma once

#include "tools/geometry.h"

#include <pdf/tools/pages.h>

namespace Libraries::Files::PDF::Tools {

/// The part of a page that a reader sees, in the page's coordinates (ISO 32000-1, 14.11.2): the
/// crop box within the media box, US Letter where there is neither. It has an area. Throws
/// `std::bad_alloc`.
[[nodiscard]] Rectangle visibleBox(const Document& document, const Page& page);

/// What turns the page upright, about the origin: as its Rotate says, a quarter or a multiple of
/// it.
[[nodiscard]] Matrix uprightTurn(const Page& page) noexcept;

} // namespace Libraries::Files::PDF::Tools
