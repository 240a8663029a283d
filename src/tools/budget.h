#pragma once

#include <algorithm>
#include <cstdint>

namespace Libraries::Files::PDF::Tools {

/// How many bytes an operation may make: so many for each byte that it read, and 1 MiB. A file can
/// list one thing again and again; what becomes of it stays a multiple of the file.
class Budget {
public:
    explicit Budget(std::uint64_t times = 64) noexcept : times_(times) {}

    /// Makes room for what was read.
    void read(std::uint64_t bytes) noexcept {
        left_ += times_ * std::min(bytes, (UINT64_MAX - left_) / times_);
    }
    /// Takes room for what is made; false where there is too little.
    [[nodiscard]] bool take(std::uint64_t bytes) noexcept {
        const bool enough = bytes <= left_;
        if (enough) left_ -= bytes;
        return enough;
    }
    void takeAll() noexcept { left_ = 0; }
    [[nodiscard]] std::uint64_t left() const noexcept { return left_; }

private:
    std::uint64_t times_;
    std::uint64_t left_ = std::uint64_t{1} << 20;
};

} // namespace Libraries::Files::PDF::Tools
