#pragma once

#include <cstdint>

namespace Support {

/// Counts the allocations of the whole program, and makes chosen ones fail: for one thread.
class FailingHeap final {
public:
    /// Which allocations fail: the chosen one, or that and all behind it.
    enum class Fault { Once, FromThenOn };
    /// From now on the allocation `number`, counted from 1, fails; none for 0.
    static void failAt(std::uint64_t number, Fault fault) noexcept;
    /// Lets all allocations succeed again, and says whether any has failed.
    static bool stop() noexcept;
    /// Pieces that are allocated and not freed.
    [[nodiscard]] static std::int64_t live() noexcept;
};

} // namespace Support
