#pragma once

#include "state/own_document.h"

#include <pdf/document.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// Carries out `Document::addBackground` on `target`.
///
/// After a failure, exhausted memory included, no page keeps contents in front of its own. A
/// failure before contents are touched leaves no copied content stream behind. Merged resources
/// stay.
[[nodiscard]] bool addBackground(OwnDocument& target, const Ref<Document>& foreign,
                                 std::uint32_t mode);

} // namespace Libraries::Files::PDF
