#include <host/byte_buffer.h>
#include <host/memory_stripe.h>
#include <host/stripe.h>

#include <algorithm>
#include <cstring>

namespace Host {

Ref<MemoryStripe> MemoryStripe::create() noexcept {
    return create(ByteBuffer());
}

Ref<MemoryStripe> MemoryStripe::create(ByteBuffer bytes) noexcept {
    return make<MemoryStripe>(std::move(bytes));
}

Ref<MemoryStripe> MemoryStripe::create(std::span<const std::uint8_t> bytes) noexcept {
    ByteBuffer copy;
    return copy.append(bytes.data(), bytes.size()) ? create(std::move(copy)) : nullptr;
}

std::uint64_t MemoryStripe::position(std::uint64_t position) noexcept {
    position_ = std::min<std::uint64_t>(position, bytes_.size());
    return position_;
}

std::uint64_t MemoryStripe::readBytes(std::uint8_t* buffer, std::uint64_t count) noexcept {
    const std::uint64_t read = std::min(count, size() - position_);
    if (read != 0) std::memcpy(buffer, bytes_.data() + position_, read);
    position_ += read;
    return read;
}

std::uint64_t MemoryStripe::writeBytes(const std::uint8_t* bytes, std::uint64_t count) noexcept {
    const std::uint64_t replaced = std::min(count, size() - position_);
    if (!bytes_.append(bytes + replaced, count - replaced)) return 0;
    if (replaced != 0) std::memcpy(bytes_.data() + position_, bytes, replaced);
    position_ += count;
    return count;
}

std::span<const std::uint8_t> MemoryStripe::window(std::uint64_t position) const noexcept {
    return position < size() ? bytes_.span().subspan(position) : std::span<const std::uint8_t>{};
}

} // namespace Host
