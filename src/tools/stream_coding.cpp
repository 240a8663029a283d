#include "tools/stream_coding.h"

#include "tools/failure.h"
#include "tools/references.h"

#include <host/stream.h>

#include <algorithm>
#include <span>
#include <vector>

namespace Libraries::Files::PDF::Tools {

namespace {

using Interfaces::BlockFilter;

constexpr std::size_t blockSize = 65536;

/// The only element of an array, or the value itself; null for an array of none.
Ref<Value> soleElement(const Document& document, Ref<Value> value, bool& several) {
    const Ref<Array> list = Host::cast<Array>(value);
    several = list && list->size() > 1;
    if (!list) return value;
    return list->size() == 0 ? nullptr : follow(document, list->get(0));
}

/// Room for one more block, or to double what there is. Throws where memory is exhausted.
std::span<std::uint8_t> roomIn(Host::ByteBuffer& buffer) {
    const std::size_t size = std::max(blockSize, buffer.size());
    std::uint8_t* const room = buffer.room(size);
    if (room == nullptr) throw std::bad_alloc();
    return {room, size};
}

/// Sends data through a filter, block by block.
class Conversion {
public:
    Conversion(BlockFilter& filter, Host::ByteBuffer& output, std::uint64_t limit) noexcept
        : filter_(filter), output_(output), limit_(limit) {}

    [[nodiscard]] Inflated run(Interfaces::Stripe& data);
    [[nodiscard]] Inflated run(std::span<const std::uint8_t> data);

private:
    [[nodiscard]] bool isTooLarge() const noexcept { return output_.size() > limit_; }
    [[nodiscard]] Inflated take(std::span<const std::uint8_t> input);
    [[nodiscard]] Inflated finish();
    [[nodiscard]] static Inflated damaged();

    BlockFilter& filter_;
    Host::ByteBuffer& output_;
    std::uint64_t limit_;
    std::vector<std::uint8_t> block_; ///< of data that is not held in memory
};

Inflated Conversion::damaged() {
    if (Host::Error::get() == Host::OutOfMemory) throw std::bad_alloc();
    return Inflated::Damaged;
}

Inflated Conversion::take(std::span<const std::uint8_t> input) {
    while (!input.empty() && !isTooLarge()) {
        BlockFilter::Progress progress;
        if (!filter_.convert(input, roomIn(output_), progress)) return damaged();
        if (progress.consumed == 0 && progress.produced == 0) return damaged();
        input = input.subspan(progress.consumed);
        output_.extend(progress.produced);
    }
    return isTooLarge() ? Inflated::TooLarge : Inflated::Done;
}

Inflated Conversion::finish() {
    while (!isTooLarge()) {
        std::uint64_t produced = 0;
        const auto report = filter_.flush(roomIn(output_), produced);
        if (report == BlockFilter::Flush::Finished) return Inflated::Done;
        if (report == BlockFilter::Flush::Failed) return damaged();
        output_.extend(produced);
    }
    return Inflated::TooLarge;
}

Inflated Conversion::run(Interfaces::Stripe& data) {
    Host::Error::set(Host::NoError);
    const std::uint64_t size = data.size();
    for (std::uint64_t position = 0; position < size;) {
        std::span<const std::uint8_t> input = data.window(position);
        input = input.first(std::min<std::uint64_t>(input.size(), size - position));
        if (input.empty()) {
            block_.resize(std::min<std::uint64_t>(blockSize, size - position));
            const bool read = data.position(position) == position &&
                              data.readBytes(block_.data(), block_.size()) == block_.size();
            if (!read) fail(SourceNotRead, "Failed to read the data of a stream");
            input = block_;
        }
        const Inflated taken = take(input);
        if (taken != Inflated::Done) return taken;
        position += input.size();
    }
    return finish();
}

Inflated Conversion::run(std::span<const std::uint8_t> data) {
    Host::Error::set(Host::NoError);
    const Inflated taken = take(data);
    return taken == Inflated::Done ? finish() : taken;
}

/// Takes what stripes and spans are taken by.
template <class Data>
Host::ByteBuffer compressed(Data& data) {
    Host::ByteBuffer output;
    const auto filter = orThrow(Host::ZlibFilter::createCompressorStream(0));
    if (Conversion(*filter, output, UINT64_MAX).run(data) != Inflated::Done) {
        fail(CodingFailed, "Failed to deflate the data of a stream");
    }
    output.shrink();
    return output;
}

} // namespace

Coding codingOf(const Document& document, const Ref<Dictionary>& entries) {
    const Coding other{Coding::Kind::Other, {}};
    bool several = false;
    const Ref<Value> filter =
        soleElement(document, followEntry(document, entries, "Filter"), several);
    if (several) return other;
    if (isNothing(filter)) return {};
    if (!isName(filter, "FlateDecode")) return other;
    const Ref<Value> value =
        soleElement(document, followEntry(document, entries, "DecodeParms"), several);
    const Ref<Dictionary> parameters = Host::cast<Dictionary>(value);
    if (several || (!parameters && !isNothing(value))) return other;
    const auto prediction = predictionOf(document, parameters);
    return prediction ? Coding{Coding::Kind::Flate, *prediction} : other;
}

Inflated inflate(Interfaces::Stripe& data, Host::ByteBuffer& output, std::uint64_t limit) {
    const auto filter = orThrow(Host::ZlibFilter::createDecompressorStream());
    return Conversion(*filter, output, limit).run(data);
}

Host::ByteBuffer deflated(Interfaces::Stripe& data) {
    return compressed(data);
}

Host::ByteBuffer deflated(std::span<const std::uint8_t> data) {
    return compressed(data);
}

} // namespace Libraries::Files::PDF::Tools
