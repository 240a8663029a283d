#include "support/bytes.h"

#include <host/error.h>
#include <host/stream.h>

#include <gtest/gtest.h>

#include <optional>

namespace {

using Host::Ref;
using Host::ZlibFilter;
using Interfaces::BlockFilter;
using Testing::Bytes;

struct Blocks {
    std::size_t input;
    std::size_t output;
};
constexpr Blocks blocks[] = {{1, 1}, {1, 65536}, {65536, 1}, {7, 333}, {65536, 65536}};

/// What the filter makes of the input; nothing when it fails. Throws when it gets nowhere.
std::optional<Bytes> run(const Ref<BlockFilter>& filter, const Bytes& input, Blocks sizes) {
    Bytes result;
    Bytes output(sizes.output);
    std::size_t used = 0;
    for (bool ended = false;;) {
        BlockFilter::Progress progress;
        if (used < input.size()) {
            const std::span block(input.data() + used, std::min(sizes.input, input.size() - used));
            if (!filter->convert(block, output, progress)) return std::nullopt;
        } else {
            const BlockFilter::Flush state = filter->flush(output, progress.produced);
            if (state == BlockFilter::Flush::Failed) return std::nullopt;
            ended = state == BlockFilter::Flush::Finished;
        }
        if (ended) return result;
        if (progress.consumed + progress.produced == 0) throw std::logic_error("no progress");
        result.insert(result.end(), output.data(), output.data() + progress.produced);
        used += progress.consumed;
    }
}

std::optional<Bytes> inflate(const Bytes& input, Blocks sizes) {
    return run(ZlibFilter::createDecompressorStream(), input, sizes);
}

Bytes deflate(const Bytes& input, std::uint32_t level = 0, Blocks sizes = {65536, 65536}) {
    return run(ZlibFilter::createCompressorStream(level), input, sizes).value();
}

Bytes repetitive(std::size_t size) {
    Bytes bytes = Testing::noise(size);
    for (std::uint8_t& byte : bytes)
        byte = byte > 16 ? byte % 2 : byte;
    return bytes;
}

TEST(Zlib, RoundTripsInBlocksOfAnySize) {
    for (const std::size_t size : {0U, 1U, 65535U, 65536U, 65537U}) {
        for (const Bytes& data : {Testing::noise(size), repetitive(size), Bytes(size)}) {
            for (const std::uint32_t level : {0U, 1U, 12U}) {
                const Bytes packed = deflate(data, level, {size / 3 + 1, 333});
                for (const Blocks sizes : blocks) {
                    EXPECT_TRUE(inflate(packed, sizes) == data)
                        << size << ", level " << level << ": " << sizes.input;
                }
            }
        }
    }
    const Bytes large = repetitive(8 << 20);
    Bytes packed = deflate(large);
    EXPECT_LT(packed.size(), large.size() / 2);
    EXPECT_LT(packed.size(), deflate(large, 1).size());
    packed.resize(packed.size() + 200'000);
    EXPECT_TRUE(inflate(packed, {65536, 65536}) == large) << "with trailing bytes";
    EXPECT_FALSE(ZlibFilter::createCompressorStream(13));
    EXPECT_EQ(Host::Error::get(), Host::InvalidArgument);
}

TEST(Zlib, RefusesDamagedData) {
    const Bytes stored{0x78, 0x01, 1, 3, 0, 0xFC, 0xFF, 'a', 'b', 'c', 0x02, 0x4D, 0x01, 0x27};
    const struct {
        const char* name;
        std::size_t offset;
        Bytes bytes;
    } rows[] = {
        {"header checksum", 1, {0x02}},
        {"preset dictionary",
         1,
         {0x20, 0, 0, 0, 1, 1, 3, 0, 0xFC, 0xFF, 'a', 'b', 'c', 0x02, 0x4D, 0x01, 0x27}},
        {"block type", 2, {7}},
        {"stored length", 5, {0xFD}},
        {"content", 8, {'x'}},
        {"last byte of the checksum", 13, {0x28}},
        {"distance beyond the start", 2, {0x4B, 0x04, 0x12, 0x00}},
    };
    for (const Blocks sizes : blocks) {
        EXPECT_EQ(inflate(stored, sizes), Testing::bytesOf("abc"));
        EXPECT_EQ(inflate({}, sizes), Bytes());
        for (const auto& row : rows) {
            Bytes damaged = stored;
            damaged.resize(std::max(stored.size(), row.offset + row.bytes.size()));
            std::copy(row.bytes.begin(), row.bytes.end(), damaged.data() + row.offset);
            EXPECT_FALSE(inflate(damaged, sizes)) << row.name << ": " << sizes.input;
        }
    }
}

TEST(Zlib, RefusesDataThatIsCutOffAnywhere) {
    for (const Bytes& data : {repetitive(400), Testing::noise(100), Bytes(100'000)}) {
        const Bytes whole = deflate(data);
        for (std::size_t size = 1; size < whole.size(); ++size) {
            const Bytes part(whole.data(), whole.data() + size);
            for (const Blocks sizes : {Blocks{1, 100}, Blocks{65536, 65536}}) {
                ASSERT_FALSE(inflate(part, sizes)) << size << " of " << whole.size();
            }
        }
    }
}

} // namespace
