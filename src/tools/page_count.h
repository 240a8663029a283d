#pragma once

#include <pdf/document.h>

#include <cstdint>
#include <optional>

namespace Libraries::Files::PDF::Tools {

/// How many kids of the page tree's root there are; nothing where the way to them is broken. Logs
/// nothing.
[[nodiscard]] std::optional<std::uint64_t> countPages(const Document& document) noexcept;

} // namespace Libraries::Files::PDF::Tools
