#pragma once

#include "compose/copy_budget.h"
#include "state/document_state.h"

#include <pdf/document.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// What `Document::addBackground` does; `self` is the document whose state `state` is, `available`
/// what there is to copy in `foreign`.
///
/// Whatever ends it early, exhausted memory included: no page keeps contents that were put in front
/// of its own, and a failure before contents are touched leaves no copied content stream behind.
/// Merged resources stay.
[[nodiscard]] bool addBackground(DocumentState& state, Document& self, const Ref<Document>& foreign,
                                 const CopySource& available, std::uint32_t mode);

} // namespace Libraries::Files::PDF
