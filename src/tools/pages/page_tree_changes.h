#pragma once

#include "tools/budget.h"
#include "tools/changes.h"
#include "tools/pages/page_tree.h"

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Makes the tree of a document what is asked for, with every page a direct kid of the root. What
/// it changed goes back with `changes`.
class PageTreeChanges {
public:
    /// Reads the tree and makes its pages ready to be kids of the root.
    explicit PageTreeChanges(Changes& changes);

    /// The references to the pages, in order; for whoever wants others.
    [[nodiscard]] std::vector<Ref<Value>>& kids() noexcept { return kids_; }
    /// Makes a dictionary a page of this tree.
    void adopt(const Ref<Dictionary>& page);
    /// Puts the pages into the root.
    void complete();

private:
    void flattenPage(FoundPage& found);
    void copyPage(Page& page);
    void takeRoom(std::uint64_t bytes, const Ref<Object>& page);
    void inherit(const FoundPage& found);
    [[nodiscard]] Ref<Value> resourcesOf(const FoundPage& found);
    void makeContentsDirect(const Page& page);

    Changes& changes_;
    PageTree tree_;
    Ref<ObjectRef> root_;
    std::vector<Ref<Value>> kids_;
    std::unordered_set<std::uint32_t> seen_;
    std::unordered_map<const Value*, Ref<ObjectRef>> resources_;
    std::unordered_map<std::uint32_t, std::uint64_t> sizes_; ///< of pages that are copied
    std::unordered_map<const Array*, Ref<Array>> contents_;  ///< that were made direct
    Budget room_;                                            ///< for copies
};

} // namespace Libraries::Files::PDF::Tools
