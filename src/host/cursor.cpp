#include "host/cursor.h"

#include <host/stripe_adapters.h>

namespace Host {

int Cursor::refill() noexcept {
    if (failed_) return end;
    const std::uint64_t position = windowEnd_;
    const std::span<const std::uint8_t> window = stripe_.window(position);
    if (!window.empty()) {
        begin_ = next_ = window.data();
        end_ = begin_ + window.size();
        windowEnd_ = position + window.size();
        return *next_++;
    }
    if (!readElement(position)) return end;
    begin_ = &single_;
    next_ = end_ = begin_ + 1;
    windowEnd_ = position + 1;
    return single_;
}

bool Cursor::readElement(std::uint64_t position) noexcept {
    if (readAt(position)) return true;
    stripePosition_ = unknown;
    if (position < stripe_.size()) {
        failed_ = true;
        begin_ = next_ = end_ = nullptr;
        windowEnd_ = position;
    }
    return false;
}

bool Cursor::readAt(std::uint64_t position) noexcept {
    if (stripePosition_ != position && stripe_.position(position) != position) {
        return false;
    }
    std::uint32_t element = 0;
    if (stripe_.read(&element, 1) != 1) return false;
    if (!Utils::Convert<std::uint32_t, std::uint8_t>::fits(element)) return false;
    stripePosition_ = position + 1;
    single_ = static_cast<std::uint8_t>(element);
    return true;
}

} // namespace Host
