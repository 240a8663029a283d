#pragma once

#include "tools/changes.h"

#include <pdf/tools/pages.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// What pages draw by name (ISO 32000-1, 7.8.3): names that are free, and names that get a meaning.
class PageResources {
public:
    explicit PageResources(Changes& changes) noexcept : changes_(changes) {}

    /// Gives external objects a name in the page's resources, where they stand: pages that share
    /// those see it too. A page without resources gets some. Fails where XObject is of a wrong
    /// kind.
    void addXObject(const Page& page, std::string_view name, const Ref<ObjectRef>& object);

private:
    [[nodiscard]] Ref<Dictionary> externalObjects(const Page& page);

    Changes& changes_;
};

/// Names that begin with a stem and that no resources have, of all that it was shown.
class UnusedNames {
public:
    explicit UnusedNames(std::string_view stem) : stem_(stem) {}

    /// Notes the names of every category. Resources, and categories, that pages share are looked at
    /// once. Throws `std::bad_alloc`, as does what follows.
    void avoid(const Document& document, const Ref<Dictionary>& resources);
    /// A name that none of those has; another one each time.
    [[nodiscard]] std::string next();

private:
    /// Notes that a dictionary was seen; false where it was before. Keeps it, so that its place is
    /// no other's.
    bool note(const Ref<Dictionary>& dictionary);

    std::string stem_;
    std::uint64_t last_ = 0;
    std::unordered_set<std::string> used_;
    std::unordered_set<const Dictionary*> seen_;
    std::vector<Ref<Dictionary>> kept_;
};

} // namespace Libraries::Files::PDF::Tools
