#pragma once

#include <host/ref.h>
#include <host/stripe.h>
#include <host/stripe_adapters.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace Support {

/// A stripe that holds one slice of its bytes at a time, as a file does: reading fills it, and what
/// was there before is gone. Slices begin at multiples of their size; 0 for none.
class SlicedStripe final : public Adapters::Stripe::Base {
public:
    SlicedStripe(std::string bytes, std::uint64_t sliceSize)
        : bytes_(std::move(bytes)), slice_(sliceSize) {}

    [[nodiscard]] std::uint64_t size() const noexcept override { return bytes_.size(); }
    [[nodiscard]] std::uint64_t position() const noexcept override { return position_; }
    std::uint64_t position(std::uint64_t position) noexcept override {
        return position_ = std::min<std::uint64_t>(position, bytes_.size());
    }
    std::uint64_t readBytes(std::uint8_t* buffer, std::uint64_t count) noexcept override {
        count = std::min<std::uint64_t>(count, bytes_.size() - position_);
        std::copy_n(bytes_.data() + position_, count, buffer);
        if (!slice_.empty() && count != 0) {
            start_ = position_ - position_ % slice_.size();
            held_ = std::min<std::uint64_t>(slice_.size(), bytes_.size() - start_);
            std::copy_n(bytes_.data() + start_, held_, slice_.begin());
        }
        position_ += count;
        return count;
    }
    std::uint64_t writeBytes(const std::uint8_t*, std::uint64_t) noexcept override { return 0; }
    [[nodiscard]] std::span<const std::uint8_t>
    window(std::uint64_t position) const noexcept override {
        if (position < start_ || position - start_ >= held_) return {};
        return std::span(slice_).first(held_).subspan(position - start_);
    }

private:
    std::string bytes_;
    std::vector<std::uint8_t> slice_;
    std::uint64_t start_ = 0;
    std::uint64_t held_ = 0;
    std::uint64_t position_ = 0;
};

} // namespace Support
