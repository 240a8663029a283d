#pragma once

#include "libqpdf.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Libraries::Files::PDF::Import {

/// What the tokens of a value tell before libqpdf makes objects of it.
struct Scanned {
    std::uint64_t end = 0;             ///< where the source was behind it
    bool dictionary = false;           ///< whether it is a dictionary, and complete
    bool mayBeXref = false;            ///< whether its Type may be XRef
    long long length = -1;             ///< its Length, where that is a number
    std::uint64_t values = 0;          ///< how many values it holds, itself included, about
    std::vector<long long> references; ///< object numbers, of all that it refers to
};

/// How much of a value to walk.
struct ScanLimits {
    std::uint64_t bytes = UINT64_MAX;
    std::uint64_t values = UINT64_MAX;
};

/// Walks the value at `start` by libqpdf's own tokens, and takes closing brackets as libqpdf does:
/// those that close nothing do not count. Stops behind whatever first goes beyond the limits.
[[nodiscard]] Scanned scan(const std::shared_ptr<InputSource>& source, std::uint64_t start,
                           const ScanLimits& limits = {});

/// The same for the object whose number stands at `start`.
[[nodiscard]] Scanned scanObject(const std::shared_ptr<InputSource>& source, std::uint64_t start);

} // namespace Libraries::Files::PDF::Import
