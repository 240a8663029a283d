#pragma once

/// @file
/// Files made to take much memory for their size.

#include <cstddef>
#include <span>
#include <string>

namespace Benchmarks {

/// A file that opens, of about so many bytes.
struct HostileKind {
    const char* name; ///< what the file is, as the table of docs/robustness.md says it
    std::string (*generate)(std::size_t size);
};

[[nodiscard]] std::span<const HostileKind> hostileKinds();

} // namespace Benchmarks
