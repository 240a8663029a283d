#include "support/bytes.h"
#include "support/failing_stripe.h"

#include <host/stripe.h>

#include <gtest/gtest.h>

#include <cstring>

namespace {

using Adapters::Stripe::ElementSize;
using Host::MemoryStripe;
using Host::Ref;
using Testing::Bytes;
using Testing::bytesOf;
using Testing::FailingStripe;
using Call = FailingStripe::Call;
using Fault = FailingStripe::Fault;

Bytes contents(const MemoryStripe& stripe) {
    return {stripe.bytes().begin(), stripe.bytes().end()};
}

TEST(MemoryStripe, ReplacesThenGrowsAndStaysWithinItsEnd) {
    const Ref<MemoryStripe> stripe = MemoryStripe::create(bytesOf("abcdef"));
    EXPECT_EQ(stripe->position(4), 4U);
    EXPECT_EQ(stripe->writeBytes(bytesOf("XYZ").data(), 3), 3U);
    EXPECT_EQ(stripe->position(8), 7U);
    std::uint32_t element = 0;
    EXPECT_EQ(stripe->read(&element, 1), 0U);
    EXPECT_TRUE(stripe->window(7).empty());
    const std::uint32_t mixed[] = {255, 256, 1};
    EXPECT_EQ(stripe->write(mixed, 3), 1U);
    EXPECT_EQ(contents(*stripe), bytesOf("abcdXYZ\xFF"));
}

TEST(Stripe, ByteFormsReportExactlyWhatWasMoved) {
    const Bytes data = Testing::noise(5000);
    for (const Fault fault : {Fault::Failed, Fault::Short, Fault::NoByte}) {
        const Ref<MemoryStripe> memory = MemoryStripe::create();
        const auto stripe = Host::make<FailingStripe>(memory);
        stripe->failAt(Call::Write, fault == Fault::NoByte ? 0 : 3, fault);
        const std::uint64_t put = stripe->writeBytes(data.data(), data.size());
        EXPECT_EQ(put, memory->size());
        EXPECT_EQ(put == data.size(), fault == Fault::NoByte);

        Bytes back(data.size());
        stripe->position(0);
        stripe->failAt(Call::Read, 2, fault);
        const std::uint64_t got = stripe->readBytes(back.data(), back.size());
        EXPECT_EQ(got, fault == Fault::Short ? 1536U : 1024U);
        EXPECT_EQ(std::memcmp(back.data(), data.data(), got), 0);
    }
}

TEST(ByteBuffer, RefusesMoreThanMemoryHolds) {
    Host::ByteBuffer buffer;
    EXPECT_TRUE(buffer.append("abc", 3));
    volatile std::size_t tooMuch = SIZE_MAX - 1; // hidden from the compiler, which would warn
    EXPECT_FALSE(buffer.append("x", tooMuch));
    EXPECT_EQ(Host::Error::get(), Host::OutOfMemory);
}

TEST(ElementSize, PresentsEitherSizeOverEither) {
    const Bytes data = Testing::noise(3000);
    for (const std::uint64_t inner : {1U, 4U}) {
        for (const std::uint64_t outer : {1U, 4U}) {
            const Ref<MemoryStripe> memory = MemoryStripe::create();
            const auto stripe = ElementSize::create(ElementSize::create(memory, inner), outer);
            ASSERT_EQ(stripe->elementSize(), outer);
            const std::vector<std::uint32_t> wide(data.begin(), data.end());
            const void* given = outer == 1 ? static_cast<const void*>(data.data()) : wide.data();
            EXPECT_EQ(stripe->write(given, data.size()), data.size());
            EXPECT_EQ(contents(*memory), data) << outer << " over " << inner;

            stripe->position(1000);
            Bytes raw(data.size() * outer);
            EXPECT_EQ(stripe->read(raw.data(), data.size()), 2000U);
            const auto* source = static_cast<const std::uint8_t*>(given) + 1000 * outer;
            EXPECT_EQ(std::memcmp(raw.data(), source, 2000 * outer), 0)
                << outer << " over " << inner;
        }
    }
    EXPECT_FALSE(ElementSize::create(MemoryStripe::create(), 2));
    EXPECT_EQ(Host::Error::get(), Host::InvalidArgument);
}

} // namespace
