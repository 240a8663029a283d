#include "tools/letterheads/copies.h"

#include "tools/failure.h"
#include "tools/new_values.h"
#include "tools/references.h"
#include "tools/stored_data.h"

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr unsigned deepest = 512;

/// What a value takes in a file, without what is in it.
std::uint64_t sizeOf(const Ref<Value>& value) {
    constexpr std::uint64_t least = 8;
    const Ref<Name> name = Host::cast<Name>(value);
    if (name && name->name()) return least + name->name()->length();
    const Ref<String> string = Host::cast<String>(value);
    if (string && string->text()) return least + string->text()->length();
    return string && string->bytes() ? least + string->bytes()->size() : least;
}

Ref<Value> nothing() {
    return orThrow(Null::create());
}

} // namespace

Ref<ObjectRef> Copies::of(const Ref<ObjectRef>& ref) {
    const Ref<Value> copy = begunObject(ref);
    while (!pending_.empty()) {
        const Pending next = std::move(pending_.back());
        pending_.pop_back();
        fill(next);
    }
    return Host::cast<ObjectRef>(copy);
}

Ref<Value> Copies::begun(const Ref<Value>& value, unsigned depth) {
    if (depth > deepest) fail(StepFailed, "Values to be copied nest too deep");
    switch (value ? value->type() : Value::Type::Null) {
    case Value::Type::Null:
        return nothing();
    case Value::Type::ObjectRef:
        return begunObject(value);
    case Value::Type::Stream:
        return depth == 0 ? begunStream(value) : begunInner(value);
    case Value::Type::Dictionary:
        return pending_.emplace_back(Pending{value, newDictionary(), depth}).copy;
    case Value::Type::Array:
        return pending_.emplace_back(Pending{value, newArray(), depth}).copy;
    case Value::Type::Number: {
        // The number of an object may be some stream's Length, which changes; spelled ones are not.
        const Ref<Number> number = Host::cast<Number>(value);
        if (!number || number->spelling()) return value;
        return orThrow(Number::create(number->integer(), number->fraction()));
    }
    default:
        return value; // stays as it is for ever, and can be shared
    }
}

Ref<Value> Copies::begunObject(const Ref<Value>& ref) {
    const Ref<Object> object = objectBehind(from_, ref);
    const Ref<Value> value = object ? object->value() : nullptr;
    if (isNothing(value) || isOfPageTree(value)) return nothing();
    if (const auto known = copied_.find(object->id()); known != copied_.end()) return known->second;
    const Ref<Value> copy = atObject(object->id(), [&] { return begun(value, 0); });
    return copied_[object->id()] = changes_.add(copy);
}

/// A stream is an object, also where an application put it elsewhere.
Ref<Value> Copies::begunInner(const Ref<Value>& stream) {
    return changes_.add(begunStream(stream));
}

Ref<Value> Copies::begunStream(const Ref<Value>& value) {
    const Ref<Stream> stream = orThrow(Host::cast<Stream>(value));
    const Ref<Dictionary> entries = entriesOf(stream);
    const Ref<Host::MemoryStripe> data = rawBytes(from_, stream);
    afford(value, data->size());
    // First the entries that are not taken over as they stand: they find themselves there.
    const Ref<Dictionary> copy = newDictionary();
    // Whoever asks for decoded data looks at the entry itself.
    const Ref<Value> filter = followEntry(from_, entries, "Filter");
    if (isName(filter, "FlateDecode")) put(copy, "Filter", filter);
    pending_.push_back({entries, copy, 0});
    return newStream(copy, data);
}

void Copies::fill(const Pending& pending) {
    if (const Ref<Dictionary> source = Host::cast<Dictionary>(pending.source)) {
        fillDictionary(source, *Host::cast<Dictionary>(pending.copy), pending.depth);
    } else if (const Ref<Array> array = Host::cast<Array>(pending.source)) {
        fillArray(array, *Host::cast<Array>(pending.copy), pending.depth);
    }
}

void Copies::fillArray(const Ref<Array>& source, Array& copy, unsigned depth) {
    std::uint64_t size = 0;
    for (std::uint64_t index = 0; index < source->size(); ++index) {
        const Ref<Value> former = source->get(index);
        size += sizeOf(former);
        orFail(copy.add(begun(former, depth + 1)));
    }
    afford(source, size);
}

void Copies::fillDictionary(const Ref<Dictionary>& source, Dictionary& copy, unsigned depth) {
    const auto keys = orThrow(source->keys());
    std::uint64_t size = 0;
    for (const Ref<Host::String>& key : keys) {
        if (quietly([&] { return copy.find(key); })) continue;
        const Ref<Value> former = quietly([&] { return source->find(key); });
        size += key->length() + sizeOf(former);
        orFail(copy.set(key, begun(former, depth + 1)));
    }
    afford(source, size);
}

void Copies::afford(const Ref<Value>& container, std::uint64_t bytes) {
    if (read_.emplace(container.get(), container).second) budget_.read(bytes);
    if (!budget_.take(bytes))
        fail(OutOfRange, "More is to be copied than a sound letterhead needs");
}

bool Copies::isOfPageTree(const Ref<Value>& value) const {
    const Ref<Dictionary> entries = Host::cast<Dictionary>(value);
    const Ref<Value> type = followEntry(from_, entries, "Type");
    if (!type) return entryOf(from_, entries, "Kids") != nullptr;
    return isName(type, "Page") || isName(type, "Pages") || isName(type, "Catalog");
}

} // namespace Libraries::Files::PDF::Tools
