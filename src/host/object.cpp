#include <host/weak_ref.h>

namespace Host {

RefCount::~RefCount() = default;

Object* GcProxy::lockWeakRef() const noexcept {
    const std::lock_guard guard(mutex_);
    return object_ != nullptr && object_->tryIncRef() ? object_ : nullptr;
}

void GcProxy::objectGone() noexcept {
    const std::lock_guard guard(mutex_);
    object_ = nullptr;
}

Object::~Object() {
    GcProxy* proxy = proxy_.load(std::memory_order_acquire);
    if (proxy == nullptr) return;
    proxy->objectGone();
    proxy->decWeakRef();
}

Ref<GcProxy> Object::gcProxy() noexcept {
    GcProxy* known = proxy_.load(std::memory_order_acquire);
    if (known != nullptr) return Ref<GcProxy>(known);

    Ref<GcProxy> made = make<GcProxy>(this);
    if (!made) return nullptr;
    if (!proxy_.compare_exchange_strong(known, made.get(), std::memory_order_acq_rel)) {
        return Ref<GcProxy>(known);
    }
    made->incWeakRef();
    return made;
}

} // namespace Host
