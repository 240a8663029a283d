#include "host/slab_heap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

namespace {

using Host::SlabHeap;

struct Piece {
    unsigned char* memory;
    std::size_t size;
    unsigned char mark;
};

/// More pieces than one slab takes, of all sizes, each filled with a mark of its own.
std::vector<Piece> cut(std::size_t count) {
    std::vector<Piece> pieces;
    for (std::size_t index = 0; index < count; ++index) {
        const std::size_t size = 1 + index * 37 % 2100; // the largest do not come from a slab
        auto* memory = static_cast<unsigned char*>(SlabHeap::alloc(size));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % (size % 16 == 0 ? 16 : 8), 0U) << size;
        pieces.push_back({memory, size, static_cast<unsigned char>(index)});
        std::memset(memory, pieces.back().mark, size);
    }
    return pieces;
}

/// Gives pieces back in no order, each with its mark as it was.
void giveBack(std::vector<Piece> pieces) {
    std::ranges::shuffle(pieces, std::minstd_rand(1));
    for (const Piece& piece : pieces) {
        EXPECT_TRUE(std::all_of(piece.memory, piece.memory + piece.size,
                                [&](unsigned char byte) { return byte == piece.mark; }));
        SlabHeap::free(piece.memory, piece.size);
    }
}

TEST(SlabHeap, GivesSlabsBackWithTheirLastPiece) {
    const std::size_t before = SlabHeap::liveSlabs();
    std::thread([&] {
        std::vector<Piece> pieces = cut(1000);
        EXPECT_GT(SlabHeap::liveSlabs(), before + 10);
        giveBack(std::move(pieces));
        EXPECT_EQ(SlabHeap::liveSlabs(), before + 1) << "the one that is cut from";
    }).join();
    EXPECT_EQ(SlabHeap::liveSlabs(), before) << "the thread has ended";

    std::vector<Piece> left;
    std::thread([&] { left = cut(1000); }).join();
    EXPECT_GT(SlabHeap::liveSlabs(), before + 10) << "pieces outlive their thread";
    const Piece last = left.back();
    left.pop_back();
    giveBack(std::move(left));
    EXPECT_EQ(SlabHeap::liveSlabs(), before + 1) << "one piece holds its slab";
    giveBack({last});
    EXPECT_EQ(SlabHeap::liveSlabs(), before);
}

TEST(SlabHeap, TakesPiecesOfOtherThreadsBack) {
    const std::size_t before = SlabHeap::liveSlabs();
    std::vector<Piece> first;
    std::thread([&] { first = cut(500); }).join();
    std::thread([&] {
        std::thread other([&] { giveBack(std::move(first)); });
        for (int round = 0; round < 20; ++round)
            giveBack(cut(200));
        other.join();
    }).join();
    EXPECT_EQ(SlabHeap::liveSlabs(), before);
}

#if defined(__SANITIZE_ADDRESS__) || defined(__has_feature)
#if defined(__SANITIZE_ADDRESS__) || __has_feature(address_sanitizer)
TEST(SlabHeapDeathTest, ShowsPiecesToTheSanitizer) {
    auto* piece = static_cast<volatile unsigned char*>(SlabHeap::alloc(40));
    piece[39] = 1;
    EXPECT_DEATH(piece[40] = 1, "use-after-poison");
    SlabHeap::free(const_cast<unsigned char*>(piece), 40);
    EXPECT_DEATH(piece[0] = 1, "use-after-poison|heap-use-after-free");
}
#endif
#endif

} // namespace
