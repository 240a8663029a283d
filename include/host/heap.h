#pragma once

/// @file
/// Where counted objects and their contents live.

#include <host/export.h>

#include <cstddef>
#include <new>

namespace Host {

/// Memory for many small things that are made and freed together, such as the values of a document.
///
/// The heap cuts small pieces, one behind the other, from a slab of the calling thread. It frees a
/// slab with its last piece. Thread-safe; any thread may free a piece.
class FILES_PDF_EXPORT Heap {
public:
    /// `size` bytes, aligned for any type of that size; null when memory is exhausted.
    [[nodiscard]] static void* alloc(std::size_t size) noexcept;
    /// Frees a piece of just that size. Does nothing for null.
    static void free(void* piece, std::size_t size) noexcept;
};

/// The heap as an allocator of standard containers.
template <class T>
struct HeapAllocator {
    /// The type of the elements, under the name that containers look for.
    using value_type = T;

    /// All allocators stand for the one heap.
    HeapAllocator() noexcept = default;
    /// The same heap for elements of another type.
    template <class U>
    HeapAllocator(const HeapAllocator<U>&) noexcept {} // NOLINT: allocators convert

    /// Memory for `count` elements. Throws `std::bad_alloc`; the library's own operations catch it.
    [[nodiscard]] T* allocate(std::size_t count) {
        if (count > static_cast<std::size_t>(-1) / sizeof(T)) throw std::bad_alloc();
        void* memory = Heap::alloc(count * sizeof(T));
        if (memory == nullptr) throw std::bad_alloc();
        return static_cast<T*>(memory);
    }
    /// Frees memory that `allocate` gave for the same `count`.
    void deallocate(T* memory, std::size_t count) noexcept {
        Heap::free(memory, count * sizeof(T));
    }
    /// Always true: any allocator may free the memory of any other.
    friend bool operator==(const HeapAllocator&, const HeapAllocator&) noexcept { return true; }
};

} // namespace Host
