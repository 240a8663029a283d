#include <host/byte_buffer.h>
#include <host/error.h>
#include <host/stripe.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace Host {

namespace {

constexpr std::size_t largest = PTRDIFF_MAX;

bool outOfMemory() noexcept {
    Error::set(OutOfMemory);
    return false;
}

} // namespace

ByteBuffer::~ByteBuffer() {
    std::free(data_);
}

bool ByteBuffer::reserve(std::size_t capacity) noexcept {
    if (capacity <= capacity_) return true;
    if (capacity > largest) return outOfMemory();

    // Grows by more than asked for, so that callers in small steps do not cause a copy each time.
    std::size_t roomy = std::max(capacity, std::min(capacity_ * 2, largest));
    void* memory = std::realloc(data_, roomy);
    if (memory == nullptr && roomy != capacity) {
        roomy = capacity;
        memory = std::realloc(data_, roomy);
    }
    if (memory == nullptr) return outOfMemory();
    data_ = static_cast<std::uint8_t*>(memory);
    capacity_ = roomy;
    return true;
}

bool ByteBuffer::resize(std::size_t size) noexcept {
    if (!reserve(size)) return false;
    size_ = size;
    return true;
}

bool ByteBuffer::grow(std::size_t count) noexcept {
    return count <= largest - size_ ? reserve(size_ + count) : outOfMemory();
}

void ByteBuffer::shrink() noexcept {
    if (size_ == capacity_) return;
    if (size_ == 0) {
        std::free(data_);
        data_ = nullptr;
    } else if (void* memory = std::realloc(data_, size_); memory != nullptr) {
        data_ = static_cast<std::uint8_t*>(memory);
    } else {
        return;
    }
    capacity_ = size_;
}

} // namespace Host
