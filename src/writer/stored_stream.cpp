#include "writer/stored_stream.h"

#include "values/failure.h"

#include <host/string.h>

#include <algorithm>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

std::uint32_t StoredStream::id() const noexcept {
    if (id_) return *id_;
    const auto& slots = state_.objects.slots();
    const auto holder = std::ranges::find_if(slots, [&](const ObjectTable::Slot& slot) {
        return slot.object->value().get() == &stream_;
    });
    return holder == slots.end() ? 0 : holder->id;
}

Ref<Dictionary> StoredStream::dict() const noexcept {
    Ref<Dictionary> dict = stream_.dict();
    if (!dict) {
        return fail(StreamDictionaryMissing, "Failed to retrieve dictionary of stream ", id());
    }
    return dict;
}

Ref<NumberObj> StoredStream::length(const Dictionary& dict) const noexcept {
    Ref<Value> entry = dict.find("Length"_str);
    if (!entry) {
        return fail(StreamObjectInvalid, "No length entry in dictionary of stream ", id());
    }
    if (const ObjectRef* ref = ofKind<ObjectRef>(entry)) {
        const Object* object = state_.find(*ref);
        if (object == nullptr) {
            return fail(StreamObjectInvalid, "Failed to resolve length reference to object ", entry,
                        " for stream ", id());
        }
        Ref<Value> value = object->value();
        if (ofKind<Number>(value) == nullptr) {
            return fail(StreamObjectInvalid, "Length object ", entry,
                        " is not a valid number for stream ", id());
        }
        entry = std::move(value);
    } else if (ofKind<Number>(entry) == nullptr) {
        return fail(StreamObjectInvalid, "Length entry is not valid in dictionary of stream ",
                    id());
    }
    auto* number = dynamic_cast<NumberObj*>(entry.get());
    if (number == nullptr) {
        return fail(StreamObjectInvalid, "Failed to cast Length number to LengthObj for stream ",
                    id());
    }
    return Ref<NumberObj>(number);
}

Ref<Interfaces::Stripe> StoredStream::data(const ReadRaw& read) const {
    Ref<Interfaces::Stripe> data = read(Ref<Stream>(&stream_));
    if (!data) return fail(StreamObjectInvalid, "Failed to retrieve data for stream ", id());
    return data;
}

Ref<Interfaces::BlockFilter> StoredStream::compressor() const noexcept {
    Ref<Interfaces::BlockFilter> filter = Host::ZlibFilter::createCompressorStream(0);
    if (!filter) {
        return fail(CodingFailed, "Failed to create compressor block filter for stream ", id());
    }
    return filter;
}

Ref<Value> lengthValue(const DocumentState& state, const Dictionary& dict) noexcept {
    Ref<Value> entry = dict.find("Length"_str);
    const ObjectRef* ref = ofKind<ObjectRef>(entry);
    if (ref == nullptr) return entry;
    const Object* object = state.find(*ref);
    return object != nullptr ? object->value() : nullptr;
}

} // namespace Libraries::Files::PDF
