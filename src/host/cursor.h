#pragma once

#include <host/stripe.h>

#include <cstdint>
#include <span>
#include <string_view>

namespace Host {

/// Walks the bytes of a stripe. It uses the stripe's windows if there are any; else it reads one
/// element at a time and nothing ahead. While a cursor is in use nobody else uses the stripe.
///
/// A read that fails before the end of the data, or gives an element above 255, is a fault. After a
/// fault the cursor gives no more bytes, just as at the end; `failed` tells the two apart. Callers
/// that take the end of the data for the end of a token or line must ask it.
class Cursor {
public:
    /// The result of `next` at the end of the data and after a fault.
    static constexpr int end = -1;

    explicit Cursor(Interfaces::Stripe& stripe) noexcept : stripe_(stripe) {}

    /// Consumes the next byte and gives it; gives `end` if there is none.
    [[nodiscard]] int next() noexcept { return next_ != end_ ? *next_++ : refill(); }

    /// Whether there was a fault.
    [[nodiscard]] bool failed() const noexcept { return failed_; }

    /// Offset of the next byte.
    [[nodiscard]] std::uint64_t position() const noexcept {
        return windowEnd_ - static_cast<std::uint64_t>(end_ - next_);
    }

    /// Moves to `position`. The next read fails if the stripe cannot reach it.
    void seek(std::uint64_t position) noexcept {
        const auto held = static_cast<std::uint64_t>(end_ - begin_);
        if (position <= windowEnd_ && windowEnd_ - position <= held) {
            next_ = end_ - (windowEnd_ - position);
        } else {
            begin_ = next_ = end_ = nullptr;
            windowEnd_ = position;
        }
    }

    /// Steps back over the byte that was read last.
    void back() noexcept { seek(position() - 1); }

    /// The bytes in memory behind the position. `skip` consumes some of them.
    [[nodiscard]] std::string_view ahead() const noexcept {
        return {reinterpret_cast<const char*>(next_), static_cast<std::size_t>(end_ - next_)};
    }
    void skip(std::size_t count) noexcept { next_ += count; }
    /// The byte that `next` gave last and the `count` bytes behind it, which are in memory.
    [[nodiscard]] std::string_view lastAndAhead(std::size_t count) const noexcept {
        return {reinterpret_cast<const char*>(next_) - 1, count + 1};
    }

    [[nodiscard]] std::uint64_t size() const noexcept { return stripe_.size(); }

private:
    static constexpr std::uint64_t unknown = UINT64_MAX;

    int refill() noexcept;
    bool readElement(std::uint64_t position) noexcept;
    bool readAt(std::uint64_t position) noexcept;

    Interfaces::Stripe& stripe_;
    const std::uint8_t* begin_ = nullptr;
    const std::uint8_t* next_ = nullptr;
    const std::uint8_t* end_ = nullptr;
    std::uint64_t windowEnd_ = 0;
    std::uint64_t stripePosition_ = unknown;
    std::uint8_t single_ = 0;
    bool failed_ = false;
};

} // namespace Host
