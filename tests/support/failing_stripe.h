#pragma once

#include <host/ref.h>
#include <host/stripe.h>

#include <array>
#include <cstdint>
#include <utility>

namespace Support {

/// A stripe as an application makes it - no window, no byte forms - that can be made to fail. It
/// counts its calls, so that a first, faultless run tells how many faults there are to inject.
class FailingStripe final : public Interfaces::Stripe {
public:
    enum class Call : std::size_t { Read, Seek, Write };
    /// Short moves half of what is asked for; Misplaced is a seek that ends up one element off;
    /// NoByte reads a first element that is no byte.
    enum class Fault { Failed, Short, Misplaced, NoByte };

    explicit FailingStripe(Host::Ref<Interfaces::Stripe> base) : base_(std::move(base)) {}

    /// Makes the call number `number` of its kind fail, counted from 1 and from now on; 0 for none.
    void failAt(Call call, std::uint64_t number, Fault fault = Fault::Failed) {
        counts_ = {};
        call_ = call;
        number_ = number;
        fault_ = fault;
    }
    [[nodiscard]] std::uint64_t calls(Call call) const {
        return counts_[static_cast<std::size_t>(call)];
    }

    [[nodiscard]] std::uint64_t elementSize() const noexcept override { return 4; }
    [[nodiscard]] std::uint64_t size() const noexcept override { return base_->size(); }
    [[nodiscard]] std::uint64_t position() const noexcept override { return base_->position(); }
    std::uint64_t position(std::uint64_t position) noexcept override {
        if (!faulty(Call::Seek)) return base_->position(position);
        if (fault_ != Fault::Misplaced) return UINT64_MAX;
        return base_->position(position == 0 ? 1 : position - 1);
    }
    std::uint64_t read(void* buffer, std::uint64_t count) noexcept override {
        if (!faulty(Call::Read)) return base_->read(buffer, count);
        const std::uint64_t got = base_->read(buffer, reduced(count));
        if (got != 0 && fault_ == Fault::NoByte) *static_cast<std::uint32_t*>(buffer) = 256;
        return got;
    }
    std::uint64_t write(const void* buffer, std::uint64_t count) noexcept override {
        return base_->write(buffer, faulty(Call::Write) ? reduced(count) : count);
    }

private:
    bool faulty(Call call) noexcept {
        return ++counts_[static_cast<std::size_t>(call)] == number_ && call == call_;
    }
    [[nodiscard]] std::uint64_t reduced(std::uint64_t count) const noexcept {
        if (fault_ == Fault::NoByte) return count;
        return fault_ == Fault::Short ? count / 2 : 0;
    }

    Host::Ref<Interfaces::Stripe> base_;
    std::array<std::uint64_t, 3> counts_{};
    Call call_ = Call::Read;
    std::uint64_t number_ = 0;
    Fault fault_ = Fault::Failed;
};

} // namespace Support
