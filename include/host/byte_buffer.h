#pragma once

/// @file
/// Memory that grows.

#include <host/export.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

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

    /// Number of bytes held; there may be room for more.
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
    /// Grows or shrinks. It does not initialise new bytes. False as for `reserve`.
    [[nodiscard]] bool resize(std::size_t size) noexcept;
    /// Appends a copy of `count` bytes, which must not lie in this buffer. False as for `reserve`,
    /// with nothing appended.
    [[nodiscard]] bool append(const void* bytes, std::size_t count) noexcept {
        if (count > capacity_ - size_ && !grow(count)) return false;
        if (count != 0) std::memcpy(data_ + size_, bytes, count);
        size_ += count;
        return true;
    }
    /// Memory for `count` more bytes behind the end. Fill it, then call `extend`. Null with
    /// `OutOfMemory` set when there is none.
    [[nodiscard]] std::uint8_t* room(std::size_t count) noexcept {
        return count <= capacity_ - size_ || grow(count) ? data_ + size_ : nullptr;
    }
    /// Adds the first `count` bytes of the room behind the end to the buffer.
    void extend(std::size_t count) noexcept { size_ += count; }
    /// Cuts the buffer off behind its first `size` bytes. It must hold that many.
    void truncate(std::size_t size) noexcept { size_ = size; }
    /// Empties the buffer and keeps its memory.
    void clear() noexcept { size_ = 0; }
    /// Gives memory beyond `size()` back.
    void shrink() noexcept;
    /// Exchanges the memory of two buffers; copies no bytes.
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

} // namespace Host
