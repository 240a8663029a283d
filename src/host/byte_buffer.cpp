#include <host/error.h>
#include <host/stripe.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

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

    // Callers that grow step by step must not pay for a copy each time.
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

bool ByteBuffer::append(const void* bytes, std::size_t count) noexcept {
    if (count == 0) return true;
    if (count > largest - size_) return outOfMemory();
    if (!reserve(size_ + count)) return false;
    std::memcpy(data_ + size_, bytes, count);
    size_ += count;
    return true;
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
