#include "state/object_obj.h"

#include "host/guard.h"
#include "packed/unpacker.h"

namespace Libraries::Files::PDF {

Ref<Value> ObjectObj::value() const noexcept {
    if (touched()) return value_;
    return Host::guarded([this] {
        value_ = unpack(packed_, store_->shared());
        store_ = nullptr;
        return value_;
    });
}

Value::Type ObjectObj::valueType() const noexcept {
    return touched() ? Object::valueType() : packed_.kind;
}

} // namespace Libraries::Files::PDF
