#pragma once

/// @file
/// Containers in the library's interfaces: counted arrays and vectors.

#include <host/error.h>
#include <host/heap.h>
#include <host/ref.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace Host {

/// Counted vector. It is a `std::vector` in all other respects.
template <class T>
class TVector final : public RefCount, public std::vector<T> {
public:
    /// An empty vector.
    TVector() = default;
    /// Takes the elements over without copying them.
    explicit TVector(std::vector<T> items) noexcept : std::vector<T>(std::move(items)) {}
};

/// Vector that an operation returns by value.
template <class T>
using StackVector = std::vector<T>;

/// Counted, immutable array in one piece of memory.
template <class T>
class TConstArray final {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    /// A copy of `items`; null with `OutOfMemory` set when memory is exhausted.
    [[nodiscard]] static Ref<TConstArray> create(std::span<const T> items) noexcept {
        if (items.size() > (SIZE_MAX - sizeof(TConstArray)) / sizeof(T)) return outOfMemory();
        void* memory = Heap::alloc(sizeof(TConstArray) + items.size_bytes());
        if (memory == nullptr) return outOfMemory();
        auto* array = new (memory) TConstArray(items.size());
        if (!items.empty()) std::memcpy(array->begin(), items.data(), items.size_bytes());
        return Ref<TConstArray>(array);
    }

    TConstArray(const TConstArray&) = delete;
    TConstArray& operator=(const TConstArray&) = delete;

    /// Number of elements.
    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    /// The first element; valid as long as the array, as `span` is.
    [[nodiscard]] const T* data() const noexcept { return reinterpret_cast<const T*>(this + 1); }
    /// All elements in place.
    [[nodiscard]] std::span<const T> span() const noexcept { return {data(), size_}; }
    /// The element at an index, which must be below `size()`.
    const T& operator[](std::size_t index) const noexcept { return data()[index]; }

    /// For `Ref`. Thread-safe; the last `decRef` frees the array.
    ///@{
    void incRef() const noexcept { count_.increase(); }
    void decRef() const noexcept {
        if (!count_.decrease()) return;
        const std::size_t bytes = sizeof(TConstArray) + size_ * sizeof(T);
        this->~TConstArray();
        Heap::free(const_cast<TConstArray*>(this), bytes);
    }
    ///@}

private:
    explicit TConstArray(std::size_t size) noexcept : size_(size) {}
    ~TConstArray() = default;

    static Ref<TConstArray> outOfMemory() noexcept {
        Error::set(OutOfMemory);
        return nullptr;
    }
    [[nodiscard]] T* begin() noexcept { return reinterpret_cast<T*>(this + 1); }

    mutable Counter count_;
    std::size_t size_;
};

} // namespace Host
