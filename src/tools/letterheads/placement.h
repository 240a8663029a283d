#pragma once

#include "tools/geometry.h"

#include <pdf/tools/pages.h>

#include <string>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

/// What a reader sees of a page: a box in the page's coordinates, and how it is turned upright.
struct View {
    Rectangle box;
    Matrix turn;
};

/// Throws `std::bad_alloc`, as does what follows.
[[nodiscard]] View viewOf(const Document& document, const Page& page);

/// What a page draws to show a form that was made of another page: as large as fits, in the middle
/// of what is seen of the page and upright there, or `asIs`, in the other page's coordinates.
/// Leaves the graphics state as it was.
[[nodiscard]] std::string placed(std::string_view name, const View& form, const View& page,
                                 bool asIs);

} // namespace Libraries::Files::PDF::Tools
