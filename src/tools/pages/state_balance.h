#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

/// What a content stream does to the stack of graphics states (ISO 32000-1, 8.4.2).
struct StateBalance {
    std::uint64_t restored = 0; ///< states that it restores and did not save
    std::uint64_t saved = 0;    ///< states that it saves behind those, and does not restore
};

/// Of decoded data, whatever it is.
[[nodiscard]] StateBalance stateBalanceOf(std::string_view content) noexcept;

/// Blanks what restores states that nobody saved, where so many are `open` when the content begins.
/// Renderers pass over it.
void dropSurplus(std::string& content, std::uint64_t open) noexcept;

} // namespace Libraries::Files::PDF::Tools
