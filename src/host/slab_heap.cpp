#include "host/slab_heap.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define FILES_PDF_POISON 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FILES_PDF_POISON 1
#endif
#endif
#ifdef FILES_PDF_POISON
#include <sanitizer/asan_interface.h>
#endif

namespace Host {

namespace {

#ifdef FILES_PDF_POISON
constexpr std::size_t gap = 16;
void forbid(void* memory, std::size_t size) noexcept {
    __asan_poison_memory_region(memory, size);
}
void allow(void* memory, std::size_t size) noexcept {
    __asan_unpoison_memory_region(memory, size);
}
#else
constexpr std::size_t gap = 0;
void forbid(void*, std::size_t) noexcept {}
void allow(void*, std::size_t) noexcept {}
#endif

/// A slab begins at a multiple of its size, so that the address of a piece leads to its slab.
constexpr std::size_t slabSize = 65536;
constexpr std::size_t largestPiece = 2048;

/// Head of a slab. `open` stands for the pieces that its thread may still cut: a slab is not freed
/// before the thread has closed it.
struct Slab {
    static constexpr std::uint32_t open = 1U << 30;

    std::atomic<std::uint32_t> live{open};
};

constexpr std::size_t firstPiece = 16;
static_assert(sizeof(Slab) <= firstPiece);

/// The slab that a thread cuts from. It has no destructor, because the thread may use it to its
/// very end. `Closing` closes the slab.
struct Cutter {
    Slab* slab;
    std::size_t used;
    std::uint32_t cut;
};

std::atomic<std::size_t> slabs{0};

void drop(Slab* slab, std::uint32_t count) noexcept {
    if (slab->live.fetch_sub(count, std::memory_order_acq_rel) != count) return;
    slab->~Slab();
    allow(slab, slabSize);
    std::free(slab);
    slabs.fetch_sub(1, std::memory_order_relaxed);
}

void close(Cutter& cutter) noexcept {
    if (cutter.slab != nullptr) drop(cutter.slab, Slab::open - cutter.cut);
    cutter = {nullptr, slabSize, 0};
}

bool openSlab(Cutter& cutter) noexcept {
    close(cutter);
    void* memory = std::aligned_alloc(slabSize, slabSize);
    if (memory == nullptr) return false;
    slabs.fetch_add(1, std::memory_order_relaxed);
    cutter = {new (memory) Slab, firstPiece, 0};
    forbid(static_cast<unsigned char*>(memory) + firstPiece, slabSize - firstPiece);
    return true;
}

struct Closing {
    Cutter& cutter;
    ~Closing() { close(cutter); }
};

constinit thread_local Cutter threadCutter{nullptr, slabSize, 0};

[[gnu::noinline]] bool refill(Cutter& cutter) noexcept {
    thread_local Closing closing{cutter};
    return openSlab(closing.cutter);
}

/// The alignment that a type of this size may need.
std::size_t place(std::size_t used, std::size_t size) noexcept {
    return size % 16 == 0 ? (used + 15) & ~std::size_t{15} : used;
}

} // namespace

void* SlabHeap::alloc(std::size_t size) noexcept {
    size = (size + 7) & ~std::size_t{7};
    if (size > largestPiece || size == 0) return std::malloc(size);
    Cutter& cutter = threadCutter;
    std::size_t at = place(cutter.used, size);
    if (at + size > slabSize) {
        if (!refill(cutter)) return nullptr;
        at = place(cutter.used, size);
    }
    cutter.used = at + size + gap;
    ++cutter.cut;
    unsigned char* const piece = reinterpret_cast<unsigned char*>(cutter.slab) + at;
    allow(piece, size);
    return piece;
}

void SlabHeap::free(void* piece, std::size_t size) noexcept {
    size = (size + 7) & ~std::size_t{7};
    if (size > largestPiece || size == 0) return std::free(piece);
    if (piece == nullptr) return;
    forbid(piece, size);
    const std::size_t offset = reinterpret_cast<std::uintptr_t>(piece) % slabSize;
    drop(reinterpret_cast<Slab*>(static_cast<unsigned char*>(piece) - offset), 1);
}

std::size_t SlabHeap::liveSlabs() noexcept {
    return slabs.load(std::memory_order_relaxed);
}

} // namespace Host
