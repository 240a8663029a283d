#pragma once

#include "host/monitor.h"
#include "values/read_only_stripe.h"

#include <host/stripe.h>
#include <pdf/values.h>

#include <cstdint>
#include <span>
#include <utility>

namespace Libraries::Files::PDF {

/// View of a range of another stripe. Several views share one base: each holds the lock
/// while it positions the base and reads.
class SubStripe final : public ReadOnlyStripe {
public:
    SubStripe(Ref<Interfaces::Stripe> base, std::uint64_t start, std::uint64_t length,
              Ref<Host::Mon> lock) noexcept
        : base_(std::move(base)), lock_(std::move(lock)), start_(start), length_(length) {}

    [[nodiscard]] std::uint64_t size() const noexcept override { return length_; }
    std::uint64_t read(void* buffer, std::uint64_t count) noexcept override;
    std::uint64_t readBytes(std::uint8_t* buffer, std::uint64_t count) noexcept override;
    [[nodiscard]] std::span<const std::uint8_t>
    window(std::uint64_t position) const noexcept override;

private:
    /// Positions the base and calls `transfer`, which reads the elements.
    template <class Transfer>
    std::uint64_t readBase(const void* buffer, std::uint64_t count, Transfer transfer) noexcept;

    Ref<Interfaces::Stripe> base_;
    Ref<Host::Mon> lock_;
    std::uint64_t start_;
    std::uint64_t length_;
};

} // namespace Libraries::Files::PDF
