#include "tools/references.h"

#include "tools/failure.h"

#include <pdf/errors.h>

#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr unsigned longestChain = 32;

bool isReference(const Ref<Value>& value) noexcept {
    return value && value->type() == Value::Type::ObjectRef;
}

} // namespace

bool isNothing(const Ref<Value>& value) noexcept {
    return !value || value->type() == Value::Type::Null;
}

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

Ref<Value> findEntry(const Ref<Dictionary>& dictionary, std::string_view key) {
    return quietly([&] { return dictionary ? dictionary->find(key) : nullptr; });
}

std::vector<Ref<Value>> elementsOf(const Ref<Array>& array) {
    std::vector<Ref<Value>> elements;
    for (std::uint64_t index = 0; array && index < array->size(); ++index)
        elements.push_back(array->get(index));
    return elements;
}

Ref<Value> entryOf(const Document& document, const Ref<Dictionary>& dictionary,
                   std::string_view key) {
    Ref<Value> entry = findEntry(dictionary, key);
    return isNothing(follow(document, entry)) ? nullptr : entry;
}

Ref<Value> followEntry(const Document& document, const Ref<Dictionary>& dictionary,
                       std::string_view key) {
    Ref<Value> value = follow(document, findEntry(dictionary, key));
    return isNothing(value) ? nullptr : value;
}

void requireHome(const Document& document, const Ref<Value>& value, std::string_view what) {
    if (!value || document.homeOf(*value) != Home::Elsewhere) return;
    fail(InvalidArgument, "The ", what, " belongs to another document");
}

bool isName(const Ref<Value>& value, std::string_view name) noexcept {
    const Ref<Name> held = Host::cast<Name>(value);
    const Ref<Host::String> text = held ? held->name() : nullptr;
    return text && text->equals(name);
}

} // namespace Libraries::Files::PDF::Tools
