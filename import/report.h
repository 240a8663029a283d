#pragma once

#include <cstdint>
#include <string_view>

namespace Libraries::Files::PDF::Import {

/// Ends an import. Never leaves the library: its code becomes that of the thread.
struct Failed {
    std::uint32_t code;
};

/// Logs an error, where there is something to say, and throws `Failed`.
[[noreturn]] void fail(std::uint32_t code, std::string_view message = {});

/// Logs what the document had to be changed for. A message that memory does not suffice for is
/// lost, as always.
void warn(std::string_view message) noexcept;

} // namespace Libraries::Files::PDF::Import
