#pragma once

/// @file
/// The count of references that every shared object carries.

#include <atomic>
#include <cstdint>

namespace Host {

/// Thread-safe count of references.
class Counter {
public:
    /// So many references are there from the start.
    constexpr explicit Counter(std::uint32_t start = 0) noexcept : count_(start) {}

    /// One more reference.
    void increase() noexcept { count_.fetch_add(1, std::memory_order_relaxed); }
    /// One reference less; true when it was the last one, so that the object goes.
    [[nodiscard]] bool decrease() noexcept {
        return count_.fetch_sub(1, std::memory_order_acq_rel) == 1;
    }
    /// One more reference, unless the last one is already gone.
    [[nodiscard]] bool increaseUnlessGone() noexcept {
        std::uint32_t count = count_.load(std::memory_order_relaxed);
        while (count != 0) {
            if (count_.compare_exchange_weak(count, count + 1, std::memory_order_relaxed)) {
                return true;
            }
        }
        return false;
    }

private:
    std::atomic<std::uint32_t> count_;
};

} // namespace Host
