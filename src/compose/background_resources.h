#pragma once

#include "compose/background_streams.h"
#include "compose/resources.h"

#include <pdf/document.h>
#include <pdf/values.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// A page that gets a foreign page beneath it.
struct Assignment {
    std::uint64_t pageIndex;
    Ref<Object> page;
    const ForeignPage* foreignPage;
    /// The page's dictionary, once it has been found.
    Ref<Dictionary> dict = nullptr;
};

/// Merges the resources of foreign pages into those of the pages above them. Resources that were
/// merged before a failure stay.
class BackgroundResources {
public:
    BackgroundResources(Document& self, const Ref<Document>& foreign, Cloner& cloner) noexcept
        : self_(&self), foreign_(foreign), merge_(self, cloner) {}

    /// Finds the page catalog's resources, if it has any.
    [[nodiscard]] bool findTreeResources(const Ref<Dictionary>& pageTree);
    [[nodiscard]] bool mergeInto(Assignment& assignment);
    /// Merges the foreign page catalog's resources, if some foreign page has none of its own.
    [[nodiscard]] bool mergeTrees();

private:
    bool mergeIntoPage(Assignment& assignment, Ref<Dictionary> resources,
                       const Dictionary& foreignResources);

    Ref<Document> self_;
    Ref<Document> foreign_;
    ResourceMerge merge_;
    Ref<Dictionary> pageTree_;
    Ref<Dictionary> treeResources_;
    bool foreignTreeNeeded_ = false;
};

} // namespace Libraries::Files::PDF
