#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/new_values.h"
#include "tools/references.h"
#include "tools/stored_data.h"
#include "tools/stream_coding.h"

#include <host/byte_buffer.h>
#include <pdf/tools/editing.h>

#include <algorithm>
#include <span>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Makes the entries say that so many bytes are stored, deflated or plain.
void describe(Changes& changes, const Ref<Dictionary>& entries, std::uint64_t size,
              Storing storing) {
    // First what takes room, so that what is taken away finds it again if it must go back.
    changes.set(entries, "Length", newNumber(size));
    changes.set(entries, "Filter", storing == Storing::Deflated ? newName("FlateDecode") : nullptr);
    for (const std::string_view key : {"DecodeParms", "DL", "F", "FDecodeParms", "FFilter"})
        changes.drop(entries, key);
}

/// Whether an application's entries say that of a stream's data.
bool hasAny(const Ref<Dictionary>& entries, std::span<const std::string_view> keys) {
    return std::ranges::any_of(
        keys, [&](std::string_view key) { return !isNothing(findEntry(entries, key)); });
}

/// Adds a stream whose entries `describe` makes true; they are the caller's.
template <class Describe>
Ref<ObjectRef> addedStream(const Ref<Document>& document, const Ref<Dictionary>& entries,
                           const Ref<Host::MemoryStripe>& data, Describe describe) {
    Changes changes(*document);
    describe(changes);
    Ref<ObjectRef> ref =
        changes.add(makeOrThrow<StreamObj>(entries, Ref<Interfaces::Stripe>(data)));
    changes.keep();
    return ref;
}

Ref<Host::MemoryStripe> inflated(Host::MemoryStripe& raw, std::uint64_t limit) {
    Host::ByteBuffer bytes;
    if (inflate(raw, bytes, limit) == Inflated::Damaged) {
        fail(CodingFailed, "Failed to inflate the data of a stream");
    }
    bytes.shrink();
    return held(std::move(bytes));
}

} // namespace

// A stream to which no data was attached has none afterwards: what is attached would be taken for
// decoded data.
Ref<Interfaces::Stripe> rawData(Document& document, const Ref<Stream>& stream) {
    const Ref<StreamObj> ours = Host::cast<StreamObj>(stream);
    const bool attached = ours && ours->strmData();
    const bool changed = ours && ours->changed();
    Ref<Interfaces::Stripe> data = document.readStreamData(stream, false);
    if (ours && !attached) {
        ours->strmData(nullptr);
        if (!changed) ours->resetChanged();
    }
    return orFail(std::move(data));
}

Ref<Host::MemoryStripe> rawBytes(Document& document, const Ref<Stream>& stream) {
    const Ref<Interfaces::Stripe> data = rawData(document, stream);
    Host::ByteBuffer bytes;
    if (!bytes.resize(data->size())) throw std::bad_alloc();
    if (data->position(0) != 0 || data->readBytes(bytes.data(), bytes.size()) != bytes.size()) {
        fail(SourceNotRead, "Failed to read the data of a stream");
    }
    return held(std::move(bytes));
}

Ref<Host::MemoryStripe> held(Host::ByteBuffer bytes) {
    return orThrow(Host::MemoryStripe::create(std::move(bytes)));
}

Ref<Host::MemoryStripe> stored(Bytes bytes, Storing storing) {
    if (storing == Storing::Plain) return orThrow(Host::MemoryStripe::create(bytes.span()));
    return held(deflated(bytes.span()));
}

Ref<Dictionary> entriesOf(const Ref<Stream>& stream) {
    Ref<Dictionary> entries = stream->dict();
    if (!entries) fail(StreamDictionaryMissing, "The stream has no dictionary");
    return entries;
}

Ref<Host::MemoryStripe> decoded(Document& document, const Ref<Stream>& stream,
                                std::uint64_t limit) {
    const Coding coding = codingOf(document, entriesOf(stream));
    const bool predicted = coding.prediction.kind != Host::Prediction::Kind::None;
    if (coding.kind == Coding::Kind::Other || predicted) {
        fail(FilterUnsupported,
             "The stream is stored neither plainly nor by FlateDecode without a predictor");
    }
    Ref<Host::MemoryStripe> bytes = rawBytes(document, stream);
    if (coding.kind == Coding::Kind::Flate) bytes = inflated(*bytes, limit);
    if (bytes->size() > limit) fail(OutOfRange, "The stream holds more bytes than ", limit);
    return bytes;
}

Result<Ref<ObjectRef>> addStream(const Ref<Document>& document, Bytes bytes, Storing storing,
                                 const Ref<Dictionary>& entries) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        requireHome(*document, entries, "dictionary");
        if (hasAny(entries, storageEntries)) {
            fail(InvalidArgument, "The entries of a stream to be added say how it is stored");
        }
        const Ref<Host::MemoryStripe> data = stored(bytes, storing);
        const Ref<Dictionary> own = entries ? entries : newDictionary();
        return addedStream(document, own, data, [&](Changes& changes) {
            describe(changes, own, data->size(), storing);
        });
    });
}

Result<Ref<ObjectRef>> addEncodedStream(const Ref<Document>& document, Bytes bytes,
                                        const Ref<Dictionary>& entries) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        requireArgument(entries, "dictionary");
        requireHome(*document, entries, "dictionary");
        const std::span<const std::string_view> keys = storageEntries;
        if (!hasAny(entries, keys.first(1)) || hasAny(entries, keys.subspan(2))) {
            fail(InvalidArgument,
                 "The entries of an encoded stream have no Filter, or name a file");
        }
        const Ref<Host::MemoryStripe> data = stored(bytes, Storing::Plain);
        return addedStream(document, entries, data, [&](Changes& changes) {
            changes.set(entries, "Length", newNumber(data->size()));
        });
    });
}

Result<void> setStreamData(const Ref<Document>& document, const Ref<Stream>& stream,
                           Bytes bytes) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        requireArgument(stream, "stream");
        requireHome(*document, stream, "stream");
        const Ref<StreamObj> ours = Host::cast<StreamObj>(stream);
        if (!ours) fail(InvalidArgument, "The stream is of another class than the library's");
        const Ref<Dictionary> entries = entriesOf(stream);
        const bool isFlate = ours->compression() == Compression::FlateDecode;
        const Storing storing = isFlate ? Storing::Deflated : Storing::Plain;
        Ref<Host::MemoryStripe> data = stored(bytes, storing);
        Changes changes(*document);
        describe(changes, entries, data->size(), storing);
        changes.keep();
        ours->strmData(std::move(data));
    });
}

Result<Ref<Host::MemoryStripe>> decodedBytes(const Ref<Document>& document,
                                             const Ref<Stream>& stream,
                                             std::uint64_t limit) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        requireArgument(stream, "stream");
        requireHome(*document, stream, "stream");
        return decoded(*document, stream, limit);
    });
}

} // namespace Libraries::Files::PDF::Tools
