#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/new_stream.h"
#include "tools/references.h"
#include "tools/stored_data.h"

#include <host/byte_buffer.h>
#include <host/stream.h>
#include <pdf/tools/editing.h>

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

using Interfaces::BlockFilter;

constexpr std::size_t blockSize = 65536;

/// The entries that say how data is stored (ISO 32000-1, table 5), Filter and Length apart.
constexpr std::string_view storage[] = {"DecodeParms", "DL", "F", "FDecodeParms", "FFilter"};

/// Room for one more block, within what is allowed in all. Throws where memory is exhausted.
std::span<std::uint8_t> roomIn(Host::ByteBuffer& buffer) {
    std::uint8_t* const room = buffer.room(std::max(blockSize, buffer.size()));
    if (room == nullptr) throw std::bad_alloc();
    return {room, std::max(blockSize, buffer.size())};
}

/// Appends what `filter` makes of `input` to `output`, and stops behind `limit` bytes. Throws
/// `std::bad_alloc`; false where the data cannot be converted.
bool convert(BlockFilter& filter, std::span<const std::uint8_t> input, Host::ByteBuffer& output,
             std::uint64_t limit = UINT64_MAX) {
    while (!input.empty() && output.size() <= limit) {
        BlockFilter::Progress progress;
        if (!filter.convert(input, roomIn(output), progress)) return false;
        if (progress.consumed == 0 && progress.produced == 0) return false;
        input = input.subspan(progress.consumed);
        output.extend(progress.produced);
    }
    while (output.size() <= limit) {
        std::uint64_t produced = 0;
        const auto report = filter.flush(roomIn(output), produced);
        if (report == BlockFilter::Flush::Finished) return true;
        if (report == BlockFilter::Flush::Failed) return false;
        output.extend(produced);
    }
    return true;
}

Ref<Host::MemoryStripe> stored(Bytes bytes, bool deflate) {
    if (!deflate) return orThrow(Host::MemoryStripe::create(bytes.span()));
    const Ref<BlockFilter> filter = orThrow(Host::ZlibFilter::createCompressorStream(0));
    Host::ByteBuffer deflated;
    Host::Error::set(Host::NoError);
    if (!convert(*filter, bytes.span(), deflated)) {
        if (Host::Error::get() == Host::OutOfMemory) throw std::bad_alloc();
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

Ref<ObjectRef> made(Document& document, Bytes bytes, bool deflate, const Ref<Dictionary>& given) {
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

/// Whether data comes out of one FlateDecode alone, and not through a predictor; null where no
/// filter is known. What else there is cannot be decoded here.
enum class Coding { Plain, Flate, Other };

/// The only element of an array, or the value itself; null for an array of none.
Ref<Value> soleElement(const Document& document, Ref<Value> value, bool& several) {
    const Ref<Array> list = Host::cast<Array>(value);
    several = list && list->size() > 1;
    if (!list) return value;
    return list->size() == 0 ? nullptr : follow(document, list->get(0));
}

Coding codingOf(const Document& document, const Dictionary& entries) {
    bool several = false;
    const Ref<Value> filter =
        soleElement(document, followEntry(document, entries, "Filter"), several);
    if (several) return Coding::Other;
    if (!filter) return Coding::Plain;
    if (!isName(filter, "FlateDecode")) return Coding::Other;
    const Ref<Dictionary> parameters = Host::cast<Dictionary>(
        soleElement(document, followEntry(document, entries, "DecodeParms"), several));
    const Ref<Number> predictor =
        parameters ? Host::cast<Number>(followEntry(document, *parameters, "Predictor")) : nullptr;
    return several || (predictor && predictor->integer() > 1) ? Coding::Other : Coding::Flate;
}

Ref<Host::MemoryStripe> inflated(const Host::MemoryStripe& raw, std::uint64_t limit) {
    const Ref<BlockFilter> filter = orThrow(Host::ZlibFilter::createDecompressorStream());
    Host::ByteBuffer bytes;
    Host::Error::set(Host::NoError);
    if (!convert(*filter, raw.bytes(), bytes, limit)) {
        if (Host::Error::get() == Host::OutOfMemory) throw std::bad_alloc();
        return fail(CodingFailed, "Failed to inflate the data of a stream");
    }
    bytes.shrink();
    return orThrow(Host::MemoryStripe::create(std::move(bytes)));
}

Ref<Host::MemoryStripe> decoded(Document& document, const Ref<Stream>& stream,
                                std::uint64_t limit) {
    const Ref<Dictionary> entries = stream->dict();
    if (!entries) return fail(StreamDictionaryMissing, "The stream has no dictionary");
    const Coding coding = codingOf(document, *entries);
    if (coding == Coding::Other) {
        return fail(FilterUnsupported, "A stream is not stored plainly or by FlateDecode alone");
    }
    Ref<Host::MemoryStripe> bytes = rawBytes(document, stream);
    if (bytes && coding == Coding::Flate) bytes = inflated(*bytes, limit);
    if (bytes && bytes->size() > limit) {
        return fail(OutOfRange, "A stream holds more bytes than ", limit);
    }
    return bytes;
}

} // namespace

// A stream to which no data was attached has none afterwards: what is attached would be taken for
// decoded data.
Ref<Host::MemoryStripe> rawBytes(Document& document, const Ref<Stream>& stream) {
    const Ref<StreamObj> held = Host::cast<StreamObj>(stream);
    const bool attached = held && held->strmData();
    const bool changed = held && held->changed();
    const Ref<Interfaces::Stripe> data = document.readStreamData(stream, false);
    if (held && !attached) {
        held->strmData(nullptr);
        if (!changed) held->resetChanged();
    }
    if (!data) return nullptr;
    Host::ByteBuffer bytes;
    if (!bytes.resize(data->size())) throw std::bad_alloc();
    if (data->position(0) != 0 || data->readBytes(bytes.data(), bytes.size()) != bytes.size()) {
        return fail(CodingFailed, "Failed to read the data of a stream");
    }
    return orThrow(Host::MemoryStripe::create(std::move(bytes)));
}

bool canDecode(const Document& document, const Dictionary& entries) {
    return codingOf(document, entries) != Coding::Other;
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
