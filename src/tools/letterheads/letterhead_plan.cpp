#include "tools/letterheads/letterhead_plan.h"

#include "tools/failure.h"
#include "tools/pages/page_tree.h"

#include <algorithm>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Marks the pages that are chosen.
void choose(const std::vector<PageRange>& ranges, std::vector<bool>& chosen) {
    for (const auto& [first, last] : ranges) {
        if (first > last) {
            fail(InvalidArgument, "Pages end before they begin: ", first, " to ", last);
        }
        if (last >= chosen.size()) failWithoutPage(last, chosen.size());
        std::fill(chosen.begin() + static_cast<std::ptrdiff_t>(first),
                  chosen.begin() + static_cast<std::ptrdiff_t>(last) + 1, true);
    }
}

} // namespace

std::vector<Assignment> assign(const LetterheadOptions& options, std::uint64_t pages,
                               std::uint64_t sheets) {
    if (options.mode > LetterheadPages::PageByPageThenLast) {
        fail(InvalidArgument, "There is no mode ", static_cast<std::uint64_t>(options.mode));
    }
    std::vector<bool> chosen(pages, options.ranges.empty());
    choose(options.ranges, chosen);
    if (sheets == 0) fail(ForeignPageEmpty, "The letterhead has no page");
    const bool firstOnly = options.mode == LetterheadPages::FirstOnFirst ||
                           options.mode == LetterheadPages::FirstOnAll;
    const std::uint64_t most = options.mode == LetterheadPages::FirstOnFirst ? 1
                               : options.mode == LetterheadPages::PageByPage ? sheets
                                                                             : pages;
    std::vector<Assignment> assignments;
    for (std::uint64_t page = 0; page < pages && assignments.size() < most; ++page) {
        if (!chosen[page]) continue;
        const std::uint64_t sheet =
            firstOnly ? 0 : std::min<std::uint64_t>(assignments.size(), sheets - 1);
        assignments.push_back({page, sheet});
    }
    return assignments;
}

} // namespace Libraries::Files::PDF::Tools
