#include "host/pump.h"

#include <host/byte_buffer.h>

#include <algorithm>
#include <cstring>
#include <span>

namespace Host {

namespace {

constexpr std::size_t blockSize = 65536;

class Pump {
public:
    Pump(Interfaces::Stripe& source, Interfaces::BlockFilter& filter, ByteBuffer& target) noexcept
        : source_(source), filter_(filter), target_(target), reserved_(target.size()) {}

    PumpResult run() noexcept {
        const std::uint64_t size = source_.size();
        if (source_.position(0) != 0) {
            shortRead_ = {0, std::min<std::uint64_t>(size, blockSize)};
            return PumpResult::ReadFailed;
        }
        expected_ = static_cast<std::size_t>(size);
        const std::span<const std::uint8_t> held = source_.window(0);
        const PumpResult result =
            held.size() >= size ? convertHeld(held.first(size)) : convertBlocks(size);
        return result == PumpResult::Done ? flush() : result;
    }

    [[nodiscard]] const ShortRead& shortRead() const noexcept { return shortRead_; }

private:
    /// Sends data that the source holds in memory as a whole, without blocks.
    PumpResult convertHeld(std::span<const std::uint8_t> input) noexcept {
        PumpResult result = PumpResult::Done;
        while (!input.empty() && result == PumpResult::Done)
            result = convert(input);
        return result;
    }

    PumpResult convertBlocks(std::uint64_t left) noexcept {
        ByteBuffer block;
        if (!block.resize(blockSize)) return PumpResult::ConvertFailed;
        std::size_t held = 0;
        while (left != 0 || held != 0) {
            const std::uint64_t wanted = std::min<std::uint64_t>(left, blockSize - held);
            shortRead_ = {source_.readBytes(block.data() + held, wanted), wanted};
            if (shortRead_.read != wanted) return PumpResult::ReadFailed;
            left -= wanted;
            std::span<const std::uint8_t> input = block.span().first(held + wanted);
            const PumpResult result = convert(input);
            if (result != PumpResult::Done) return result;
            held = input.size();
            if (held != 0) std::memmove(block.data(), input.data(), held);
        }
        return PumpResult::Done;
    }

    /// Converts from the front of `input` and cuts off what it has used.
    PumpResult convert(std::span<const std::uint8_t>& input) noexcept {
        const std::span<std::uint8_t> output = room();
        if (output.empty()) return PumpResult::WriteFailed;
        Interfaces::BlockFilter::Progress progress;
        if (!filter_.convert(input, output, progress)) return PumpResult::ConvertFailed;
        if (progress.consumed == 0 && progress.produced == 0) return PumpResult::ConvertFailed;
        input = input.subspan(progress.consumed);
        take(progress.produced);
        return PumpResult::Done;
    }

    PumpResult flush() noexcept {
        for (;;) {
            const std::span<std::uint8_t> output = room();
            if (output.empty()) return PumpResult::FlushedWriteFailed;
            std::uint64_t produced = 0;
            const auto report = filter_.flush(output, produced);
            if (report == Interfaces::BlockFilter::Flush::Finished) return PumpResult::Done;
            if (report != Interfaces::BlockFilter::Flush::More) return PumpResult::FlushFailed;
            take(produced);
        }
    }

    /// The room behind the target's bytes. If none is left it makes as much as source or target
    /// hold, at least a block; just a block when there is no memory for more. Empty when there is
    /// none.
    [[nodiscard]] std::span<std::uint8_t> room() noexcept {
        const std::size_t size = target_.size();
        for (const std::size_t wanted : {std::max({size, expected_, blockSize}), blockSize}) {
            if (size < reserved_) break;
            if (target_.reserve(size + wanted)) reserved_ = size + wanted;
        }
        if (size == reserved_) return {};
        return {target_.data() + size, reserved_ - size};
    }

    void take(std::uint64_t produced) noexcept { target_.extend(produced); }

    Interfaces::Stripe& source_;
    Interfaces::BlockFilter& filter_;
    ByteBuffer& target_;
    std::size_t reserved_;
    std::size_t expected_ = 0;
    ShortRead shortRead_;
};

} // namespace

PumpResult pump(Interfaces::Stripe& source, Interfaces::BlockFilter& filter, ByteBuffer& target,
                ShortRead* shortRead) noexcept {
    Pump pump(source, filter, target);
    const PumpResult result = pump.run();
    if (shortRead != nullptr) *shortRead = pump.shortRead();
    return result;
}

} // namespace Host
