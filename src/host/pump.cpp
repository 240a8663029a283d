#include "host/pump.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace Host {

namespace {

constexpr std::size_t blockSize = 65536;

class Pump {
public:
    Pump(Interfaces::Stripe& source, Interfaces::BlockFilter& filter, ByteBuffer& target) noexcept
        : source_(source), filter_(filter), target_(target) {}

    PumpResult run() noexcept {
        if (!input_.resize(blockSize) || !output_.resize(blockSize)) {
            return PumpResult::ConvertFailed;
        }
        if (source_.position(0) != 0) return PumpResult::ReadFailed;
        std::uint64_t left = source_.size();
        while (left != 0 || held_ != 0) {
            if (!topUp(left)) return PumpResult::ReadFailed;
            const PumpResult result = convert();
            if (result != PumpResult::Done) return result;
        }
        return flush();
    }

private:
    bool topUp(std::uint64_t& left) noexcept {
        const std::uint64_t wanted = std::min<std::uint64_t>(left, blockSize - held_);
        if (source_.readBytes(input_.data() + held_, wanted) != wanted) return false;
        held_ += wanted;
        left -= wanted;
        return true;
    }

    PumpResult convert() noexcept {
        Interfaces::BlockFilter::Progress progress;
        const auto input = input_.span().first(held_);
        if (!filter_.convert(input, {output_.data(), blockSize}, progress)) {
            return PumpResult::ConvertFailed;
        }
        if (progress.consumed == 0 && progress.produced == 0) return PumpResult::ConvertFailed;
        held_ -= progress.consumed;
        if (held_ != 0) std::memmove(input_.data(), input_.data() + progress.consumed, held_);
        const bool written = target_.append(output_.data(), progress.produced);
        return written ? PumpResult::Done : PumpResult::WriteFailed;
    }

    PumpResult flush() noexcept {
        for (;;) {
            std::uint64_t produced = 0;
            const auto report = filter_.flush({output_.data(), blockSize}, produced);
            if (report == Interfaces::BlockFilter::Flush::Finished) return PumpResult::Done;
            if (report != Interfaces::BlockFilter::Flush::More) return PumpResult::FlushFailed;
            if (!target_.append(output_.data(), produced)) return PumpResult::FlushedWriteFailed;
        }
    }

    Interfaces::Stripe& source_;
    Interfaces::BlockFilter& filter_;
    ByteBuffer& target_;
    ByteBuffer input_;
    ByteBuffer output_;
    std::size_t held_ = 0;
};

} // namespace

PumpResult pump(Interfaces::Stripe& source, Interfaces::BlockFilter& filter,
                ByteBuffer& target) noexcept {
    return Pump(source, filter, target).run();
}

} // namespace Host
