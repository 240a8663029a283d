#include "host/cursor.h"

namespace Host {

int Cursor::refill() noexcept {
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
    if (stripePosition_ != position && stripe_.position(position) != position) {
        stripePosition_ = unknown;
        return false;
    }
    std::uint32_t element = 0;
    const bool read = stripe_.read(&element, 1) == 1;
    stripePosition_ = read ? position + 1 : unknown;
    if (!read || !Utils::Convert<std::uint32_t, std::uint8_t>::fits(element)) return false;
    single_ = static_cast<std::uint8_t>(element);
    return true;
}

} // namespace Host
