#pragma once

/// @file
/// What helps to make stripes: a base for those that hold bytes, and views of other sizes of
/// element.

#include <host/export.h>
#include <host/ref.h>
#include <host/stripe.h>

#include <cstdint>
#include <span>
#include <utility>

/// Conversions that stripes share.
namespace Utils {

/// Carries element values between sizes: the value stays the same, all 256 of a byte.
template <class Wide, class Narrow>
struct Convert {
    /// The narrow value, never sign-extended where it is unsigned as bytes are.
    static constexpr Wide widen(Narrow value) noexcept { return static_cast<Wide>(value); }
    /// Whether `narrow` keeps the value.
    static constexpr bool fits(Wide value) noexcept { return static_cast<Narrow>(value) == value; }
    /// The lower bits: the value itself where it `fits`.
    static constexpr Narrow narrow(Wide value) noexcept { return static_cast<Narrow>(value); }
};

} // namespace Utils

/// Stripes over other storage or other stripes.
namespace Adapters::Stripe {

/// What stripes that present bytes as 32-bit elements share: `read` and `write` in terms of
/// `readBytes` and `writeBytes`.
class FILES_PDF_EXPORT Base : public Interfaces::Stripe {
public:
    [[nodiscard]] std::uint64_t elementSize() const noexcept override { return 4; }
    [[nodiscard]] std::uint64_t read(void* buffer, std::uint64_t count) noexcept override;
    [[nodiscard]] std::uint64_t write(const void* buffer, std::uint64_t count) noexcept override;
    [[nodiscard]] std::uint64_t readBytes(std::uint8_t* buffer,
                                          std::uint64_t count) noexcept override = 0;
    [[nodiscard]] std::uint64_t writeBytes(const std::uint8_t* bytes,
                                           std::uint64_t count) noexcept override = 0;
};

/// Presents a stripe of 1-byte elements as one of 32-bit elements, or the other way round.
///
/// Position and size are the base's own; so is what it reads and writes.
class FILES_PDF_EXPORT ElementSize final : public Interfaces::Stripe {
public:
    /// `elementSize` is what the adapter presents: 1 or 4; the base has the same or the other.
    /// Null with `NullArgument` or `InvalidArgument` set when that does not hold.
    [[nodiscard]] static Host::Ref<ElementSize> create(Host::Ref<Interfaces::Stripe> base,
                                                       std::uint64_t elementSize) noexcept;

    [[nodiscard]] std::uint64_t elementSize() const noexcept override { return elementSize_; }
    [[nodiscard]] std::uint64_t size() const noexcept override { return base_->size(); }
    [[nodiscard]] std::uint64_t position() const noexcept override { return base_->position(); }
    std::uint64_t position(std::uint64_t position) noexcept override {
        return base_->position(position);
    }
    [[nodiscard]] std::uint64_t read(void* buffer, std::uint64_t count) noexcept override;
    [[nodiscard]] std::uint64_t write(const void* buffer, std::uint64_t count) noexcept override;
    [[nodiscard]] std::uint64_t readBytes(std::uint8_t* buffer,
                                          std::uint64_t count) noexcept override;
    [[nodiscard]] std::uint64_t writeBytes(const std::uint8_t* bytes,
                                           std::uint64_t count) noexcept override;
    [[nodiscard]] std::span<const std::uint8_t>
    window(std::uint64_t position) const noexcept override;

    /// Checks nothing; `create` does.
    ElementSize(Host::Ref<Interfaces::Stripe> base, std::uint64_t elementSize) noexcept
        : base_(std::move(base)), elementSize_(elementSize) {}

private:
    ~ElementSize() override = default;

    Host::Ref<Interfaces::Stripe> base_;
    std::uint64_t elementSize_;
};

} // namespace Adapters::Stripe
