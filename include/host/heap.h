#pragma once

/// @file
/// Where counted objects and their contents live.

#include <host/export.h>

#include <cstddef>
#include <new>

namespace Host {

/// Memory for many small things that are made together and go together, as the values of a document
/// do. Small pieces are cut one behind the other from a slab of the calling thread; a slab goes
/// back when its last piece does. Thread-safe; a piece may be freed by any thread.
class FILES_PDF_EXPORT Heap {
public:
    /// `size` bytes, aligned for any type of that size; null when memory is exhausted.
    [[nodiscard]] static void* alloc(std::size_t size) noexcept;
    /// Gives back a piece of just that size. Null is nothing to give back.
    static void free(void* piece, std::size_t size) noexcept;
};

/// The heap for standard containers.
template <class T>
struct HeapAllocator {
    using value_type = T;

    HeapAllocator() noexcept = default;
    template <class U>
    HeapAllocator(const HeapAllocator<U>&) noexcept {} // NOLINT: allocators convert

    [[nodiscard]] T* allocate(std::size_t count) {
        if (count > static_cast<std::size_t>(-1) / sizeof(T)) throw std::bad_alloc();
        void* memory = Heap::alloc(count * sizeof(T));
        if (memory == nullptr) throw std::bad_alloc();
        return static_cast<T*>(memory);
    }
    void deallocate(T* memory, std::size_t count) noexcept {
        Heap::free(memory, count * sizeof(T));
    }
    friend bool operator==(const HeapAllocator&, const HeapAllocator&) noexcept { return true; }
};

} // namespace Host
