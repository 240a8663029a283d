#pragma once

#include "tools/changes.h"
#include "tools/pages/page_tree.h"

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Makes the tree of a document what is asked for, with every page a direct kid of the root. What
/// fails logs why and sets the code; what it changed goes back with `changes`. Throws
/// `std::bad_alloc`.
class PageTreeChanges {
public:
    PageTreeChanges(Document& document, Changes& changes) noexcept
        : document_(document), changes_(changes) {}

    /// Reads the tree and makes its pages ready to be kids of the root. To be called first.
    [[nodiscard]] bool flatten();
    /// The references to the pages, in order; for whoever wants others.
    [[nodiscard]] std::vector<Ref<Value>>& kids() noexcept { return kids_; }
    /// Makes a dictionary a page of this tree.
    [[nodiscard]] bool adopt(const Ref<Dictionary>& page);
    /// Puts the pages into the root.
    [[nodiscard]] bool complete();

private:
    [[nodiscard]] bool flattenPage(FoundPage& found);
    [[nodiscard]] bool copyPage(Page& page);
    [[nodiscard]] bool takeRoom(std::uint64_t bytes, const Ref<Object>& page);
    [[nodiscard]] bool inherit(const FoundPage& found);
    [[nodiscard]] bool findResources(const FoundPage& found, Ref<Value>& resources);
    [[nodiscard]] bool makeContentsDirect(const Page& page);
    [[nodiscard]] bool setUnlessSame(const Ref<Dictionary>& dictionary, std::string_view key,
                                     const Ref<Value>& value);

    Document& document_;
    Changes& changes_;
    PageTree tree_;
    Ref<ObjectRef> root_;
    std::vector<Ref<Value>> kids_;
    std::unordered_set<std::uint32_t> seen_;
    std::unordered_map<const Value*, Ref<ObjectRef>> resources_;
    std::unordered_map<std::uint32_t, std::uint64_t> sizes_; ///< of pages that are copied
    std::unordered_map<const Array*, Ref<Array>> contents_;  ///< that were made direct
    std::uint64_t room_ = 0;                                 ///< bytes that copies may yet take
};

} // namespace Libraries::Files::PDF::Tools
