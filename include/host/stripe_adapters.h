#pragma once

/// @file
/// What helps to make stripes: a base for those that hold bytes, and views of other sizes of
/// element.

#include <host/byte_buffer.h>
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

/// Reads another stripe in blocks of 64 KiB, which it offers as windows: for a stripe of an
/// application's own that has none, so that a document does not ask it for each byte.
///
/// It is for sources: nothing can be written through it. What the base holds must not change while
/// it is in use, and nobody else may use the base.
class FILES_PDF_EXPORT Buffered final : public Base {
public:
    /// Over a stripe of 1-byte or 32-bit elements. Null with `NullArgument`, `InvalidArgument`
    /// (another size of element) or `OutOfMemory` set.
    [[nodiscard]] static Host::Ref<Buffered> create(Host::Ref<Interfaces::Stripe> base) noexcept;

    [[nodiscard]] std::uint64_t size() const noexcept override { return base_->size(); }
    [[nodiscard]] std::uint64_t position() const noexcept override { return position_; }
    /// Positions behind the end are refused: the end is what is reached.
    std::uint64_t position(std::uint64_t position) noexcept override;
    [[nodiscard]] std::uint64_t readBytes(std::uint8_t* buffer,
                                          std::uint64_t count) noexcept override;
    /// Gives 0 with `NotSupported` set.
    [[nodiscard]] std::uint64_t writeBytes(const std::uint8_t* bytes,
                                           std::uint64_t count) noexcept override;
    [[nodiscard]] std::span<const std::uint8_t>
    window(std::uint64_t position) const noexcept override;

    /// Checks nothing; `create` does. The buffer has room for a block.
    Buffered(Host::Ref<Interfaces::Stripe> base, Host::ByteBuffer buffer) noexcept
        : base_(std::move(base)), buffer_(std::move(buffer)) {}

private:
    ~Buffered() override = default;

    void fill() noexcept;

    Host::Ref<Interfaces::Stripe> base_;
    Host::ByteBuffer buffer_;
    std::uint64_t start_ = 0; // of what is in the buffer
    std::uint64_t position_ = 0;
};

} // namespace Adapters::Stripe
