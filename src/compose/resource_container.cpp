#include "compose/resource_container.h"

#include "values/array.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/scalars.h"

namespace Libraries::Files::PDF {

namespace {

using Text = Ref<Host::String>;

/// The value as a container, if it is one.
Container direct(const Ref<Value>& value) noexcept {
    return {Ref<Dictionary>(ofKind<Dictionary>(value)), Ref<Array>(ofKind<Array>(value))};
}

/// The container that an object holds. `noDictionary` and `noArray` begin the messages about a
/// value that has the number of such a kind, but not its class.
template <class Name>
Container held(const Object& object, Value::Type kind, const char* noDictionary,
               const char* noArray, const Name& name) {
    Container container;
    if (kind == Value::Type::Dictionary) {
        container.dict = object.valueAsDictionary();
        if (!container) refuse(noDictionary, name);
    } else {
        container.array = object.valueAsArray();
        if (!container) refuse(noArray, name);
    }
    return container;
}

bool isContainer(Value::Type kind) noexcept {
    return kind == Value::Type::Dictionary || kind == Value::Type::Array;
}

Ref<Object> resolve(const Ref<Value>& value, const Document& document) {
    Ref<Object> object = document.getObject(Ref<ObjectRef>(as<ObjectRef>(value)));
    if (!object) return refuse("Failed to resolve object reference ", value);
    return object;
}

} // namespace

Container targetContainer(const Text& category, const Ref<Value>& value, const Document& target) {
    if (Container container = direct(value)) return container;
    if (value->type() != Value::Type::ObjectRef) {
        refuse("Invalid type of resource entry ", category, " has invalid type ", value->type());
        return {};
    }
    const Ref<Object> object = resolve(value, target);
    if (!object) return {};
    const Value::Type kind = object->valueType();
    if (isContainer(kind)) {
        return held(*object, kind, "Failed to retrieve object dictionary of ",
                    "Failed to retrieve object array of ", category);
    }
    refuse("Object ", category, " has invalid type ", kind);
    return {};
}

Container addedContainer(const Text& category, const Ref<Value>& value, const Document& source) {
    if (Container container = direct(value)) return container;
    Value::Type kind = value->type();
    if (kind == Value::Type::ObjectRef) {
        const Ref<Object> object = resolve(value, source);
        if (!object) return {};
        kind = object->valueType();
        if (isContainer(kind)) {
            return held(*object, kind, "Failed to retrieve dictionary of object ",
                        "Failed to retrieve array of object ", object);
        }
    }
    refuse(category, " of resources to add has invalid type for resource: ", kind);
    return {};
}

} // namespace Libraries::Files::PDF
