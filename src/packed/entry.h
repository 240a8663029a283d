#pragma once

#include <string_view>

namespace Libraries::Files::PDF {

/// The packed spelling of the value under a key of a packed dictionary; empty where there is none.
/// Takes no memory.
[[nodiscard]] std::string_view findPackedEntry(std::string_view dictionary,
                                               std::string_view key) noexcept;

} // namespace Libraries::Files::PDF
