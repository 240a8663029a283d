#include "tools/letterheads/letterhead_plan.h"

#include "tools/failure.h"

#include <algorithm>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Marks the pages that are chosen; false with the code set.
bool choose(const std::vector<PageRange>& ranges, std::vector<bool>& chosen) {
    for (const auto& [first, last] : ranges) {
        if (first > last) {
            return fail(InvalidArgument, "Pages end before they begin: ", first, " to ", last);
        }
        if (last >= chosen.size()) return fail(OutOfRange, "There is no page ", last);
        std::fill(chosen.begin() + static_cast<std::ptrdiff_t>(first),
                  chosen.begin() + static_cast<std::ptrdiff_t>(last) + 1, true);
    }
    return true;
}

} // namespace

std::optional<std::vector<Assignment>> assign(const LetterheadOptions& options, std::uint64_t pages,
                                              std::uint64_t sheets) {
    std::vector<bool> chosen(pages, options.ranges.empty());
    if (!choose(options.ranges, chosen)) return std::nullopt;
    if (sheets == 0) {
        fail(ForeignPageEmpty, "The letterhead has no page");
        return std::nullopt;
    }
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
