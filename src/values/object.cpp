#include "values/array.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/look_up.h"
#include "values/scalars.h"
#include "values/typed_access.h"

#include <pdf/values.h>

namespace Libraries::Files::PDF {

namespace {

Ref<Value> requireValue(const Object& object) noexcept {
    LookedUp found = lookUpValue(object);
    if (found.isExhausted()) return fail(OutOfMemory);
    if (!found.value) return fail(NoValue, "Object has no valid value");
    return std::move(found.value);
}

} // namespace

Ref<Host::String> Object::asText() const noexcept {
    return identityText(id(), generation());
}

Value::Type Object::valueType() const noexcept {
    const Ref<Value> value = requireValue(*this);
    return value ? value->type() : Value::Type::Invalid;
}

Ref<Dictionary> Object::valueAsDictionary() const noexcept {
    const Ref<Value> value = requireValue(*this);
    if (!value) return nullptr;
    return expect<Dictionary>(value, "Failed to cast value to Dictionary");
}

// The message of a failed cast says "dictionary" here too.
Ref<Array> Object::valueAsArray() const noexcept {
    const Ref<Value> value = requireValue(*this);
    if (!value) return nullptr;
    return expect<Array>(value, "Failed to cast value to Dictionary");
}

Ref<Stream> Object::valueAsStream() const noexcept {
    const Ref<Value> value = requireValue(*this);
    if (!value) return nullptr;
    if (value->type() != Value::Type::Stream) {
        return fail(UnexpectedKind, "Unexpected type of value; expected = ", Value::Type::Stream,
                    ", got = ", value->type());
    }
    Stream* stream = as<Stream>(value);
    if (stream == nullptr) return fail(UnexpectedKind, "Failed to cast value to Stream");
    return Ref<Stream>(stream);
}

} // namespace Libraries::Files::PDF
