#pragma once

/// @file
/// A stripe in memory.

#include <host/byte_buffer.h>
#include <host/export.h>
#include <host/ref.h>
#include <host/stripe_adapters.h>

#include <cstdint>
#include <span>
#include <utility>

namespace Host {

/// Bytes in memory, presented as 32-bit elements. Writing at the end makes it grow.
class FILES_PDF_EXPORT MemoryStripe final : public Adapters::Stripe::Base {
public:
    /// An empty stripe to write to. Null when memory is exhausted, as for all three.
    [[nodiscard]] static Ref<MemoryStripe> create() noexcept;
    /// A stripe that owns `bytes`, positioned at its start.
    [[nodiscard]] static Ref<MemoryStripe> create(ByteBuffer bytes) noexcept;
    /// A stripe over a copy of `bytes`, positioned at its start.
    [[nodiscard]] static Ref<MemoryStripe> create(std::span<const std::uint8_t> bytes) noexcept;

    /// As `create`, for `Host::make`.
    explicit MemoryStripe(ByteBuffer bytes) noexcept : bytes_(std::move(bytes)) {}

    /// The bytes held; valid until the next write.
    [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept { return bytes_.span(); }

    [[nodiscard]] std::uint64_t size() const noexcept override { return bytes_.size(); }
    [[nodiscard]] std::uint64_t position() const noexcept override { return position_; }
    /// A position behind the end is refused: the stripe moves to the end.
    std::uint64_t position(std::uint64_t position) noexcept override;
    [[nodiscard]] std::uint64_t readBytes(std::uint8_t* buffer,
                                          std::uint64_t count) noexcept override;
    [[nodiscard]] std::uint64_t writeBytes(const std::uint8_t* bytes,
                                           std::uint64_t count) noexcept override;
    [[nodiscard]] std::span<const std::uint8_t>
    window(std::uint64_t position) const noexcept override;

private:
    ~MemoryStripe() override = default;

    ByteBuffer bytes_;
    std::uint64_t position_ = 0;
};

} // namespace Host
