#pragma once

/// @file
/// Parts to make stripes of: a base for stripes that hold bytes, and adapters that present the
/// elements of a stripe in another size.

#include <host/byte_buffer.h>
#include <host/export.h>
#include <host/ref.h>
#include <host/stripe.h>

#include <cstdint>
#include <span>
#include <utility>

/// Conversions that stripes share.
namespace Utils {

/// Converts the value of an element between two sizes. All 256 values of a byte survive.
template <class Wide, class Narrow>
struct Convert {
    /// The same value, wider. An unsigned value, such as a byte, is never sign-extended.
    static constexpr Wide widen(Narrow value) noexcept { return static_cast<Wide>(value); }
    /// Whether `narrow` keeps the value.
    static constexpr bool fits(Wide value) noexcept { return static_cast<Narrow>(value) == value; }
    /// The lower bits, which are the value itself if it `fits`.
    static constexpr Narrow narrow(Wide value) noexcept { return static_cast<Narrow>(value); }
};

} // namespace Utils

/// Stripes over other storage or other stripes.
namespace Adapters::Stripe {

/// Base of stripes that present bytes as 32-bit elements. It implements `read` and `write` by
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
/// Position, size and data are those of the base.
class FILES_PDF_EXPORT ElementSize final : public Interfaces::Stripe {
public:
    /// `elementSize` is the size that the adapter presents, 1 or 4. The elements of the base have
    /// either size too. Null with `NullArgument`, or with `InvalidArgument` (another size) set.
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

    /// For `create`, which checks the arguments first.
    ElementSize(Host::Ref<Interfaces::Stripe> base, std::uint64_t elementSize) noexcept
        : base_(std::move(base)), elementSize_(elementSize) {}

private:
    ~ElementSize() override = default;

    Host::Ref<Interfaces::Stripe> base_;
    std::uint64_t elementSize_;
};

/// Reads another stripe in blocks of 64 KiB and offers these as windows. It is for an application's
/// own stripe that has no windows: a document would ask that one for each byte.
///
/// It is for reading only. While it is in use the contents of the base must not change, and nobody
/// else may use the base.
class FILES_PDF_EXPORT Buffered final : public Base {
public:
    /// Over a stripe of 1-byte or 32-bit elements. Null with `NullArgument`, `InvalidArgument`
    /// (another size of element) or `OutOfMemory` set.
    [[nodiscard]] static Host::Ref<Buffered> create(Host::Ref<Interfaces::Stripe> base) noexcept;

    [[nodiscard]] std::uint64_t size() const noexcept override { return base_->size(); }
    [[nodiscard]] std::uint64_t position() const noexcept override { return position_; }
    /// A position behind the end is refused: the stripe moves to the end.
    std::uint64_t position(std::uint64_t position) noexcept override;
    [[nodiscard]] std::uint64_t readBytes(std::uint8_t* buffer,
                                          std::uint64_t count) noexcept override;
    /// Gives 0 with `NotSupported` set.
    [[nodiscard]] std::uint64_t writeBytes(const std::uint8_t* bytes,
                                           std::uint64_t count) noexcept override;
    [[nodiscard]] std::span<const std::uint8_t>
    window(std::uint64_t position) const noexcept override;

    /// For `create`, which checks the base and makes room for a block in the buffer.
    Buffered(Host::Ref<Interfaces::Stripe> base, Host::ByteBuffer buffer) noexcept
        : base_(std::move(base)), buffer_(std::move(buffer)) {}

private:
    ~Buffered() override = default;

    void fill() noexcept;

    Host::Ref<Interfaces::Stripe> base_;
    Host::ByteBuffer buffer_;
    std::uint64_t start_ = 0; // position of the first buffered byte
    std::uint64_t position_ = 0;
};

} // namespace Adapters::Stripe
