#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace Host {

/// Owns a file descriptor.
class Descriptor {
public:
    static constexpr int none = -1;

    explicit Descriptor(int descriptor = none) noexcept : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, none)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~Descriptor() { close(); }

    [[nodiscard]] int get() const noexcept { return descriptor_; }
    [[nodiscard]] bool valid() const noexcept { return descriptor_ >= 0; }

    /// Closes the file. False when the system reports that data was lost.
    bool close() noexcept {
        const int descriptor = std::exchange(descriptor_, none);
        // An interrupted close has released the descriptor too.
        return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR;
    }

private:
    int descriptor_;
};

/// Calls a system function again as long as a signal interrupts it.
template <class Call>
auto uninterrupted(Call call) noexcept {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

} // namespace Host
