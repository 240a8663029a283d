#include "reader/stream_data.h"

#include "document/stream_length.h"
#include "host/pump.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/scalars.h"
#include "values/sub_stripe.h"

#include <host/stream.h>

#include <limits>
#include <optional>
#include <utility>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

enum class Decoding { None, Flate };

StreamObj* own(const Ref<Stream>& stream) noexcept {
    return dynamic_cast<StreamObj*>(stream.get());
}

std::optional<Decoding> findDecoding(const Dictionary& dict) noexcept {
    const Ref<Value> filter = dict.find("Filter"_str);
    if (!filter) return Decoding::None;
    const Name* name = ofKind<Name>(filter);
    if (name == nullptr) {
        fail(FilterUnsupported, "Unexpected type for filter property; got = ", filter->type(),
             ", expected = ", Value::Type::Name);
        return std::nullopt;
    }
    const Ref<Host::String> text = name->name();
    if (!text || text->empty()) {
        report(LogLevel::Warning, "Got filter entry, but no name");
        return Decoding::None;
    }
    if (text->equals("FlateDecode")) return Decoding::Flate;
    fail(FilterUnsupported, "Unsupported filter type ", text);
    return std::nullopt;
}

/// The value of the Length entry, looked up in the object table where it is a reference.
Ref<Value> findLength(const DocumentState& state, const Dictionary& dict) noexcept {
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
                                        std::uint64_t offset) noexcept {
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
        // Both are below 2^63, or the offset lies in the source: the sum cannot wrap around.
        return invalid("Stream end ", offset + *length,
                       " is out of range of underlying file: ", size);
    }
    return length;
}

const char* decodingMessage(Host::PumpResult result) noexcept {
    switch (result) {
    case Host::PumpResult::ReadFailed:
        return "Failed to read converted stream data of stream";
    case Host::PumpResult::WriteFailed:
        return "Failed to write converted stream data of stream";
    case Host::PumpResult::FlushFailed:
        return "Failed to flush conversion of stream";
    case Host::PumpResult::FlushedWriteFailed:
        return "Failed to write flushed converted stream data of stream";
    default:
        return "Failed to convert data of stream";
    }
}

Ref<Interfaces::Stripe> decodeFlate(Interfaces::Stripe& view) {
    const Ref<Interfaces::BlockFilter> filter = Host::ZlibFilter::createDecompressorStream();
    if (!filter) {
        return fail(CodingNotSetUp, "Failed to create decompressor block filter for stream");
    }
    Host::ByteBuffer decoded;
    const Host::PumpResult result = Host::pump(view, *filter, decoded);
    if (result != Host::PumpResult::Done) return fail(CodingFailed, decodingMessage(result));

    decoded.shrink();
    Ref<Interfaces::Stripe> stripe = Host::MemoryStripe::create(std::move(decoded));
    if (!stripe) return fail(CodingNotSetUp, "Failed to create encoding converter for stream");
    return stripe;
}

/// Copies a view's elements into memory, or explains why not.
Ref<Interfaces::Stripe> copyOf(Interfaces::Stripe& view) {
    if (view.position(0) != 0) {
        return fail(InvalidArgument, "Failed to navigate in to be cached stream's data");
    }
    const std::uint64_t size = view.size();
    if (size > std::numeric_limits<std::uint32_t>::max()) {
        return fail(OutOfRange, "Stream size is too large: ", size);
    }
    Host::ByteBuffer copy;
    const bool read = copy.resize(size) && (size == 0 || view.readBytes(copy.data(), size) == size);
    if (!read) {
        return fail(StepFailed, "Failed to read from to be cached stream's data");
    }
    Ref<Interfaces::Stripe> stripe = Host::MemoryStripe::create(std::move(copy));
    if (!stripe) return fail(StepFailed, "Failed to create cached stream");
    return stripe;
}

void attach(StreamObj& stream, Ref<Interfaces::Stripe> data) noexcept {
    stream.strmData(std::move(data));
    stream.resetChanged();
}

} // namespace

Ref<Interfaces::Stripe> readStreamData(const DocumentState& state, const Ref<Stream>& stream,
                                       bool decode) {
    if (!stream) return fail(NullArgument);
    StreamObj* const streamObj = own(stream);
    if (streamObj != nullptr && streamObj->strmData()) return streamObj->strmData();

    const std::uint64_t offset = stream->strmOfs();
    if (state.source->size() <= offset) return fail(OutOfRange);
    const Ref<Dictionary> dict = stream->dict();
    if (!dict) return fail(InvalidArgument);
    const auto decoding = decode ? findDecoding(*dict) : Decoding::None;
    if (!decoding) return nullptr;
    const auto length = readLength(state, *dict, offset);
    if (!length) return nullptr;

    const auto view = newValue<SubStripe>(state.source, offset, *length, state.monitor);
    if (streamObj != nullptr) attach(*streamObj, view);
    return *decoding == Decoding::Flate ? decodeFlate(*view) : view;
}

bool cacheStreamData(const DocumentState& state) {
    for (const ObjectTable::Slot& slot : state.objects.slots()) {
        const Ref<Value> value = slot.object->value();
        if (!value || value->type() != Value::Type::Stream) continue;
        StreamObj* stream = dynamic_cast<StreamObj*>(value.get());
        if (stream == nullptr) {
            return fail(StepFailed, "Failed to cast to stream object: ", slot.object);
        }
        const Ref<Interfaces::Stripe> data = readStreamData(state, Ref<Stream>(stream), false);
        SubStripe* view = dynamic_cast<SubStripe*>(data.get());
        if (view == nullptr) continue;
        Ref<Interfaces::Stripe> copy = copyOf(*view);
        if (!copy) return false;
        attach(*stream, std::move(copy));
    }
    return true;
}

} // namespace Libraries::Files::PDF
