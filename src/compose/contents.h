#pragma once

#include "state/document_state.h"

#include <pdf/document.h>
#include <pdf/values.h>

#include <cstddef>
#include <vector>

namespace Libraries::Files::PDF {

/// The former Contents entries of changed pages, in the order of the changes; null for a page that
/// had none.
using SavedContents = std::vector<Ref<Value>>;

/// Puts `added` in front of a page's content streams, in a direct array, and appends the former
/// Contents entry to `saved`. After a failure the page is as it was.
[[nodiscard]] bool replacePageContents(const Ref<Dictionary>& page,
                                       const std::vector<Ref<Value>>& added, SavedContents& saved);

/// Puts saved entries back, from the first page up to the page at index `stop`, which was not
/// changed. Ends at the first page that refuses its entry. Takes no memory.
void restorePageContents(const std::vector<Ref<Object>>& pages, const SavedContents& saved,
                         DocumentState& state, std::size_t stop) noexcept;

} // namespace Libraries::Files::PDF
