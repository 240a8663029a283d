#pragma once

#include "tools/changes.h"
#include "tools/pages/content_budget.h"
#include "tools/pages/state_balance.h"

#include <pdf/tools/pages.h>

#include <cstdint>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// The streams that a page's contents consist of, by their objects, in order. What is no stream is
/// left out: it draws nothing. Throws `std::bad_alloc`.
[[nodiscard]] std::vector<Ref<Object>> contentStreams(const Document& document,
                                                      const Dictionary& page);

/// Whether the page's Contents is what it can be: absent, a reference to a stream, or an array,
/// which holds no stream itself. False with `PageInvalid` set.
[[nodiscard]] bool hasSoundContents(const Document& document, const Page& page);

/// Pages' contents such that what is drawn behind them finds the graphics state in which the page
/// began (ISO 32000-1, 8.4.2). Pages share what is made for it. Null, or nothing, with the code set
/// on failure. Throws `std::bad_alloc`.
class PageContents {
public:
    PageContents(Document& document, Changes& changes) noexcept
        : document_(document), changes_(changes) {}

    /// Saves the state: the first stream of all.
    [[nodiscard]] Ref<ObjectRef> opening();
    /// What is to follow it: the streams that the page has, and one that takes back what the first
    /// saved and what they leave open. What takes back more than was saved, which renderers pass
    /// over, is blanked. Data that cannot be decoded, or takes too much, counts as balanced.
    [[nodiscard]] std::vector<Ref<Value>> closed(const Dictionary& page);

private:
    [[nodiscard]] const StateBalance& balanceOf(const Ref<Object>& object);
    [[nodiscard]] Ref<ObjectRef> mended(const Ref<Object>& object, std::uint64_t open);
    [[nodiscard]] Ref<ObjectRef> closing(std::uint64_t open);
    [[nodiscard]] Ref<ObjectRef> added(std::string_view operators);

    Document& document_;
    Changes& changes_;
    ContentBudget budget_;
    Ref<ObjectRef> opening_;
    std::unordered_map<std::uint64_t, Ref<ObjectRef>> closings_;
    std::unordered_map<std::uint32_t, StateBalance> balances_;
    /// By their former objects, and the states that are open when they begin.
    std::map<std::pair<std::uint32_t, std::uint64_t>, Ref<ObjectRef>> mended_;
};

} // namespace Libraries::Files::PDF::Tools
