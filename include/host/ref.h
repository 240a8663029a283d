#pragma once

/// @file
/// Counted objects and the handles that hold them.
///
/// Every object of the library lives on the heap, carries its own count and is passed around as
/// `Ref<T>`. Counting is thread-safe; the objects themselves are not, unless they say so.

#include <host/counter.h>
#include <host/error.h>
#include <host/export.h>
#include <host/heap.h>

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace Host {

/// A type that can be walked from `begin` to `end`, such as `TVector`.
template <class T>
concept Sequence = requires(T& object) {
    object.begin() == object.end();
    *object.begin();
};

/// Counted handle to a `T`; a null handle is the universal "no result".
///
/// Copying takes one more reference; moving hands the reference over and leaves the count alone. A
/// `Ref` converts to the `Ref` of a base class implicitly. `cast` converts to a derived class and
/// can fail.
template <class T>
class Ref {
public:
    /// A null handle.
    ///@{
    constexpr Ref() noexcept = default;
    constexpr Ref(std::nullptr_t) noexcept {}
    ///@}

    /// Takes a reference of its own to `object`, which may be null.
    explicit Ref(T* object) noexcept : object_(object) {
        if (object_ != nullptr) object_->incRef();
    }

    /// Takes one more reference to the object that `other` holds.
    Ref(const Ref& other) noexcept : Ref(other.object_) {}
    /// Takes the reference over; `other` is null afterwards.
    constexpr Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}

    /// Copies the handle of a derived class.
    template <class U>
    requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other)
    noexcept : Ref(static_cast<T*>(other.get())) {}

    /// Moves the handle of a derived class.
    template <class U>
    requires std::is_convertible_v<U*, T*> Ref(Ref<U>&& other)
    noexcept : object_(other.detach()) {}

    /// Gives the reference back; the last reference deletes the object.
    constexpr ~Ref() {
        if (object_ != nullptr) object_->decRef();
    }

    /// Copies or moves, and gives the reference to the former object back.
    Ref& operator=(Ref other) noexcept {
        swap(other);
        return *this;
    }

    /// Wraps a pointer whose reference the caller already owns: the count stays as it is.
    [[nodiscard]] static constexpr Ref adopt(T* object) noexcept {
        Ref result;
        result.object_ = object;
        return result;
    }

    /// Gives the owned reference to the caller and leaves this handle null.
    [[nodiscard]] T* detach() noexcept { return std::exchange(object_, nullptr); }

    /// Exchanges the objects of two handles; leaves the counts alone.
    void swap(Ref& other) noexcept { std::swap(object_, other.object_); }

    /// The object or null, without a reference: valid as long as some handle holds the object.
    [[nodiscard]] constexpr T* get() const noexcept { return object_; }
    /// The object and its members. The handle must not be null.
    ///@{
    constexpr T* operator->() const noexcept { return object_; }
    constexpr T& operator*() const& noexcept { return *object_; }
    ///@}

    /// The elements of a vector, in place: `for (const auto& key : dict->keys())`. The loop holds
    /// the handle. A null handle has no elements.
    ///@{
    [[nodiscard]] auto begin() const& noexcept requires Sequence<T> {
        using Iterator = decltype(object_->begin());
        return object_ != nullptr ? object_->begin() : Iterator();
    }
    [[nodiscard]] auto end() const& noexcept requires Sequence<T> {
        using Iterator = decltype(object_->end());
        return object_ != nullptr ? object_->end() : Iterator();
    }
    ///@}
    /// Not for a handle without a name: in `for (auto& key : *dict->keys())` the vector would be
    /// gone before the loop began. Walk the handle itself, or give it a name.
    ///@{
    T& operator*() const&& requires Sequence<T>
    = delete;
    void begin() const&& requires Sequence<T>
    = delete;
    void end() const&& requires Sequence<T>
    = delete;
    ///@}

    /// False for "no result".
    constexpr explicit operator bool() const noexcept { return object_ != nullptr; }

    /// Handles are the same when they hold the same object; values are compared with `equal`.
    template <class U>
    friend constexpr bool operator==(const Ref& left, const Ref<U>& right) noexcept {
        return left.object_ == right.get();
    }
    /// Whether the handle is null.
    friend constexpr bool operator==(const Ref& left, std::nullptr_t) noexcept {
        return left.object_ == nullptr;
    }

private:
    T* object_ = nullptr;
};

/// Base of the counted interfaces. The count starts at 0, the first `Ref` takes the first
/// reference, and the last one deletes the object. Make such objects by `make` or `new`, never as
/// local or static ones.
class FILES_PDF_EXPORT RefCount {
public:
    RefCount(const RefCount&) = delete;
    RefCount& operator=(const RefCount&) = delete;

    /// For `Ref`; applications rarely call these. Thread-safe; the last `decRef` deletes the
    /// object.
    ///@{
    void incRef() const noexcept { count_.increase(); }
    void decRef() const noexcept {
        if (count_.decrease()) delete this;
    }
    ///@}

    /// Counted objects live in the library's heap (`Heap`), those of an application's own classes
    /// too. `make` uses the form without exceptions, which gives null when memory is exhausted.
    ///@{
    static void* operator new(std::size_t size) {
        void* memory = Heap::alloc(size);
        if (memory == nullptr) throw std::bad_alloc();
        return memory;
    }
    static void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
        return Heap::alloc(size);
    }
    static void operator delete(void* memory, std::size_t size) noexcept {
        Heap::free(memory, size);
    }
    ///@}

protected:
    RefCount() noexcept = default;
    virtual ~RefCount();

    /// Takes a reference, and gives true, unless the last one is already gone.
    [[nodiscard]] bool tryIncRef() const noexcept { return count_.increaseUnlessGone(); }

private:
    mutable Counter count_;
};

/// Makes a counted `T`. Null, with `OutOfMemory` set, when memory is exhausted; the constructor
/// must not throw.
template <class T, class... Arguments>
[[nodiscard]] Ref<T> make(Arguments&&... arguments) noexcept {
    T* object = new (std::nothrow) T(std::forward<Arguments>(arguments)...);
    if (object == nullptr) Error::set(OutOfMemory);
    return Ref<T>(object);
}

/// The same object under another interface, or null when it does not have that interface.
template <class To, class From>
[[nodiscard]] Ref<To> cast(const Ref<From>& object) noexcept {
    return Ref<To>(dynamic_cast<To*>(object.get()));
}

} // namespace Host
