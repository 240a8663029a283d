#pragma once

/// @file
/// Element sequences: through a stripe passes everything that a document reads and writes.

#include <host/export.h>
#include <host/ref.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

/// What an application may implement for the library to use.
namespace Interfaces {

/// A sequence of elements of one size with a current position.
///
/// An application that keeps documents in its own storage implements the first six operations;
/// documents ask for 32-bit elements, each holding one byte of the file (0 to 255). The byte
/// operations below them have default implementations that go through those six; a stripe that
/// holds bytes overrides them for speed. A stripe is used by one thread at a time. No operation
/// throws; one that fails says so by its result and may set the thread's error code.
class FILES_PDF_EXPORT Stripe : public Host::RefCount {
public:
    /// Size of one element in bytes: 4 for every stripe a document accepts.
    [[nodiscard]] virtual std::uint64_t elementSize() const noexcept = 0;
    /// Length in elements.
    [[nodiscard]] virtual std::uint64_t size() const noexcept = 0;
    /// Current position: the zero-based index of the next element.
    [[nodiscard]] virtual std::uint64_t position() const noexcept = 0;
    /// Moves to `position` and gives the position reached; any other one is a failure.
    virtual std::uint64_t position(std::uint64_t position) noexcept = 0;
    /// Reads up to `count` elements into `buffer` and moves behind them. Gives the elements read;
    /// fewer than asked means the end of the data or a fault. `buffer` has room for `count`
    /// elements, or for those that are left behind the position where these are fewer; nothing
    /// behind the elements read may be touched.
    [[nodiscard]] virtual std::uint64_t read(void* buffer, std::uint64_t count) noexcept = 0;
    /// Writes `count` elements at the position and moves behind them. Gives the elements written;
    /// fewer than asked means a fault.
    [[nodiscard]] virtual std::uint64_t write(const void* buffer, std::uint64_t count) noexcept = 0;

    /// As `read`, one byte for each element. An element above 255 is no byte: it ends the read.
    [[nodiscard]] virtual std::uint64_t readBytes(std::uint8_t* buffer,
                                                  std::uint64_t count) noexcept;
    /// As `write`, one byte for each element.
    [[nodiscard]] virtual std::uint64_t writeBytes(const std::uint8_t* bytes,
                                                   std::uint64_t count) noexcept;
    /// The consecutive bytes that the stripe holds in memory from `position` on; empty where it
    /// holds none. They stay valid until the next operation that is not const. Does not move.
    [[nodiscard]] virtual std::span<const std::uint8_t>
    window(std::uint64_t position) const noexcept;
};

} // namespace Interfaces

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

namespace Host {

/// Owned piece of memory that grows in place; nothing it does throws.
class FILES_PDF_EXPORT ByteBuffer {
public:
    /// Holds no memory.
    ByteBuffer() noexcept = default;
    /// Takes the memory over; `other` is empty afterwards.
    ByteBuffer(ByteBuffer&& other) noexcept { swap(other); }
    /// Exchanges the memory of the two.
    ByteBuffer& operator=(ByteBuffer&& other) noexcept {
        swap(other);
        return *this;
    }
    ~ByteBuffer();

    /// Bytes held, which may be fewer than there is room for.
    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    /// Whether no bytes are held.
    [[nodiscard]] bool empty() const noexcept { return size_ == 0; }
    /// The bytes in place: valid until the buffer grows, shrinks or goes. May be null when empty.
    ///@{
    [[nodiscard]] std::uint8_t* data() noexcept { return data_; }
    [[nodiscard]] const std::uint8_t* data() const noexcept { return data_; }
    [[nodiscard]] std::span<const std::uint8_t> span() const noexcept { return {data_, size_}; }
    ///@}

    /// Makes room for `capacity` bytes in all. False with `OutOfMemory` set when there is none.
    [[nodiscard]] bool reserve(std::size_t capacity) noexcept;
    /// Grows or shrinks; new bytes are not initialised. False as for `reserve`.
    [[nodiscard]] bool resize(std::size_t size) noexcept;
    /// Appends a copy of `count` bytes, which must not lie in this buffer. False as for `reserve`,
    /// with nothing appended.
    [[nodiscard]] bool append(const void* bytes, std::size_t count) noexcept {
        if (count > capacity_ - size_ && !grow(count)) return false;
        if (count != 0) std::memcpy(data_ + size_, bytes, count);
        size_ += count;
        return true;
    }
    /// Memory for `count` more bytes behind the end, to be filled and then taken in by `extend`;
    /// null with `OutOfMemory` set when there is none.
    [[nodiscard]] std::uint8_t* room(std::size_t count) noexcept {
        return count <= capacity_ - size_ || grow(count) ? data_ + size_ : nullptr;
    }
    /// Takes in `count` bytes that were filled into the room behind the end.
    void extend(std::size_t count) noexcept { size_ += count; }
    /// Cuts off what is behind the first `size` bytes, of which there must be that many.
    void truncate(std::size_t size) noexcept { size_ = size; }
    /// Empties the buffer and keeps its memory.
    void clear() noexcept { size_ = 0; }
    /// Gives memory beyond `size()` back.
    void shrink() noexcept;
    /// Copies no bytes.
    void swap(ByteBuffer& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
        std::swap(capacity_, other.capacity_);
    }

private:
    /// Makes room for `count` more bytes, and then some.
    bool grow(std::size_t count) noexcept;

    std::uint8_t* data_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

/// Bytes in memory, presented as 32-bit elements. Writing at the end makes it grow.
class FILES_PDF_EXPORT MemoryStripe final : public Adapters::Stripe::Base {
public:
    /// An empty stripe, to be written to. Null when memory is exhausted, as for all three.
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
    /// Positions behind the end are refused: the end is what is reached.
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
