#include <pdf/tools/editing.h>

namespace Libraries::Files::PDF::Tools {

Ref<ObjectRef> referenceTo(const Ref<Object>& object) noexcept {
    if (object) return ObjectRef::create(object->id(), object->generation());
    Host::Error::set(NullArgument);
    return nullptr;
}

Ref<ObjectRef> addObject(Document& document, Ref<Value> value) noexcept {
    const Ref<Object> object = document.addObject(std::move(value));
    if (!object) return nullptr;
    Ref<ObjectRef> ref = referenceTo(object);
    if (!ref) static_cast<void>(document.removeObject(object));
    return ref;
}

bool removeObject(Document& document, const Ref<ObjectRef>& ref) noexcept {
    const Ref<Object> object = document.getObject(ref);
    return object && document.removeObject(object);
}

} // namespace Libraries::Files::PDF::Tools
