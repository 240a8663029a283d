#include "host/on_failure.h"
#include "host/pump.h"
#include "packed/entry.h"
#include "state/stream_length.h"
#include "values/array.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "writer/stored_stream.h"
#include "writer/writer.h"

#include <host/byte_buffer.h>
#include <host/memory_stripe.h>
#include <host/stream.h>
#include <host/string.h>

#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

/// What a stream was before it was re-encoded.
struct Former {
    Ref<StreamObj> stream;
    Ref<Interfaces::Stripe> data; // null where it was not attached
    Ref<Dictionary> dict;
    Ref<Value> filter;
    Ref<NumberObj> length;
    std::int64_t lengthInteger;
};

/// Re-encodes the streams of a document, or none.
class StreamEncoder {
public:
    StreamEncoder(DocumentState& state, Compression target)
        : state_(state), target_(target), losses_(state.filterLosses) {
        if (target == Compression::FlateDecode) filter_ = orThrow(Name::create("FlateDecode"_str));
    }
    bool run();

private:
    bool visit(const ObjectTable::Slot& slot);
    [[nodiscard]] bool staysAsItIs(const ObjectTable::Slot& slot) const noexcept;
    bool encode(const StoredStream& stored);
    [[nodiscard]] Ref<Interfaces::Stripe> dataOf(const StoredStream& stored) const;
    [[nodiscard]] Ref<Interfaces::Stripe> viewOf(const StoredStream& stored) const;
    void viewStreamsThatShareLengths();
    [[nodiscard]] bool readable(const StreamObj& stream) const noexcept;
    void view(const ObjectTable::Slot& slot);
    [[nodiscard]] Ref<Interfaces::BlockFilter> converter(const StoredStream& stored) const noexcept;
    [[nodiscard]] Ref<Interfaces::Stripe> convert(const StoredStream& stored,
                                                  Interfaces::Stripe& data) const;
    void noteLoss(std::uint32_t id, const Dictionary& dict);
    void complete();
    void undo() noexcept;

    DocumentState& state_;
    const Compression target_;
    Ref<Value> filter_;
    std::vector<Former> formers_;
    std::unordered_map<StreamObj*, Ref<Interfaces::Stripe>> views_;
    std::map<std::uint32_t, FilterLoss> losses_;
};

const char* codingMessage(Host::PumpResult result) noexcept {
    switch (result) {
    case Host::PumpResult::WriteFailed:
        return "Failed to write converted stream data of stream ";
    case Host::PumpResult::FlushFailed:
        return "Failed to flush conversion of stream ";
    case Host::PumpResult::FlushedWriteFailed:
        return "Failed to write flushed converted stream data of stream ";
    default:
        return "Failed to read converted stream data of stream ";
    }
}

bool StreamEncoder::run() {
    Host::OnFailure failed([this] { undo(); });
    for (const ObjectTable::Slot& slot : state_.objects.slots()) {
        if (!visit(slot)) return false;
    }
    complete();
    return failed.keep();
}

/// Whether it is known, without a value, that there is nothing to be done.
bool StreamEncoder::staysAsItIs(const ObjectTable::Slot& slot) const noexcept {
    if (slot.touched()) return false;
    const PackedValue packed = slot.packed();
    if (packed.kind != Value::Type::Stream) return true;
    const std::string_view filter = findPackedEntry(packed.bytes, "Filter");
    return target_ == Compression::FlateDecode
               ? filter == "/FlateDecode"
               : filter.empty() || (filter.front() == '/' && filter != "/FlateDecode");
}

bool StreamEncoder::visit(const ObjectTable::Slot& slot) {
    if (staysAsItIs(slot)) return true;
    const Ref<ObjectObj>& object = state_.objects.object(slot);
    if (object->valueType() != Value::Type::Stream) return true;
    const std::uint32_t id = slot.id();
    const Ref<Value> value = state_.objects.value(slot);
    Stream* const stream = as<Stream>(value);
    if (stream == nullptr) {
        return fail(NoValue, "Failed to cast value of object ", id, " to stream");
    }
    auto* const ours = own<StreamObj>(stream);
    if (ours == nullptr) {
        return fail(StreamObjectInvalid, "Failed to cast Stream to StreamObj for ", id);
    }
    const Compression current = ours->compression();
    if (current == target_) return true;
    if (current == Compression::Unknown) {
        report(LogLevel::Warning, "Unsupported compression for stream of object ", id);
        return true;
    }
    return encode(StoredStream(state_, *ours, id));
}

bool StreamEncoder::encode(const StoredStream& stored) {
    const Ref<Dictionary> dict = stored.dict();
    if (!dict) return false;
    if (formers_.empty()) viewStreamsThatShareLengths();
    const Ref<Interfaces::Stripe> data = dataOf(stored);
    if (!data) return false;
    const Ref<NumberObj> length = stored.length(*dict);
    if (!length) return false;
    noteLoss(stored.id(), *dict);
    // Everything that is likely to fail comes before the stream is touched.
    Ref<Interfaces::Stripe> converted = convert(stored, *data);
    if (!converted) return false;

    StreamObj& stream = stored.stream();
    formers_.push_back({Ref<StreamObj>(&stream), stream.strmData(), dict, dict->find("Filter"_str),
                        length, length->integer()});
    if (!dict->set("Filter"_str, filter_)) {
        return fail(FilterNotUpdated, "Failed to update Filter in dictionary of stream ",
                    stored.id());
    }
    length->integer(static_cast<std::int64_t>(converted->size()));
    stream.strmData(std::move(converted));
    return true;
}

Ref<Value> resolved(const DocumentState& state, const Ref<Value>& value) {
    const auto* ref = as<ObjectRef>(value);
    const auto* slot = ref != nullptr ? state.find(*ref) : nullptr;
    return slot != nullptr ? state.objects.value(*slot) : value;
}

/// Whether a stream has parameters that name a predictor.
bool hasPredictor(const DocumentState& state, const Dictionary& dict) {
    Ref<Value> parameters = resolved(state, dict.find("DecodeParms"_str));
    if (const auto* list = as<Array>(parameters)) parameters = resolved(state, list->get(0));
    const auto* entries = as<Dictionary>(parameters);
    const Ref<Value> predictor =
        entries != nullptr ? resolved(state, entries->find("Predictor"_str)) : nullptr;
    const auto* number = as<Number>(predictor);
    return number != nullptr && number->integer() > 1;
}

/// Notes what the data cannot be understood without, and is about to go. A predictor and its filter
/// come together again when the data goes back.
void StreamEncoder::noteLoss(std::uint32_t id, const Dictionary& dict) {
    const std::uint32_t code = Host::Error::get();
    if (target_ == Compression::FlateDecode && dict.find("Filter"_str)) {
        losses_.insert_or_assign(id, FilterLoss::Replaced);
    } else if (hasPredictor(state_, dict)) {
        const auto [place, isNew] = losses_.try_emplace(id, FilterLoss::Predictor);
        if (!isNew && place->second == FilterLoss::Predictor) losses_.erase(place);
    }
    Host::Error::set(code);
}

Ref<Interfaces::Stripe> StreamEncoder::dataOf(const StoredStream& stored) const {
    const auto viewed = views_.find(&stored.stream());
    return viewed != views_.end() && viewed->second ? viewed->second : viewOf(stored);
}

/// The stream's data, which stays unattached where it was.
Ref<Interfaces::Stripe> StreamEncoder::viewOf(const StoredStream& stored) const {
    StreamObj& stream = stored.stream();
    const bool attached = stream.strmData() != nullptr;
    const bool changed = stream.changed();
    Ref<Interfaces::Stripe> data = stored.data();
    if (!attached) {
        stream.strmData(nullptr);
        if (!changed) stream.resetChanged();
    }
    return data;
}

/// Whether it is known, without a value, that the object shares no Length with a stream.
bool hasLengthOfItsOwn(const ObjectTable::Slot& slot) noexcept {
    if (slot.touched()) return false;
    const PackedValue packed = slot.packed();
    if (packed.kind != Value::Type::Stream) return true;
    return !findPackedEntry(packed.bytes, "Length").ends_with(" R");
}

/// Where several streams have one Length object, re-encoding one of them changes how much of the
/// file the others seem to be: their data is looked up before.
void StreamEncoder::viewStreamsThatShareLengths() {
    std::unordered_map<const Value*, const ObjectTable::Slot*> firsts;
    for (const ObjectTable::Slot& slot : state_.objects.slots()) {
        if (hasLengthOfItsOwn(slot)) continue;
        const Ref<Value> value = state_.objects.value(slot);
        const auto* stream = own<StreamObj>(value);
        const Ref<Dictionary> dict = stream != nullptr ? stream->dict() : nullptr;
        const Ref<Value> length = dict ? findStreamLength(state_, *dict).value : nullptr;
        if (!length) continue;
        const auto [first, alone] = firsts.try_emplace(length.get(), &slot);
        if (alone) continue;
        view(*first->second);
        view(slot);
    }
}

/// Whether the data of a stream that lies in the source can be had; one whose data cannot be had
/// fails when its turn comes, if it comes.
bool StreamEncoder::readable(const StreamObj& stream) const noexcept {
    const Ref<Value> length = findStreamLength(state_, *stream.dict()).value;
    const Number* number = ofKind<Number>(length);
    const auto wanted = number != nullptr ? wholeLength(*number) : std::nullopt;
    const std::uint64_t size = state_.source->size();
    return wanted && stream.strmOfs() < size && *wanted <= size - stream.strmOfs();
}

void StreamEncoder::view(const ObjectTable::Slot& slot) {
    const Ref<Value> value = state_.objects.value(slot);
    auto* const stream = own<StreamObj>(value);
    if (stream->strmData() || !readable(*stream)) return;
    const auto [place, isNew] = views_.try_emplace(stream);
    if (isNew) place->second = viewOf(StoredStream(state_, *stream, slot.id()));
}

Ref<Interfaces::BlockFilter> StreamEncoder::converter(const StoredStream& stored) const noexcept {
    if (target_ == Compression::FlateDecode) return stored.compressor();
    Ref<Interfaces::BlockFilter> filter = Host::ZlibFilter::createDecompressorStream();
    if (!filter) {
        return fail(CodingFailed, "Failed to create decompressor block filter for stream ",
                    stored.id());
    }
    return filter;
}

Ref<Interfaces::Stripe> StreamEncoder::convert(const StoredStream& stored,
                                               Interfaces::Stripe& data) const {
    const Ref<Interfaces::BlockFilter> filter = converter(stored);
    if (!filter) return nullptr;
    Host::ByteBuffer converted;
    const Host::PumpResult result = Host::pump(data, *filter, converted);
    if (result != Host::PumpResult::Done) {
        return fail(CodingFailed, codingMessage(result), stored.id());
    }
    converted.shrink();
    Ref<Interfaces::Stripe> stripe = Host::MemoryStripe::create(std::move(converted));
    if (!stripe) {
        return fail(StreamObjectInvalid, "Failed to create encoding converter for stream ",
                    stored.id());
    }
    return stripe;
}

void StreamEncoder::complete() {
    // A stream that was left alone keeps its data, though its Length may now tell another size.
    for (auto& [stream, data] : views_) {
        if (!data || stream->strmData()) continue;
        const bool changed = stream->changed();
        stream->strmData(std::move(data));
        if (!changed) stream->resetChanged();
    }
    if (!formers_.empty()) state_.modified = true;
    state_.filterLosses.swap(losses_);
}

/// From the last one back, so that a Length which several streams share ends as it began. Takes no
/// memory: an entry that was removed finds its place still there.
void StreamEncoder::undo() noexcept {
    const std::uint32_t code = Host::Error::get();
    for (auto next = formers_.rbegin(); next != formers_.rend(); ++next) {
        Former& former = *next;
        former.stream->strmData(std::move(former.data));
        former.length->integer(former.lengthInteger);
        static_cast<void>(former.dict->set("Filter"_str, std::move(former.filter)));
        former.stream->resetChanged();
        if (auto* dict = own<DictionaryObj>(former.dict)) dict->resetModified();
    }
    Host::Error::set(code);
}

} // namespace

bool setCompression(DocumentState& state, Compression target) {
    if (target != Compression::None && target != Compression::FlateDecode) {
        return fail(InvalidArgument);
    }
    return StreamEncoder(state, target).run();
}

} // namespace Libraries::Files::PDF
