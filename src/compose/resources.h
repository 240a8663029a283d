#pragma once

#include "compose/cloning.h"

#include <pdf/document.h>
#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// Finds the Resources dictionary of a page-tree node (ISO 32000-1, 7.8.3), resolved in `document`;
/// null if the node has none. False, logged, with `ObjectUnreadable` set on failure.
[[nodiscard]] bool findResources(const Dictionary& node, const Document& document,
                                 Ref<Dictionary>& resources);

/// Adds resources that belong to one document to resources of another, in place.
///
/// It reuses a name that stands for an equal value already, and refuses one that stands for another
/// value in any category. It compares references by their numbers only.
class ResourceMerge {
public:
    /// `self` is the document that the merged resources belong to, `cloner` copies into it.
    ResourceMerge(const Document& self, Cloner& cloner) noexcept : self_(self), cloner_(cloner) {}

    /// False, logged, on failure. Entries added so far stay, and the code is that of the step that
    /// failed, if it set one.
    [[nodiscard]] bool merge(Dictionary& target, const Dictionary& added,
                             const Ref<Document>& source);

private:
    const Document& self_;
    Cloner& cloner_;
};

} // namespace Libraries::Files::PDF
