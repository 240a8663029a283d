#pragma once

#include "tools/changes.h"
#include "tools/pages/content_budget.h"
#include "tools/pages/state_balance.h"

#include <pdf/tools/pages.h>

#include <cstdint>
#include <map>
#include <optional>
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
    /// What is to follow it: the streams that the page has, what takes back all that the first
    /// saved and they leave open, and what is drawn then. What takes back more than was saved,
    /// which most renderers pass over, is blanked: to save as many states before would have it undo
    /// what the page has set up until then. Where data cannot be decoded, or takes too much, some
    /// states are saved in reserve, for as many too many or too few.
    [[nodiscard]] std::vector<Ref<Value>> covered(const Dictionary& page,
                                                  const Ref<Value>& drawing);

private:
    /// Nothing where the data cannot be looked through.
    [[nodiscard]] const std::optional<StateBalance>& balanceOf(const Ref<Object>& object);
    [[nodiscard]] Ref<ObjectRef> saving();
    [[nodiscard]] Ref<ObjectRef> mended(const Ref<Object>& object, std::uint64_t open);
    [[nodiscard]] Ref<ObjectRef> restoring(std::uint64_t open);
    [[nodiscard]] Ref<ObjectRef> added(std::string_view operators);

    Document& document_;
    Changes& changes_;
    ContentBudget budget_;
    Ref<ObjectRef> opening_, saving_;
    std::unordered_map<std::uint64_t, Ref<ObjectRef>> restorings_;
    std::unordered_map<std::uint32_t, std::optional<StateBalance>> balances_;
    /// By their former objects, and the states that are open when they begin.
    std::map<std::pair<std::uint32_t, std::uint64_t>, Ref<ObjectRef>> mended_;
};

} // namespace Libraries::Files::PDF::Tools
