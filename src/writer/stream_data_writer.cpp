#include "values/failure.h"
#include "writer/stored_stream.h"
#include "writer/writer.h"

#include <host/stream.h>
#include <host/string.h>

#include <algorithm>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

using Interfaces::BlockFilter;

constexpr std::size_t blockSize = 65536;

class StreamDataWriter {
public:
    StreamDataWriter(const StoredStream& stored, Interfaces::Stripe& target) noexcept
        : stored_(stored), target_(target) {}

    bool write(bool encode);

private:
    bool chooseFilter(const Dictionary& dict) noexcept;
    bool writeBlocks(Interfaces::Stripe& data) noexcept;
    bool writeBlock(std::span<const std::uint8_t> block) noexcept;
    bool compress(std::span<const std::uint8_t> input) noexcept;
    bool flush() noexcept;
    /// Whether the target took all of it.
    bool put(std::span<const std::uint8_t> bytes) noexcept;

    const StoredStream& stored_;
    Interfaces::Stripe& target_;
    Ref<BlockFilter> compressor_;
    Host::ByteBuffer input_;
    Host::ByteBuffer output_;
    std::uint64_t written_ = 0;
};

bool StreamDataWriter::write(bool encode) {
    const Ref<Dictionary> dict = stored_.dict();
    if (!dict) return false;
    const Ref<NumberObj> length = stored_.length(*dict);
    if (!length) return false;
    if (encode && !chooseFilter(*dict)) return false;
    if (!input_.resize(blockSize) || !output_.resize(blockSize)) {
        return fail(StreamObjectInvalid, "Failed to create encoding converter for stream ",
                    stored_.id());
    }
    const Ref<Interfaces::Stripe> data = stored_.data();
    if (!data || !writeBlocks(*data)) return false;
    if (compressor_ && !flush()) return false;
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
bool StreamDataWriter::writeBlocks(Interfaces::Stripe& data) noexcept {
    const std::uint64_t size = data.size();
    for (std::uint64_t offset = 0; offset < size; offset += blockSize) {
        const std::uint64_t wanted = std::min<std::uint64_t>(size - offset, blockSize);
        const bool placed = data.position(offset) == offset;
        const std::uint64_t read = placed ? data.readBytes(input_.data(), wanted) : 0;
        if (read != wanted) {
            return fail(CodingFailed, "Failed to read updated stream data of stream ", stored_.id(),
                        "; read ", read, " of ", wanted, "; error: ", Host::Error::get());
        }
        if (!writeBlock(input_.span().first(wanted))) return false;
    }
    return true;
}

bool StreamDataWriter::writeBlock(std::span<const std::uint8_t> block) noexcept {
    if (compressor_) return compress(block);
    return put(block) || fail(CodingFailed, "Failed to write stream data of stream ", stored_.id());
}

bool StreamDataWriter::compress(std::span<const std::uint8_t> input) noexcept {
    while (!input.empty()) {
        BlockFilter::Progress progress;
        if (!compressor_->convert(input, {output_.data(), blockSize}, progress) ||
            progress.consumed + progress.produced == 0) {
            return fail(CodingFailed, "Failed to convert data of stream ", stored_.id());
        }
        input = input.subspan(progress.consumed);
        if (!put(output_.span().first(progress.produced))) {
            return fail(CodingFailed, "Failed to write converted stream data of stream ",
                        stored_.id());
        }
    }
    return true;
}

bool StreamDataWriter::flush() noexcept {
    for (;;) {
        std::uint64_t produced = 0;
        const auto report = compressor_->flush({output_.data(), blockSize}, produced);
        if (report == BlockFilter::Flush::Finished) return true;
        if (report != BlockFilter::Flush::More) {
            return fail(CodingFailed, "Failed to flush conversion of stream ", stored_.id());
        }
        if (!put(output_.span().first(produced))) {
            return fail(CodingFailed, "Failed to write flushed converted stream data of stream ",
                        stored_.id());
        }
    }
}

bool StreamDataWriter::put(std::span<const std::uint8_t> bytes) noexcept {
    written_ += bytes.size();
    return bytes.empty() || target_.writeBytes(bytes.data(), bytes.size()) == bytes.size();
}

} // namespace

bool writeStreamData(const DocumentState& state, StreamObj& stream, Interfaces::Stripe& target,
                     bool encode) {
    const StoredStream stored(state, stream);
    return StreamDataWriter(stored, target).write(encode);
}

} // namespace Libraries::Files::PDF
