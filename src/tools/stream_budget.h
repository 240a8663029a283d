#pragma once

#include "tools/budget.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// How much a document's streams are worth: those of a file may lie in each other, and each byte of
/// it counts once. Throws `std::bad_alloc`.
class StreamBudget {
public:
    /// Data in memory.
    void addHeld(std::uint64_t size) { held_ += size; }
    /// Data in the file.
    void addStored(std::uint64_t offset, std::uint64_t size) { places_.emplace_back(offset, size); }

    /// What working on that data may take: 64 times what there is of it, and 1 MiB.
    [[nodiscard]] std::uint64_t bytes() {
        std::ranges::sort(places_);
        Budget budget;
        budget.read(held_);
        std::uint64_t end = 0;
        for (const auto& [offset, size] : places_) {
            const std::uint64_t behind = offset + size;
            if (behind <= end) continue;
            budget.read(behind - std::max(offset, end));
            end = behind;
        }
        return budget.left();
    }

private:
    std::vector<std::pair<std::uint64_t, std::uint64_t>> places_;
    std::uint64_t held_ = 0;
};

} // namespace Libraries::Files::PDF::Tools
