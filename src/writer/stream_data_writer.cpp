#include "host/pump.h"
#include "values/failure.h"
#include "writer/stored_stream.h"
#include "writer/writer.h"

#include <host/byte_buffer.h>
#include <host/stream.h>
#include <host/string.h>

#include <algorithm>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

constexpr std::size_t blockSize = 65536;

class StreamDataWriter {
public:
    StreamDataWriter(const StoredStream& stored, Interfaces::Stripe& target) noexcept
        : stored_(stored), target_(target) {}

    bool write(bool encode);

private:
    bool chooseFilter(const Dictionary& dict) noexcept;
    bool writeAsItIs(Interfaces::Stripe& data) noexcept;
    bool writeCompressed(Interfaces::Stripe& data) noexcept;
    Host::NoResult failReading(std::uint64_t read, std::uint64_t wanted) noexcept;
    Host::NoResult failCompressing(Host::PumpResult result, const Host::ShortRead& read) noexcept;
    /// Whether the target took all of it.
    bool put(std::span<const std::uint8_t> bytes) noexcept;

    const StoredStream& stored_;
    Interfaces::Stripe& target_;
    Ref<Interfaces::BlockFilter> compressor_;
    Host::ByteBuffer block_;
    std::uint64_t written_ = 0;
};

bool StreamDataWriter::write(bool encode) {
    const Ref<Dictionary> dict = stored_.dict();
    if (!dict) return false;
    const Ref<NumberObj> length = stored_.length(*dict);
    if (!length) return false;
    if (encode && !chooseFilter(*dict)) return false;
    if (!block_.resize(blockSize)) {
        return fail(StreamObjectInvalid, "Failed to create encoding converter for stream ",
                    stored_.id());
    }
    const Ref<Interfaces::Stripe> data = stored_.data();
    if (!data) return false;
    if (compressor_ ? !writeCompressed(*data) : !writeAsItIs(*data)) return false;
    length->integer(static_cast<std::int64_t>(written_));
    return true;
}

bool StreamDataWriter::chooseFilter(const Dictionary& dict) noexcept {
    const Ref<Value> filter = dict.find("Filter"_str);
    if (!filter) return true;
    const Name* name = ofKind<Name>(filter);
    Ref<Host::String> text = name != nullptr ? name->name() : "Unknown"_str;
    if (name != nullptr && text && text->equals("FlateDecode")) {
        compressor_ = stored_.compressor();
        return compressor_ != nullptr;
    }
    if (!text) text = "None"_str;
    return fail(CodingFailed, "Compression method not supported ", text);
}

/// Block by block through memory of its own: the target may be the very stripe that holds the data.
bool StreamDataWriter::writeAsItIs(Interfaces::Stripe& data) noexcept {
    const std::uint64_t size = data.size();
    for (std::uint64_t offset = 0; offset < size; offset += blockSize) {
        const std::uint64_t wanted = std::min<std::uint64_t>(size - offset, blockSize);
        const bool placed = data.position(offset) == offset;
        const std::uint64_t read = placed ? data.readBytes(block_.data(), wanted) : 0;
        if (read != wanted) return failReading(read, wanted);
        if (!put(block_.span().first(wanted))) {
            return fail(CodingFailed, "Failed to write stream data of stream ", stored_.id());
        }
    }
    return true;
}

bool StreamDataWriter::writeCompressed(Interfaces::Stripe& data) noexcept {
    Host::ByteBuffer compressed;
    Host::ShortRead read;
    const Host::PumpResult result = Host::pump(data, *compressor_, compressed, &read);
    if (result != Host::PumpResult::Done) return failCompressing(result, read);
    for (std::size_t offset = 0; offset < compressed.size(); offset += blockSize) {
        const auto rest = compressed.span().subspan(offset);
        if (!put(rest.first(std::min(rest.size(), blockSize)))) {
            return fail(CodingFailed, "Failed to write flushed converted stream data of stream ",
                        stored_.id());
        }
    }
    return true;
}

Host::NoResult StreamDataWriter::failReading(std::uint64_t read, std::uint64_t wanted) noexcept {
    return fail(CodingFailed, "Failed to read updated stream data of stream ", stored_.id(),
                "; read ", read, " of ", wanted, "; error: ", Host::Error::get());
}

Host::NoResult StreamDataWriter::failCompressing(Host::PumpResult result,
                                                 const Host::ShortRead& read) noexcept {
    if (result == Host::PumpResult::ReadFailed) return failReading(read.read, read.wanted);
    const bool flushing = result == Host::PumpResult::FlushFailed;
    return fail(CodingFailed,
                flushing ? "Failed to flush conversion of stream "
                         : "Failed to convert data of stream ",
                stored_.id());
}

bool StreamDataWriter::put(std::span<const std::uint8_t> bytes) noexcept {
    written_ += bytes.size();
    return target_.writeBytes(bytes.data(), bytes.size()) == bytes.size();
}

} // namespace

bool writeStreamData(const DocumentState& state, StreamObj& stream, Interfaces::Stripe& target,
                     bool encode) {
    const StoredStream stored(state, stream);
    return StreamDataWriter(stored, target).write(encode);
}

} // namespace Libraries::Files::PDF
