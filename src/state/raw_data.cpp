#include "state/raw_data.h"

#include "host/numbers.h"
#include "packed/entry.h"
#include "state/stream_length.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/scalars.h"
#include "values/sub_stripe.h"

#include <optional>
#include <string_view>
#include <utility>

namespace Libraries::Files::PDF {

namespace {

/// The value of the Length entry. It looks a reference up in the object table.
Ref<Value> findLength(const DocumentState& state, const Dictionary& dict) {
    StreamLength length = findStreamLength(state, dict);
    if (!length.entry) return fail(LengthInvalid, "Stream has no Length entry");
    if (!length.resolved) {
        return fail(LengthInvalid, "Failed to resolve Length object reference");
    }
    if (!length.value) {
        return fail(LengthInvalid, "Resolved Length object reference has no value");
    }
    return std::move(length.value);
}

std::optional<std::uint64_t> readLength(const DocumentState& state, const Dictionary& dict,
                                        std::uint64_t offset) {
    const auto invalid = [](const auto&... pieces) -> std::optional<std::uint64_t> {
        fail(LengthInvalid, pieces...);
        return std::nullopt;
    };
    const Ref<Value> value = findLength(state, dict);
    if (!value) return std::nullopt;
    if (value->type() != Value::Type::Number) {
        return invalid("Stream Length has unexpected type: ", value->type());
    }
    const Number* number = as<Number>(value);
    if (number == nullptr) return invalid("Stream Length attribute is not a Number");
    const auto length = wholeLength(*number);
    if (!length) return invalid("Stream Length attribute value is invalid: ", value);
    const std::uint64_t size = state.source->size();
    if (*length > size - offset) {
        // The sum cannot wrap around: both are below 2^63, or the offset lies in the source.
        return invalid("Stream end ", offset + *length,
                       " is out of range of underlying file: ", size);
    }
    return length;
}

/// The Length of a packed stream, if it is a number or refers to a packed one.
std::optional<std::uint64_t> packedLength(const DocumentState& state, std::string_view dict) {
    std::string_view length = findPackedEntry(dict, "Length");
    if (length.ends_with(" R")) {
        const std::size_t end = length.find(' ');
        const auto id = Host::StrConv::num<std::uint32_t>(length.substr(0, end));
        const auto generation =
            Host::StrConv::num<std::uint16_t>(length.substr(end + 1, length.size() - end - 3));
        const auto* slot = id && generation ? state.objects.find(*id, *generation) : nullptr;
        if (slot == nullptr || slot->touched()) return std::nullopt;
        length = slot->packed().bytes;
    }
    // Only digits are read here. Other values take the ordinary way.
    if (length.empty() || length.front() < '0' || length.front() > '9') return std::nullopt;
    return Host::StrConv::num<std::uint64_t>(length);
}

} // namespace

Ref<Interfaces::Stripe> rawData(const DocumentState& state, const Ref<Stream>& stream) {
    if (!stream) return fail(NullArgument);
    if (Ref<Interfaces::Stripe> data = attachedData(stream)) return data;
    return beginsInSource(state, *stream) ? viewOfSource(state, stream) : nullptr;
}

Ref<Interfaces::Stripe> attachedData(const Ref<Stream>& stream) noexcept {
    const auto* held = own<StreamObj>(stream);
    return held != nullptr ? held->strmData() : nullptr;
}

bool beginsInSource(const DocumentState& state, const Stream& stream) noexcept {
    if (state.source->size() <= stream.strmOfs()) return fail(OutOfRange);
    return stream.dict() || fail(InvalidArgument);
}

Ref<Interfaces::Stripe> viewOfSource(const DocumentState& state, const Ref<Stream>& stream) {
    const auto length = readLength(state, *stream->dict(), stream->strmOfs());
    if (!length) return nullptr;
    auto view = makeOrThrow<SubStripe>(state.source, stream->strmOfs(), *length, state.monitor);
    if (auto* holder = own<StreamObj>(stream)) attach(*holder, view);
    return view;
}

Ref<Interfaces::Stripe> viewOfPacked(const DocumentState& state, const PackedValue& stream) {
    const auto length = packedLength(state, stream.bytes);
    const std::uint64_t size = state.source->size();
    if (!length || size <= stream.streamOffset || *length > size - stream.streamOffset) {
        return nullptr;
    }
    return makeOrThrow<SubStripe>(state.source, stream.streamOffset, *length, state.monitor);
}

void attach(StreamObj& stream, Ref<Interfaces::Stripe> data) noexcept {
    stream.strmData(std::move(data));
    stream.resetChanged();
}

} // namespace Libraries::Files::PDF
