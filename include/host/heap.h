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
    /// What a container asks an allocator for.
    using value_type = T;

    /// Nothing to set up: all allocators are the one heap.
    HeapAllocator() noexcept = default;
    /// The same heap for elements of another type.
    template <class U>
    HeapAllocator(const HeapAllocator<U>&) noexcept {} // NOLINT: allocators convert

    /// Memory for `count` elements. Throws `std::bad_alloc`, which the library does not let out of
    /// its own interface.
    [[nodiscard]] T* allocate(std::size_t count) {
        if (count > static_cast<std::size_t>(-1) / sizeof(T)) throw std::bad_alloc();
        void* memory = Heap::alloc(count * sizeof(T));
        if (memory == nullptr) throw std::bad_alloc();
        return static_cast<T*>(memory);
    }
    /// Gives back what `allocate` gave for the same `count`.
    void deallocate(T* memory, std::size_t count) noexcept {
        Heap::free(memory, count * sizeof(T));
    }
    /// Always: what one allocator gave any other may free.
    friend bool operator==(const HeapAllocator&, const HeapAllocator&) noexcept { return true; }
};

} // namespace Host
