#pragma once

#include <pdf/tools/letterheads.h>

#include <cstdint>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// A page of a document, and the page of the letterhead that goes onto it.
struct Assignment {
    std::uint64_t page;
    std::uint64_t sheet;
};

/// Which page gets what, in ascending order of the pages. Fails where the options are wrong.
[[nodiscard]] std::vector<Assignment> assign(const LetterheadOptions& options, std::uint64_t pages,
                                             std::uint64_t sheets);

} // namespace Libraries::Files::PDF::Tools
