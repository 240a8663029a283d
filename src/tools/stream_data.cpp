#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/new_stream.h"
#include "tools/references.h"
#include "tools/stored_data.h"
#include "tools/stream_coding.h"

#include <host/byte_buffer.h>
#include <pdf/tools/editing.h>

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// The entries that say how data is stored (ISO 32000-1, table 5), Filter and Length apart.
constexpr std::string_view storage[] = {"DecodeParms", "DL", "F", "FDecodeParms", "FFilter"};

Ref<Host::MemoryStripe> stored(Bytes bytes, bool deflating) {
    if (!deflating) return orThrow(Host::MemoryStripe::create(bytes.span()));
    Host::ByteBuffer deflated;
    if (deflate(bytes.span(), deflated) != Converted::Done) {
        return fail(CodingFailed, "Failed to deflate the data of a stream");
    }
    deflated.shrink();
    return orThrow(Host::MemoryStripe::create(std::move(deflated)));
}

/// Makes the entries say that so many bytes are stored, deflated or plain.
bool describe(Changes& changes, const Ref<Dictionary>& entries, std::uint64_t size, bool deflated) {
    // First what takes room, so that what is taken away finds it again if it must go back.
    const Ref<Value> filter = deflated ? orThrow(Name::create("FlateDecode")) : nullptr;
    const Ref<Number> length = orThrow(Number::create(static_cast<std::int64_t>(size)));
    if (!changes.set(entries, "Length", length)) return false;
    if (!changes.set(entries, "Filter", filter)) return false;
    return std::ranges::all_of(storage,
                               [&](std::string_view key) { return changes.drop(entries, key); });
}

/// What makes the data of a stream another than its bytes, where an application says so.
bool saysHowItIsStored(const Dictionary& entries) {
    constexpr std::string_view keys[] = {"Filter", "DecodeParms", "F", "FFilter", "FDecodeParms"};
    return std::ranges::any_of(keys, [&](std::string_view key) {
        const Ref<Value> value = quietly([&] { return entries.find(key); });
        return value && value->type() != Value::Type::Null;
    });
}

Ref<ObjectRef> made(Document& document, Bytes bytes, bool deflate, const Ref<Dictionary>& given) {
    if (given && saysHowItIsStored(*given)) {
        return fail(InvalidArgument, "The entries of a stream to be made say how it is stored");
    }
    const Ref<Host::MemoryStripe> data = stored(bytes, deflate);
    if (!data) return nullptr;
    const Ref<Dictionary> entries = given ? given : orThrow(Dictionary::create());
    Changes changes(document);
    if (!describe(changes, entries, data->size(), deflate)) return nullptr;
    const Ref<Value> stream =
        orThrow(Host::make<StreamObj>(entries, Ref<Interfaces::Stripe>(data)));
    Ref<ObjectRef> ref = addObject(document, stream);
    if (ref) changes.keep();
    return ref;
}

bool replaced(Document& document, const Ref<Stream>& stream, Bytes bytes) {
    const Ref<StreamObj> held = Host::cast<StreamObj>(stream);
    if (!held) return fail(InvalidArgument, "The stream is of another class than the library's");
    const Ref<Dictionary> entries = held->dict();
    if (!entries) return fail(StreamDictionaryMissing, "The stream has no dictionary");
    const bool deflate = held->compression() == Compression::FlateDecode;
    Ref<Host::MemoryStripe> data = stored(bytes, deflate);
    if (!data) return false;
    Changes changes(document);
    if (!describe(changes, entries, data->size(), deflate)) return false;
    changes.keep();
    held->strmData(std::move(data));
    return true;
}

Ref<Host::MemoryStripe> inflated(Host::MemoryStripe& raw, std::uint64_t limit) {
    Host::ByteBuffer bytes;
    const Converted result = inflate(raw, bytes, limit);
    if (result != Converted::Done && result != Converted::TooLarge) {
        return fail(CodingFailed, "Failed to inflate the data of a stream");
    }
    bytes.shrink();
    return orThrow(Host::MemoryStripe::create(std::move(bytes)));
}

bool isDecodable(const Coding& coding) noexcept {
    return coding.kind != Coding::Kind::Other &&
           coding.prediction.kind == Host::Prediction::Kind::None;
}

Ref<Host::MemoryStripe> decoded(Document& document, const Ref<Stream>& stream,
                                std::uint64_t limit) {
    const Ref<Dictionary> entries = stream->dict();
    if (!entries) return fail(StreamDictionaryMissing, "The stream has no dictionary");
    const Coding coding = codingOf(document, *entries);
    if (!isDecodable(coding)) {
        return fail(FilterUnsupported, "A stream is not stored plainly or by FlateDecode alone");
    }
    Ref<Host::MemoryStripe> bytes = rawBytes(document, stream);
    if (bytes && coding.kind == Coding::Kind::Flate) bytes = inflated(*bytes, limit);
    if (bytes && bytes->size() > limit) {
        return fail(OutOfRange, "A stream holds more bytes than ", limit);
    }
    return bytes;
}

} // namespace

// A stream to which no data was attached has none afterwards: what is attached would be taken for
// decoded data.
Ref<Interfaces::Stripe> rawData(Document& document, const Ref<Stream>& stream) {
    const Ref<StreamObj> held = Host::cast<StreamObj>(stream);
    const bool attached = held && held->strmData();
    const bool changed = held && held->changed();
    Ref<Interfaces::Stripe> data = document.readStreamData(stream, false);
    if (held && !attached) {
        held->strmData(nullptr);
        if (!changed) held->resetChanged();
    }
    return data;
}

Ref<Host::MemoryStripe> rawBytes(Document& document, const Ref<Stream>& stream) {
    const Ref<Interfaces::Stripe> data = rawData(document, stream);
    if (!data) return nullptr;
    Host::ByteBuffer bytes;
    if (!bytes.resize(data->size())) throw std::bad_alloc();
    if (data->position(0) != 0 || data->readBytes(bytes.data(), bytes.size()) != bytes.size()) {
        return fail(SourceNotRead, "Failed to read the data of a stream");
    }
    return orThrow(Host::MemoryStripe::create(std::move(bytes)));
}

bool canDecode(const Document& document, const Dictionary& entries) {
    return isDecodable(codingOf(document, entries));
}

Ref<Stream> newStream(Bytes bytes, bool deflate) {
    Ref<Interfaces::Stripe> data = stored(bytes, deflate);
    if (!data) return nullptr;
    const auto length = orThrow(Number::create(static_cast<std::int64_t>(data->size())));
    const Ref<Dictionary> entries = orThrow(Dictionary::create({{"Length", length}}));
    if (deflate && !entries->set("Filter", orThrow(Name::create("FlateDecode")))) {
        throw std::bad_alloc();
    }
    return orThrow(Host::make<StreamObj>(entries, std::move(data)));
}

Ref<ObjectRef> makeStream(Document& document, Bytes bytes, bool deflate,
                          const Ref<Dictionary>& entries) noexcept {
    if (!canBeUsed(document, entries)) return nullptr;
    return guarded([&] { return made(document, bytes, deflate, entries); });
}

bool setStreamData(Document& document, const Ref<Stream>& stream, Bytes bytes) noexcept {
    if (!stream) return fail(NullArgument);
    if (!canBeUsed(document, stream)) return false;
    return guarded([&] { return replaced(document, stream, bytes); });
}

Ref<Host::MemoryStripe> decodedBytes(Document& document, const Ref<Stream>& stream,
                                     std::uint64_t limit) noexcept {
    if (!stream) return fail(NullArgument);
    if (!canBeUsed(document, stream)) return nullptr;
    return guarded([&] { return decoded(document, stream, limit); });
}

} // namespace Libraries::Files::PDF::Tools
