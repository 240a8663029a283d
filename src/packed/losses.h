#pragma once

#include <pdf/loss.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace Libraries::Files::PDF {

/// How often each kind of loss was met.
class Losses {
public:
    void note(Loss kind, std::uint64_t count = 1) noexcept { at(kind).count += count; }
    /// Adds what was met in one object.
    void add(const Losses& other, std::uint32_t object) noexcept {
        for (std::size_t kind = 0; kind < counts_.size(); ++kind) {
            if (other.counts_[kind].count == 0) continue;
            if (counts_[kind].count == 0) counts_[kind].firstObject = object;
            counts_[kind].count += other.counts_[kind].count;
        }
    }
    [[nodiscard]] const LossCount& operator[](Loss kind) const noexcept {
        return counts_[static_cast<std::size_t>(kind)];
    }

private:
    LossCount& at(Loss kind) noexcept { return counts_[static_cast<std::size_t>(kind)]; }

    std::array<LossCount, lossKinds> counts_{};
};

} // namespace Libraries::Files::PDF
