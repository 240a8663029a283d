#include "support/bytes.h"
#include "support/failing_stripe.h"

#include <host/stripe.h>

#include <gtest/gtest.h>

#include <cstring>

namespace {

using Adapters::Stripe::ElementSize;
using Host::MemoryStripe;
using Testing::Bytes;
using Testing::bytesOf;
using Testing::FailingStripe;
using Fault = FailingStripe::Fault;

Bytes contents(const MemoryStripe& stripe) {
    return {stripe.bytes().begin(), stripe.bytes().end()};
}

TEST(MemoryStripe, ReplacesThenGrowsAndStaysWithinItsEnd) {
    const auto stripe = MemoryStripe::create(bytesOf("abcdef"));
    EXPECT_EQ(stripe->position(4), 4U);
    EXPECT_EQ(stripe->writeBytes(bytesOf("XYZ").data(), 3), 3U);
    EXPECT_EQ(stripe->position(8), 7U);
    std::uint32_t mixed[] = {255, 256, 1};
    EXPECT_EQ(stripe->read(mixed, 1), 0U);
    EXPECT_TRUE(stripe->window(7).empty());
    EXPECT_EQ(stripe->write(mixed, 3), 1U);
    EXPECT_EQ(contents(*stripe), bytesOf("abcdXYZ\xFF"));

    Host::ByteBuffer buffer;
    volatile std::size_t tooMuch = SIZE_MAX - 1; // hidden from the compiler, which would warn
    EXPECT_TRUE(buffer.append("abc", 3));
    EXPECT_FALSE(buffer.append("x", tooMuch));
    EXPECT_EQ(Host::Error::get(), Host::OutOfMemory);
}

TEST(Stripe, ByteFormsReportExactlyWhatWasMoved) {
    const Bytes data = Testing::noise(5000);
    for (const Fault fault : {Fault::Failed, Fault::Short, Fault::NoByte}) {
        const auto memory = MemoryStripe::create();
        const auto stripe = Host::make<FailingStripe>(memory);
        stripe->failAt(FailingStripe::Call::Write, fault == Fault::NoByte ? 0 : 3, fault);
        const std::uint64_t put = stripe->writeBytes(data.data(), data.size());
        EXPECT_EQ(put, memory->size());
        EXPECT_EQ(put == data.size(), fault == Fault::NoByte);

        Bytes back(data.size());
        stripe->position(0);
        stripe->failAt(FailingStripe::Call::Read, 2, fault);
        const std::uint64_t got = stripe->readBytes(back.data(), back.size());
        EXPECT_EQ(got, fault == Fault::Short ? 1536U : 1024U);
        EXPECT_EQ(std::memcmp(back.data(), data.data(), got), 0);
    }
}

TEST(ElementSize, PresentsEitherSizeOverEither) {
    const Bytes data = Testing::noise(3000);
    const std::vector<std::uint32_t> wide(data.begin(), data.end());
    for (const auto& [inner, outer] : {std::pair{1U, 1U}, {1U, 4U}, {4U, 1U}, {4U, 4U}}) {
        const auto memory = MemoryStripe::create();
        const auto stripe = ElementSize::create(ElementSize::create(memory, inner), outer);
        const auto* given =
            outer == 1 ? data.data() : reinterpret_cast<const std::uint8_t*>(wide.data());
        EXPECT_EQ(stripe->write(given, data.size()), data.size());
        EXPECT_EQ(contents(*memory), data) << outer << " over " << inner;

        stripe->position(1000);
        Bytes raw(data.size() * outer);
        EXPECT_EQ(stripe->read(raw.data(), data.size()), 2000U);
        EXPECT_EQ(std::memcmp(raw.data(), given + 1000 * outer, 2000 * outer), 0) << outer;
    }
    EXPECT_FALSE(ElementSize::create(MemoryStripe::create(), 2));
    EXPECT_EQ(Host::Error::get(), Host::InvalidArgument);
}

} // namespace
