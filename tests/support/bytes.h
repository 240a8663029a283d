#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace Support {

using Bytes = std::vector<std::uint8_t>;

/// Bytes that do not compress and of which no two stretches are the same.
inline Bytes noise(std::size_t size, std::uint32_t seed = 1) {
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes) {
        seed = seed * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>(seed >> 24);
    }
    return bytes;
}

inline Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

} // namespace Support
