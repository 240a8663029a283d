#include "host/pump.h"
#include "reader/reader.h"
#include "state/raw_data.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/scalars.h"
#include "values/sub_stripe.h"

#include <host/byte_buffer.h>
#include <host/memory_stripe.h>
#include <host/stream.h>

#include <limits>
#include <optional>
#include <utility>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

enum class Decoding { None, Flate };

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

} // namespace

Ref<Interfaces::Stripe> readStreamData(const DocumentState& state, const Ref<Stream>& stream,
                                       bool decode) {
    if (!decode || !stream) return rawData(state, stream);
    if (Ref<Interfaces::Stripe> data = attachedData(stream)) return data;
    if (!beginsInSource(state, *stream)) return nullptr;
    const auto decoding = findDecoding(*stream->dict());
    if (!decoding) return nullptr;
    Ref<Interfaces::Stripe> view = viewOfSource(state, stream);
    return view && *decoding == Decoding::Flate ? decodeFlate(*view) : view;
}

bool cacheStreamData(const DocumentState& state) {
    for (const ObjectTable::Slot& slot : state.objects.slots()) {
        if (slot.holdsOther(Value::Type::Stream)) continue;
        const Ref<Value> value = state.objects.value(slot);
        if (!value || value->type() != Value::Type::Stream) continue;
        StreamObj* stream = own<StreamObj>(value);
        if (stream == nullptr) {
            return fail(StepFailed,
                        "Failed to cast to stream object: ", state.objects.object(slot));
        }
        const Ref<Interfaces::Stripe> data = rawData(state, Ref<Stream>(stream));
        SubStripe* view = own<SubStripe>(data);
        if (view == nullptr) continue;
        Ref<Interfaces::Stripe> copy = copyOf(*view);
        if (!copy) return false;
        attach(*stream, std::move(copy));
    }
    return true;
}

} // namespace Libraries::Files::PDF
