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
        return begunStream(value, depth);
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

Ref<Value> Copies::begunStream(const Ref<Value>& value, unsigned depth) {
    const Ref<Stream> stream = Host::cast<Stream>(value);
    const Ref<Dictionary> entries = stream ? stream->dict() : nullptr;
    if (!entries) return fail(StreamDictionaryMissing, "The stream has no dictionary");
    const Ref<Host::MemoryStripe> data = rawBytes(from_, stream);
    if (!data) return nullptr;
    // First the entries that are not taken over as they stand: they find themselves there.
    const auto length = orThrow(Number::create(static_cast<std::int64_t>(data->size())));
    const Ref<Dictionary> copy = orThrow(Dictionary::create({{"Length", length}}));
    if (const Ref<Value> filter = followEntry(from_, *entries, "Filter")) {
        const Ref<Value> direct = begun(filter, depth + 1);
        if (!direct || !copy->set("Filter", direct)) return nullptr;
    }
    pending_.push_back({entries, copy, depth});
    return orThrow(Host::make<StreamObj>(copy, Ref<Interfaces::Stripe>(data)));
}

bool Copies::fill(const Pending& pending) {
    if (const Ref<Dictionary> source = Host::cast<Dictionary>(pending.source)) {
        return fillDictionary(*source, *Host::cast<Dictionary>(pending.copy), pending.depth);
    }
    const Ref<Array> source = Host::cast<Array>(pending.source);
    const Ref<Array> copy = Host::cast<Array>(pending.copy);
    for (std::uint64_t index = 0; source && index < source->size(); ++index) {
        const Ref<Value> element = begun(source->get(index), pending.depth + 1);
        if (!element || !copy->add(element)) return false;
    }
    return true;
}

bool Copies::fillDictionary(const Dictionary& source, Dictionary& copy, unsigned depth) {
    const auto keys = orThrow(source.keys());
    return std::ranges::all_of(*keys, [&](const Ref<Host::String>& key) {
        if (quietly([&] { return copy.find(key); })) return true;
        const Ref<Value> value = begun(quietly([&] { return source.find(key); }), depth + 1);
        return value && copy.set(key, value);
    });
}

bool Copies::isOfPageTree(const Ref<Value>& value) const {
    const Ref<Dictionary> entries = Host::cast<Dictionary>(value);
    if (!entries) return false;
    const Ref<Value> type = followEntry(from_, *entries, "Type");
    if (!type) return entryOf(from_, *entries, "Kids") != nullptr;
    return isName(type, "Page") || isName(type, "Pages") || isName(type, "Catalog");
}

} // namespace Libraries::Files::PDF::Tools
