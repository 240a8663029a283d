#pragma once

#include "compose/cloning.h"

#include <pdf/document.h>
#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// The Resources dictionary of a page-tree node (ISO 32000-1, 7.8.3), resolved in `document`; null
/// where the node has none. False, logged, with `ObjectUnreadable` set on failure.
[[nodiscard]] bool findResources(const Dictionary& node, const Document& document,
                                 Ref<Dictionary>& resources);

/// Adds resources that belong to one document to resources of another, in place.
///
/// A name that stands for an equal value already is reused; one that stands for something else, in
/// whatever category, is refused. References are compared by their numbers, whatever they lead to.
class ResourceMerge {
public:
    /// `self` is the document that the merged resources belong to, `cloner` copies into it.
    ResourceMerge(const Document& self, Cloner& cloner) noexcept : self_(self), cloner_(cloner) {}

    /// False, logged, on failure: entries added until then stay, and the code is that of the step
    /// that failed, if it set one.
    [[nodiscard]] bool merge(Dictionary& target, const Dictionary& added,
                             const Ref<Document>& source);

private:
    const Document& self_;
    Cloner& cloner_;
};

} // namespace Libraries::Files::PDF
