// The zlib filters: any bytes are inflated in one block and in blocks of many sizes, and deflated
// and inflated again. The first four bytes of the input choose the sizes and the level.

#include "target.h"

#include <host/stream.h>

#include <algorithm>
#include <optional>
#include <vector>

using Fuzzing::Bytes;
using Fuzzing::claim;
using Interfaces::BlockFilter;

namespace {

constexpr std::size_t largestResult = std::size_t{16} << 20;

struct BlockSizes {
    std::size_t input;
    std::size_t output;
};

using Result = std::optional<std::vector<std::uint8_t>>;

bool drain(BlockFilter& filter, std::vector<std::uint8_t>& room, Result& result) {
    for (;;) {
        std::uint64_t produced = 0;
        const BlockFilter::Flush flushed = filter.flush(room, produced);
        claim(produced <= room.size(), "no more is produced than there is room for");
        if (flushed == BlockFilter::Flush::Failed) return false;
        if (flushed == BlockFilter::Flush::Finished) {
            claim(produced == 0, "nothing comes with the end");
            return true;
        }
        claim(produced != 0, "flushing gets on");
        result->insert(result->end(), room.begin(),
                       room.begin() + static_cast<std::ptrdiff_t>(produced));
    }
}

/// What the filter makes of `data`; nothing where it refuses. Cut off at `largestResult`.
Result filtered(BlockFilter& filter, Bytes data, BlockSizes sizes) {
    Result result(std::in_place);
    std::vector<std::uint8_t> room(sizes.output);
    while (!data.empty() && result->size() < largestResult) {
        const Bytes block = data.first(std::min(sizes.input, data.size()));
        BlockFilter::Progress progress;
        if (!filter.convert(block, room, progress)) return std::nullopt;
        claim(progress.consumed <= block.size(), "no more is consumed than was given");
        claim(progress.produced <= room.size(), "no more is produced than there is room for");
        claim(progress.consumed + progress.produced != 0, "converting gets on");
        data = data.subspan(progress.consumed);
        result->insert(result->end(), room.begin(),
                       room.begin() + static_cast<std::ptrdiff_t>(progress.produced));
    }
    if (result->size() >= largestResult || drain(filter, room, result)) return result;
    return std::nullopt;
}

Result inflated(Bytes data, BlockSizes sizes) {
    const auto filter = Host::ZlibFilter::createDecompressorStream();
    claim(filter != nullptr, "a decompressor is made");
    return filtered(*filter, data, sizes);
}

/// The highest levels take so long that they come up seldom.
std::uint32_t levelFrom(std::uint8_t byte) noexcept {
    return byte < 250 ? byte % 10 : byte - 243U;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) return 0;
    Fuzzing::silenceLog();
    const Bytes rest(data + 4, size - 4);
    // Blocks from 1 byte up, small ones more often than not.
    const BlockSizes sizes{1 + std::size_t{data[0]} * data[0] / 16,
                           1 + std::size_t{data[1]} * data[1] / 16};
    const BlockSizes whole{std::max<std::size_t>(rest.size(), 1), 65536};

    const Result inOne = inflated(rest, whole);
    const Result inBlocks = inflated(rest, sizes);
    if (!inOne || inOne->size() < largestResult) {
        claim(inOne.has_value() == inBlocks.has_value(), "block sizes decide over no success");
        claim(inOne == inBlocks, "block sizes make no difference");
    }

    const auto compressor = Host::ZlibFilter::createCompressorStream(levelFrom(data[2]));
    claim(compressor != nullptr, "a compressor is made");
    const Result deflated = filtered(*compressor, rest, sizes);
    claim(deflated.has_value(), "anything can be deflated");
    const Result back = inflated(*deflated, sizes);
    claim(back && std::ranges::equal(*back, rest), "what was deflated inflates to what it was");
    return 0;
}
