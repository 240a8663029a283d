#include <host/error.h>
#include <host/stripe_adapters.h>

#include <algorithm>
#include <cstring>

namespace Adapters::Stripe {

namespace {

constexpr std::uint64_t blockSize = std::uint64_t{64} << 10;
/// Blocks begin at multiples of this. Stepping back then finds the bytes before, and a jump does
/// not read too many.
constexpr std::uint64_t alignment = std::uint64_t{4} << 10;

} // namespace

Host::Ref<Buffered> Buffered::create(Host::Ref<Interfaces::Stripe> base) noexcept {
    if (!base) {
        Host::Error::set(Host::NullArgument);
        return nullptr;
    }
    if (base->elementSize() != 1 && base->elementSize() != 4) {
        Host::Error::set(Host::InvalidArgument);
        return nullptr;
    }
    Host::ByteBuffer buffer;
    if (!buffer.reserve(blockSize)) return nullptr;
    return Host::make<Buffered>(std::move(base), std::move(buffer));
}

std::uint64_t Buffered::position(std::uint64_t position) noexcept {
    position_ = std::min(position, size());
    return position_;
}

std::span<const std::uint8_t> Buffered::window(std::uint64_t position) const noexcept {
    if (position < start_ || position - start_ >= buffer_.size()) return {};
    return buffer_.span().subspan(position - start_);
}

std::uint64_t Buffered::readBytes(std::uint8_t* buffer, std::uint64_t count) noexcept {
    std::uint64_t done = 0;
    while (done < count && position_ < size()) {
        if (window(position_).empty()) fill();
        const std::span<const std::uint8_t> held = window(position_);
        const std::uint64_t got = std::min<std::uint64_t>(held.size(), count - done);
        if (got == 0) break; // a fault of the base
        std::memcpy(buffer + done, held.data(), got);
        done += got;
        position_ += got;
    }
    return done;
}

std::uint64_t Buffered::writeBytes(const std::uint8_t*, std::uint64_t) noexcept {
    Host::Error::set(Host::NotSupported);
    return 0;
}

void Buffered::fill() noexcept {
    start_ = position_ - position_ % alignment;
    buffer_.clear();
    if (base_->position(start_) != start_) return;
    const std::uint64_t wanted = std::min(blockSize, size() - start_);
    buffer_.extend(std::min(base_->readBytes(buffer_.data(), wanted), wanted));
}

} // namespace Adapters::Stripe
