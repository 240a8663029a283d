#pragma once

#include "tools/changes.h"
#include "tools/pages/content_budget.h"
#include "tools/pages/state_balance.h"

#include <pdf/tools/pages.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// The streams that a page's contents consist of, by their objects, in order. What is no stream is
/// left out: it draws nothing.
[[nodiscard]] std::vector<Ref<Object>> contentStreams(const Document& document,
                                                      const Ref<Dictionary>& page);

/// Fails unless the page's Contents is what it can be: absent, a reference to a stream, or an
/// array, which holds no stream itself.
void requireSoundContents(const Document& document, const Page& page);

/// Draws before and behind what pages draw. What is drawn behind finds the graphics state in which
/// the page began (ISO 32000-1, 8.4.2). Pages share what is made for it, equal drawings too.
class PageContents {
public:
    explicit PageContents(Changes& changes) noexcept : changes_(changes) {}

    /// Has the page begin with these operators, which leave the graphics state as it was.
    void drawBeneath(const Ref<Dictionary>& page, const std::string& operators);

    /// Has the page end with them: between what saves the state in front of the page's streams, and
    /// what takes back all that these leave open. What takes back more than was saved, which most
    /// renderers pass over, is blanked: to save as many states before would have it undo what the
    /// page has set up until then. Where data cannot be decoded, or takes too much, some states are
    /// saved in reserve, for as many too many or too few.
    void drawAbove(const Ref<Dictionary>& page, const std::string& operators);

private:
    [[nodiscard]] Ref<ObjectRef> drawing(const std::string& operators);
    [[nodiscard]] std::vector<Ref<Value>> closed(const std::vector<Ref<Object>>& streams,
                                                 const Ref<Value>& drawing);
    /// Nothing where the data cannot be looked through.
    [[nodiscard]] const std::optional<StateBalance>& balanceOf(const Ref<Object>& object);
    [[nodiscard]] std::optional<StateBalance> lookedThrough(const Ref<Object>& object);
    [[nodiscard]] Ref<ObjectRef> mended(const Ref<Object>& object, std::uint64_t open);
    [[nodiscard]] Ref<ObjectRef> restoring(std::uint64_t open);
    [[nodiscard]] Ref<ObjectRef> added(std::string_view operators);

    Changes& changes_;
    ContentBudget budget_;
    Ref<ObjectRef> opening_, saving_;
    std::map<std::string, Ref<ObjectRef>> drawings_;
    std::unordered_map<std::uint64_t, Ref<ObjectRef>> restorings_;
    std::unordered_map<std::uint32_t, std::optional<StateBalance>> balances_;
    /// By their former objects, and the states that are open when they begin.
    std::map<std::pair<std::uint32_t, std::uint64_t>, Ref<ObjectRef>> mended_;
};

} // namespace Libraries::Files::PDF::Tools
