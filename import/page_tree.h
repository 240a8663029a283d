#pragma once

#include "libqpdf.h"

namespace Libraries::Files::PDF::Import {

/// Makes catalog and page tree (ISO 32000-1, 7.7.2 and 7.7.3) ones that the library walks: they are
/// objects that say what they are, Kids is an array in its node, and each kid is an object. Kids
/// that are not there are left out, and the pages counted anew then. Throws `Failed` where there is
/// no page tree at all.
void mendPageTree(QPDF& document);

} // namespace Libraries::Files::PDF::Import
