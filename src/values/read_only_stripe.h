#pragma once

#include "values/failure.h"

#include <host/stripe.h>
#include <host/stripe_adapters.h>

#include <algorithm>
#include <cstdint>

namespace Libraries::Files::PDF {

/// What the library's own views of data share: a position, and that nothing can be written.
class ReadOnlyStripe : public Adapters::Stripe::Base {
public:
    [[nodiscard]] std::uint64_t position() const noexcept final { return position_; }
    /// Positions behind the end are refused: the end is what is reached.
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
