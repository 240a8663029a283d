#pragma once

/// @file
/// The count of references that every shared object carries.

#include <cstdint>

namespace Host {

/// Thread-safe count of references.
///
/// It uses the compilers' own atomic operations: `<atomic>` would make every unit that includes a
/// handle many times as long.
class Counter {
public:
    /// Starts with this number of references.
    constexpr explicit Counter(std::uint32_t start = 0) noexcept : count_(start) {}

    Counter(const Counter&) = delete;
    Counter& operator=(const Counter&) = delete;

    /// Adds a reference.
    void increase() noexcept { __atomic_fetch_add(&count_, 1, __ATOMIC_RELAXED); }
    /// Takes a reference away. True when it was the last one: the caller then deletes the object.
    [[nodiscard]] bool decrease() noexcept {
        return __atomic_fetch_sub(&count_, 1, __ATOMIC_ACQ_REL) == 1;
    }
    /// Adds a reference, and gives true, unless the last one is already gone.
    [[nodiscard]] bool increaseUnlessGone() noexcept {
        std::uint32_t count = __atomic_load_n(&count_, __ATOMIC_RELAXED);
        while (count != 0) {
            constexpr bool weak = true;
            if (__atomic_compare_exchange_n(&count_, &count, count + 1, weak, __ATOMIC_RELAXED,
                                            __ATOMIC_RELAXED)) {
                return true;
            }
        }
        return false;
    }

private:
    std::uint32_t count_;
};

} // namespace Host
