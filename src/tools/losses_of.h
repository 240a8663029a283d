#pragma once

#include <pdf/tools/losses.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// What `losses` gives. Throws `std::bad_alloc`.
[[nodiscard]] std::vector<LossFound> lossesOf(const Document& document);

/// How many kids of the page tree's root there are; nothing where the way to them is broken. Throws
/// `std::bad_alloc`.
[[nodiscard]] std::optional<std::uint64_t> countKids(const Document& document);

} // namespace Libraries::Files::PDF::Tools
