#pragma once

#include "state/own_document.h"

#include <pdf/document.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// What `Document::addBackground` does to `target`.
///
/// Whatever ends it early, exhausted memory included: no page keeps contents that were put in front
/// of its own, and a failure before contents are touched leaves no copied content stream behind.
/// Merged resources stay.
[[nodiscard]] bool addBackground(OwnDocument& target, const Ref<Document>& foreign,
                                 std::uint32_t mode);

} // namespace Libraries::Files::PDF
