#include "writer/stored_stream.h"

#include "state/raw_data.h"
#include "state/stream_length.h"
#include "values/failure.h"

#include <host/string.h>

#include <algorithm>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

std::uint32_t StoredStream::id() const noexcept {
    if (id_) return *id_;
    const auto& slots = state_.objects.slots();
    const auto holder = std::ranges::find_if(slots, [&](const ObjectTable::Slot& slot) {
        return slot.touchedValue().get() == &stream_;
    });
    return holder == slots.end() ? 0 : holder->id();
}

Ref<Dictionary> StoredStream::dict() const noexcept {
    Ref<Dictionary> dict = stream_.dict();
    if (!dict) {
        return fail(StreamDictionaryMissing, "Failed to retrieve dictionary of stream ", id());
    }
    return dict;
}

Ref<NumberObj> StoredStream::length(const Dictionary& dict) const {
    const StreamLength length = findStreamLength(state_, dict);
    if (!length.entry) {
        return fail(StreamObjectInvalid, "No length entry in dictionary of stream ", id());
    }
    if (length.ref != nullptr && !length.resolved) {
        return fail(StreamObjectInvalid, "Failed to resolve length reference to object ",
                    length.entry, " for stream ", id());
    }
    if (ofKind<Number>(length.value) == nullptr) {
        if (length.ref == nullptr) {
            return fail(StreamObjectInvalid, "Length entry is not valid in dictionary of stream ",
                        id());
        }
        return fail(StreamObjectInvalid, "Length object ", length.entry,
                    " is not a valid number for stream ", id());
    }
    auto* number = dynamic_cast<NumberObj*>(length.value.get());
    if (number == nullptr) {
        return fail(StreamObjectInvalid, "Failed to cast Length number to LengthObj for stream ",
                    id());
    }
    return Ref<NumberObj>(number);
}

Ref<Interfaces::Stripe> StoredStream::data() const {
    Ref<Interfaces::Stripe> data = rawData(state_, Ref<Stream>(&stream_));
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

} // namespace Libraries::Files::PDF
