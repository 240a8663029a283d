#pragma once

#include <cstddef>

namespace Host {

/// What `Heap` is where nobody has to see every single piece. It is always there, so that its tests
/// run under the sanitizers too: the address sanitizer takes a piece that was freed, and the gap
/// between two, for memory that must not be touched.
class SlabHeap {
public:
    [[nodiscard]] static void* alloc(std::size_t size) noexcept;
    static void free(void* piece, std::size_t size) noexcept;

    /// Slabs that were not given back, those included that threads still cut from.
    [[nodiscard]] static std::size_t liveSlabs() noexcept;
};

} // namespace Host
