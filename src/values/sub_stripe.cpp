#include "values/sub_stripe.h"

#include <algorithm>
#include <mutex>

namespace Libraries::Files::PDF {

template <class Transfer>
std::uint64_t SubStripe::readBase(const void* buffer, std::uint64_t count,
                                  Transfer transfer) noexcept {
    if (buffer == nullptr) return fail(InvalidArgument);
    if (count == 0) return 0;
    // The bound includes the start of the view. So a reader at the very end of a view that begins
    // behind the start of its base gets nothing, and no error.
    if (position_ >= length_ + start_) return fail(OutOfRange);

    const std::uint64_t wanted = std::min(count, length_ - position_);
    const std::lock_guard guard(*lock_);
    if (base_->position(start_ + position_) != start_ + position_) return 0;
    const std::uint64_t read = std::min(transfer(wanted), wanted);
    if (read != wanted) {
        report(LogLevel::Warning, "Read from base ", read, " of requested ", wanted);
    }
    position_ += read;
    return read;
}

std::uint64_t SubStripe::read(void* buffer, std::uint64_t count) noexcept {
    return readBase(buffer, count,
                    [&](std::uint64_t wanted) { return base_->read(buffer, wanted); });
}

std::uint64_t SubStripe::readBytes(std::uint8_t* buffer, std::uint64_t count) noexcept {
    return readBase(buffer, count,
                    [&](std::uint64_t wanted) { return base_->readBytes(buffer, wanted); });
}

std::span<const std::uint8_t> SubStripe::window(std::uint64_t position) const noexcept {
    if (position >= length_) return {};
    const std::span<const std::uint8_t> base = base_->window(start_ + position);
    return base.first(std::min<std::uint64_t>(base.size(), length_ - position));
}

} // namespace Libraries::Files::PDF
