#include "state/raw_data.h"
#include "state/stream_length.h"
#include "values/scalars.h"
#include "values/sub_stripe.h"
#include "writer/writer.h"

namespace Libraries::Files::PDF {

namespace {

/// Of a stream whose data lies in the file; null where it has none. Attaches nothing and logs
/// nothing, unlike those who need all of the data.
Ref<Interfaces::Stripe> firstByteInSource(const DocumentState& state, const StreamObj& stream) {
    const Ref<Dictionary> dict = stream.dict();
    const Ref<Value> length = dict ? findStreamLength(state, *dict).value : nullptr;
    const Number* number = ofKind<Number>(length);
    const std::uint64_t wanted = number != nullptr ? wholeLength(*number).value_or(0) : 0;
    const std::uint64_t size = state.source->size();
    const std::uint64_t start = stream.strmOfs();
    if (wanted == 0 || start >= size || wanted > size - start) return nullptr;
    return makeOrThrow<SubStripe>(state.source, start, std::uint64_t{1}, state.monitor);
}

Ref<Interfaces::Stripe> beginningOf(const DocumentState& state, const ObjectTable::Slot& slot) {
    if (!slot.touched()) {
        if (Ref<Interfaces::Stripe> view = viewOfPacked(state, slot.packed())) return view;
    }
    const Ref<Value> value = state.objects.value(slot);
    const auto* stream = own<StreamObj>(value);
    if (stream == nullptr) return nullptr;
    const Ref<Interfaces::Stripe> held = stream->strmData();
    return held ? held : firstByteInSource(state, *stream);
}

bool beginsWithLineFeed(const DocumentState& state, const ObjectTable::Slot& slot) {
    if (slot.holdsOther(Value::Type::Stream)) return false;
    const Ref<Interfaces::Stripe> data = beginningOf(state, slot);
    std::uint8_t first = 0;
    return data && data->size() != 0 && data->position(0) == 0 && data->readBytes(&first, 1) == 1 &&
           first == '\n';
}

} // namespace

LossCount lostLineFeeds(const DocumentState& state) {
    LossCount lost;
    if (state.lineEnding != "\r") return lost;
    for (const ObjectTable::Slot& slot : state.objects.slots()) {
        if (!beginsWithLineFeed(state, slot)) continue;
        if (lost.count++ == 0) lost.firstObject = slot.id();
    }
    return lost;
}

} // namespace Libraries::Files::PDF
