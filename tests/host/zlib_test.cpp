#include "support/bytes.h"

#include <host/error.h>
#include <host/stream.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace {

using Host::ZlibFilter;
using Interfaces::BlockFilter;
using Support::Bytes;
using Sizes = std::pair<std::size_t, std::size_t>; // of the input and output blocks

constexpr Sizes large{65536, 65536};
constexpr Sizes sizes[] = {{1, 1}, {1, 65536}, {65536, 1}, {7, 333}, large};

/// What the filter makes of the input; nothing when it fails. Throws when it gets nowhere.
std::optional<Bytes> run(const Host::Ref<BlockFilter>& filter, std::span<const std::uint8_t> input,
                         Sizes size) {
    Bytes result;
    Bytes output(size.second);
    for (auto state = BlockFilter::Flush::More;;) {
        BlockFilter::Progress progress;
        if (!input.empty()) {
            const auto block = input.first(std::min(size.first, input.size()));
            if (!filter->convert(block, output, progress)) return std::nullopt;
        } else {
            state = filter->flush(output, progress.produced);
        }
        if (state == BlockFilter::Flush::Failed) return std::nullopt;
        if (state == BlockFilter::Flush::Finished) return result;
        if (progress.consumed + progress.produced == 0) throw std::logic_error("no progress");
        result.insert(result.end(), output.data(), output.data() + progress.produced);
        input = input.subspan(progress.consumed);
    }
}

std::optional<Bytes> inflate(std::span<const std::uint8_t> input, Sizes size = large) {
    return run(ZlibFilter::createDecompressorStream(), input, size);
}
Bytes deflate(const Bytes& input, std::uint32_t level = 0, Sizes size = large) {
    return run(ZlibFilter::createCompressorStream(level), input, size).value();
}

Bytes repetitive(std::size_t size) {
    Bytes bytes = Support::noise(size);
    for (std::uint8_t& byte : bytes)
        byte = byte > 16 ? byte % 2 : byte;
    return bytes;
}

TEST(Zlib, RoundTripsInBlocksOfAnySize) {
    for (const std::size_t size : {0U, 1U, 65535U, 65536U, 65537U}) {
        for (const Bytes& data : {Support::noise(size), repetitive(size), Bytes(size)}) {
            for (const std::uint32_t level : {0U, 1U, 12U}) {
                const Bytes packed = deflate(data, level, {size / 3 + 1, 333});
                for (const Sizes& blocks : sizes)
                    EXPECT_TRUE(inflate(packed, blocks) == data) << size << ", level " << level;
            }
        }
    }
    const Bytes data = repetitive(8 << 20);
    Bytes packed = deflate(data);
    EXPECT_LT(packed.size(), deflate(data, 1).size());
    packed.resize(packed.size() + 200'000);
    EXPECT_TRUE(inflate(packed) == data) << "with trailing bytes";
    EXPECT_FALSE(ZlibFilter::createCompressorStream(13));
    EXPECT_EQ(Host::Error::get(), Host::InvalidArgument);
}

TEST(Zlib, RefusesDamagedData) {
    const Bytes stored{0x78, 0x01, 1, 3, 0, 0xFC, 0xFF, 'a', 'b', 'c', 0x02, 0x4D, 0x01, 0x27};
    Bytes dictionary{0x78, 0x20, 0, 0, 0, 1};
    dictionary.insert(dictionary.end(), stored.begin() + 2, stored.end());
    const std::tuple<const char*, std::size_t, Bytes> rows[] = {
        {"header checksum", 1, {0x02}},
        {"preset dictionary", 0, dictionary},
        {"block type", 2, {7}},
        {"stored length", 5, {0xFD}},
        {"content", 8, {'x'}},
        {"last byte of the checksum", 13, {0x28}},
        {"distance beyond the start", 2, {0x4B, 0x04, 0x12, 0x00}}};
    for (const Sizes& blocks : sizes) {
        EXPECT_EQ(inflate(stored, blocks), Support::bytesOf("abc"));
        EXPECT_EQ(inflate({}, blocks), Bytes());
        for (const auto& [name, offset, bytes] : rows) {
            Bytes damaged = stored;
            damaged.resize(std::max(stored.size(), offset + bytes.size()));
            std::copy(bytes.begin(), bytes.end(), damaged.data() + offset);
            EXPECT_FALSE(inflate(damaged, blocks)) << name << ": " << blocks.first;
        }
    }
    const Bytes whole = deflate(repetitive(400));
    for (std::size_t size = 1; size < whole.size(); ++size)
        ASSERT_FALSE(inflate(std::span(whole).first(size), {1, 100})) << "cut at " << size;
}

} // namespace
