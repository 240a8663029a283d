#include <host/weak_ref.h>

#include <atomic>
#include <mutex>

namespace Host {

RefCount::~RefCount() = default;

Object* GcProxy::lockWeakRef() const noexcept {
    const std::lock_guard guard(lock_);
    return object_ != nullptr && object_->tryIncRef() ? object_ : nullptr;
}

void GcProxy::objectGone() noexcept {
    const std::lock_guard guard(lock_);
    object_ = nullptr;
}

Object::~Object() {
    GcProxy* const proxy = std::atomic_ref(proxy_).load(std::memory_order_acquire);
    if (proxy == nullptr) return;
    proxy->objectGone();
    proxy->decWeakRef();
}

Ref<GcProxy> Object::gcProxy() noexcept {
    const std::atomic_ref proxy(proxy_);
    GcProxy* known = proxy.load(std::memory_order_acquire);
    if (known != nullptr) return Ref<GcProxy>(known);

    Ref<GcProxy> made = make<GcProxy>(this);
    if (!made) return nullptr;
    if (!proxy.compare_exchange_strong(known, made.get(), std::memory_order_acq_rel)) {
        return Ref<GcProxy>(known);
    }
    made->incWeakRef();
    return made;
}

} // namespace Host
