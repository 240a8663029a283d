#pragma once

#include "values/failure.h"

#include <host/stripe.h>
#include <host/stripe_adapters.h>

#include <algorithm>
#include <cstdint>

namespace Libraries::Files::PDF {

/// Base of the library's own views of data. They have a position and cannot be written to.
class ReadOnlyStripe : public Adapters::Stripe::Base {
public:
    [[nodiscard]] std::uint64_t position() const noexcept final { return position_; }
    /// A position behind the end is refused: the stripe moves to the end.
    std::uint64_t position(std::uint64_t position) noexcept final {
        position_ = std::min(position, size());
        return position_;
    }
    std::uint64_t write(const void*, std::uint64_t) noexcept final { return fail(NotSupported); }
    std::uint64_t writeBytes(const std::uint8_t*, std::uint64_t) noexcept final {
        return fail(NotSupported);
    }

protected:
    std::uint64_t position_ = 0;
};

} // namespace Libraries::Files::PDF
