#include "host/slab_heap.h"

#include <host/heap.h>

#include <cstdlib>

// Sanitizers and the tests of exhausted memory must see every single piece.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(FILES_PDF_PLAIN_HEAP)
#define FILES_PDF_SLABS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define FILES_PDF_SLABS 0
#endif
#endif
#ifndef FILES_PDF_SLABS
#define FILES_PDF_SLABS 1
#endif

namespace Host {

#if FILES_PDF_SLABS

void* Heap::alloc(std::size_t size) noexcept {
    return SlabHeap::alloc(size);
}

void Heap::free(void* piece, std::size_t size) noexcept {
    SlabHeap::free(piece, size);
}

#else

void* Heap::alloc(std::size_t size) noexcept {
    return std::malloc(size);
}

void Heap::free(void* piece, std::size_t) noexcept {
    std::free(piece);
}

#endif

} // namespace Host
