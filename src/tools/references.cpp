#include "tools/references.h"

#include "tools/failure.h"

#include <pdf/tools/editing.h>

#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr unsigned longestChain = 32;

bool isReference(const Ref<Value>& value) noexcept {
    return value && value->type() == Value::Type::ObjectRef;
}

} // namespace

Ref<Value> follow(const Document& document, Ref<Value> value) {
    if (!isReference(value)) return value;
    const Ref<Object> object = objectBehind(document, std::move(value));
    return object ? object->value() : nullptr;
}

Ref<Object> objectBehind(const Document& document, Ref<Value> value) {
    Ref<Object> object;
    for (unsigned step = 0; isReference(value); ++step) {
        const Ref<ObjectRef> ref = Host::cast<ObjectRef>(value);
        if (!ref || step == longestChain) return nullptr;
        object = quietly([&] { return document.getObject(ref); });
        value = object ? quietly([&] { return object->value(); }) : nullptr;
    }
    return value ? object : nullptr;
}

Ref<Value> entryOf(const Document& document, const Dictionary& dictionary, std::string_view key) {
    Ref<Value> entry = quietly([&] { return dictionary.find(key); });
    const Ref<Value> value = follow(document, entry);
    if (!value || value->type() == Value::Type::Null) return nullptr;
    return entry;
}

Ref<Value> followEntry(const Document& document, const Dictionary& dictionary,
                       std::string_view key) {
    return follow(document, entryOf(document, dictionary, key));
}

bool canBeUsed(const Document& document, const Ref<Value>& value) noexcept {
    if (!value || document.homeOf(*value) != Home::Elsewhere) return true;
    return fail(InvalidArgument, "A value is that of another document's object");
}

bool isName(const Ref<Value>& value, std::string_view name) noexcept {
    const Ref<Name> held = Host::cast<Name>(value);
    const Ref<Host::String> text = held ? held->name() : nullptr;
    return text && text->equals(name);
}

Ref<Value> resolve(const Document& document, Ref<Value> value) noexcept {
    if (!value) return nullptr;
    return guarded([&]() -> Ref<Value> {
        Ref<Value> found = follow(document, value);
        if (!found) return fail(ReferenceNotResolved, "A reference leads nowhere");
        return found;
    });
}

} // namespace Libraries::Files::PDF::Tools
