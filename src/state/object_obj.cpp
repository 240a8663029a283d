#include "state/object_obj.h"

#include "host/guard.h"
#include "packed/unpacker.h"
#include "values/array.h"
#include "values/dictionary.h"

namespace Libraries::Files::PDF {

namespace {

/// The place where a container of the library's own keeps its home; a stream keeps it in its
/// dictionary. Null for other values.
HomeNumber* placeOfHome(Value* value) noexcept {
    if (auto* const stream = own<StreamObj>(value)) return placeOfHome(stream->dict().get());
    if (auto* const entries = own<DictionaryObj>(value)) return &entries->home;
    auto* const elements = own<ArrayObj>(value);
    return elements != nullptr ? &elements->home : nullptr;
}

} // namespace

HomeNumber homeOf(const Value& value) noexcept {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): it is only read
    const HomeNumber* const place = placeOfHome(const_cast<Value*>(&value));
    return place != nullptr ? *place : HomeNumber();
}

void settle(const Ref<Value>& value, HomeNumber home) noexcept {
    HomeNumber* const place = placeOfHome(value.get());
    if (place != nullptr && !place->isKnown()) *place = home;
}

void unsettle(const Ref<Value>& value, HomeNumber home) noexcept {
    HomeNumber* const place = placeOfHome(value.get());
    if (place != nullptr && *place == home) *place = HomeNumber();
}

Ref<Value> ObjectObj::value() const noexcept {
    if (touched()) return value_;
    return Host::guarded([this] {
        value_ = unpack(packed_, store_->shared());
        settle(value_, store_->home());
        store_ = nullptr;
        return value_;
    });
}

Value::Type ObjectObj::valueType() const noexcept {
    return touched() ? Object::valueType() : packed_.kind;
}

} // namespace Libraries::Files::PDF
