#pragma once

/// @file
/// Weak references: they refer to an object and do not keep it alive.

#include <host/export.h>
#include <host/lock.h>
#include <host/ref.h>

namespace Host {

class Object;

/// Stands between an object and its weak references. It outlives the object and knows whether the
/// object still exists.
class FILES_PDF_EXPORT GcProxy final : public RefCount {
public:
    /// A proxy of `object`, which it does not keep alive. `Object::gcProxy` makes the one there is.
    explicit GcProxy(Object* object) noexcept : object_(object) {}

    /// Count the weak references. They keep the proxy alive, not the object.
    ///@{
    void incWeakRef() const noexcept { incRef(); }
    void decWeakRef() const noexcept { decRef(); }
    ///@}

    /// The object with a reference taken for the caller, or null when it is gone.
    [[nodiscard]] Object* lockWeakRef() const noexcept;

private:
    ~GcProxy() override = default;

    friend class Object;
    void objectGone() noexcept;

    mutable Lock lock_;
    Object* object_;
};

/// Counted object that can be referred to weakly and that carries a lock of its own.
class FILES_PDF_EXPORT Object : public RefCount {
public:
    /// The object's own lock, for the operations that say they hold it. Recursive.
    ///@{
    void lockRef() const { lock_.lock(); }
    void unlockRef() const { lock_.unlock(); }
    ///@}

    /// The proxy of this object, made at the first call; null when memory is exhausted.
    [[nodiscard]] Ref<GcProxy> gcProxy() noexcept;

protected:
    Object() noexcept = default;
    ~Object() override;

private:
    friend class GcProxy;

    mutable Lock lock_;
    GcProxy* proxy_ = nullptr; // threads may make it at the same time
};

/// Reference that does not keep its object alive. `T` derives from `Object`.
template <class T>
class WeakRef {
public:
    /// Refers to nothing: `lock` gives null.
    WeakRef() noexcept = default;
    /// Refers to `object`; to nothing for null and, with `OutOfMemory` set, when memory is
    /// exhausted.
    explicit WeakRef(T* object) noexcept
        : proxy_(object != nullptr ? object->gcProxy() : nullptr) {}

    /// The object, or null when it is gone.
    [[nodiscard]] Ref<T> lock() const noexcept {
        return Ref<T>::adopt(proxy_ ? static_cast<T*>(proxy_->lockWeakRef()) : nullptr);
    }

private:
    Ref<GcProxy> proxy_;
};

} // namespace Host
