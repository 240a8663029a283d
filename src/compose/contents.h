#pragma once

#include "state/document_state.h"

#include <pdf/document.h>
#include <pdf/values.h>

#include <cstddef>
#include <vector>

namespace Libraries::Files::PDF {

/// What the Contents entries of changed pages held, in the order of the changes; null where a page
/// had none.
using SavedContents = std::vector<Ref<Value>>;

/// Puts `added` in front of a page's content streams, in a direct array, and appends what stood in
/// the Contents entry to `saved`. A page that cannot be changed is left untouched.
[[nodiscard]] bool replacePageContents(const Ref<Dictionary>& page,
                                       const std::vector<Ref<Value>>& added, SavedContents& saved);

/// Puts saved entries back, from the first page up to the one at index `stop`, which was not
/// changed. Ends at the first page where that cannot be done. Takes no memory.
void restorePageContents(const std::vector<Ref<Object>>& pages, const SavedContents& saved,
                         DocumentState& state, std::size_t stop) noexcept;

} // namespace Libraries::Files::PDF
