#pragma once

#include <cstddef>

namespace Host {

/// The heap of slabs behind `Heap`. `Heap` does without it in builds with sanitizers, which must
/// see every single piece. It is compiled in these builds too, so that its tests run there: freed
/// pieces and gaps between pieces are then poisoned for the address sanitizer.
class SlabHeap {
public:
    [[nodiscard]] static void* alloc(std::size_t size) noexcept;
    static void free(void* piece, std::size_t size) noexcept;

    /// Number of slabs that are in use, those included that threads still cut from.
    [[nodiscard]] static std::size_t liveSlabs() noexcept;
};

} // namespace Host
