#include "tools/letterheads/copies.h"

#include "tools/failure.h"
#include "tools/references.h"
#include "tools/stored_data.h"

#include <pdf/tools/editing.h>

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr unsigned deepest = 512;
constexpr std::uint64_t timesAsMuch = 64;

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
    while (copy && !pending_.empty()) {
        const Pending next = std::move(pending_.back());
        pending_.pop_back();
        if (!fill(next)) return nullptr;
    }
    return Host::cast<ObjectRef>(copy);
}

Ref<Value> Copies::begun(const Ref<Value>& value, unsigned depth) {
    if (depth > deepest) return fail(StepFailed, "Values to be copied nest too deep");
    switch (value ? value->type() : Value::Type::Null) {
    case Value::Type::Null:
        return nothing();
    case Value::Type::ObjectRef:
        return begunObject(value);
    case Value::Type::Stream:
        return depth == 0 ? begunStream(value) : begunInner(value);
    case Value::Type::Dictionary: {
        Ref<Value> copy = orThrow(Dictionary::create());
        pending_.push_back({value, copy, depth});
        return copy;
    }
    case Value::Type::Array: {
        Ref<Value> copy = orThrow(Array::create({}));
        pending_.push_back({value, copy, depth});
        return copy;
    }
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
    if (!value || value->type() == Value::Type::Null || isOfPageTree(value)) return nothing();
    if (const auto known = copied_.find(object->id()); known != copied_.end()) return known->second;
    const Ref<Value> copy = begun(value, 0);
    const Ref<Object> added = copy ? changes_.add(copy) : nullptr;
    if (!added) return nullptr;
    return copied_[object->id()] = orThrow(referenceTo(added));
}

/// A stream is an object, also where an application put it elsewhere.
Ref<Value> Copies::begunInner(const Ref<Value>& stream) {
    const Ref<Value> copy = begunStream(stream);
    const Ref<Object> added = copy ? changes_.add(copy) : nullptr;
    return added ? orThrow(referenceTo(added)) : nullptr;
}

Ref<Value> Copies::begunStream(const Ref<Value>& value) {
    const Ref<Stream> stream = Host::cast<Stream>(value);
    const Ref<Dictionary> entries = stream ? stream->dict() : nullptr;
    if (!entries) return fail(StreamDictionaryMissing, "The stream has no dictionary");
    const Ref<Host::MemoryStripe> data = rawBytes(from_, stream);
    if (!data || !afford(value, data->size())) return nullptr;
    // First the entries that are not taken over as they stand: they find themselves there.
    const auto length = orThrow(Number::create(static_cast<std::int64_t>(data->size())));
    const Ref<Dictionary> copy = orThrow(Dictionary::create({{"Length", length}}));
    // Whoever asks for decoded data looks at the entry itself.
    const Ref<Value> filter = followEntry(from_, *entries, "Filter");
    if (isName(filter, "FlateDecode") && !copy->set("Filter", filter)) throw std::bad_alloc();
    pending_.push_back({entries, copy, 0});
    return orThrow(Host::make<StreamObj>(copy, Ref<Interfaces::Stripe>(data)));
}

bool Copies::fill(const Pending& pending) {
    if (const Ref<Dictionary> source = Host::cast<Dictionary>(pending.source)) {
        return fillDictionary(source, *Host::cast<Dictionary>(pending.copy), pending.depth);
    }
    const Ref<Array> source = Host::cast<Array>(pending.source);
    const Ref<Array> copy = Host::cast<Array>(pending.copy);
    std::uint64_t size = 0;
    for (std::uint64_t index = 0; source && index < source->size(); ++index) {
        const Ref<Value> former = source->get(index);
        size += sizeOf(former);
        const Ref<Value> element = begun(former, pending.depth + 1);
        if (!element || !copy->add(element)) return false;
    }
    return afford(pending.source, size);
}

bool Copies::fillDictionary(const Ref<Dictionary>& source, Dictionary& copy, unsigned depth) {
    const auto keys = orThrow(source->keys());
    std::uint64_t size = 0;
    const bool filled = std::ranges::all_of(*keys, [&](const Ref<Host::String>& key) {
        if (quietly([&] { return copy.find(key); })) return true;
        const Ref<Value> former = quietly([&] { return source->find(key); });
        size += key->length() + sizeOf(former);
        const Ref<Value> value = begun(former, depth + 1);
        return value && copy.set(key, value);
    });
    return filled && afford(source, size);
}

bool Copies::afford(const Ref<Value>& container, std::uint64_t bytes) {
    constexpr std::uint64_t most = UINT64_MAX / timesAsMuch / 2; // more than any memory has
    bytes = std::min(bytes, most);
    if (read_.emplace(container.get(), container).second) left_ += timesAsMuch * bytes;
    if (bytes > left_) {
        return fail(OutOfRange, "More is to be copied than a sound letterhead needs");
    }
    left_ -= bytes;
    return true;
}

bool Copies::isOfPageTree(const Ref<Value>& value) const {
    const Ref<Dictionary> entries = Host::cast<Dictionary>(value);
    if (!entries) return false;
    const Ref<Value> type = followEntry(from_, *entries, "Type");
    if (!type) return entryOf(from_, *entries, "Kids") != nullptr;
    return isName(type, "Page") || isName(type, "Pages") || isName(type, "Catalog");
}

} // namespace Libraries::Files::PDF::Tools
