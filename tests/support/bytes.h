#pragma once

#include <cstdint>
#include <string>
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

inline std::string noiseText(std::size_t size) {
    const Bytes bytes = noise(size);
    return {bytes.begin(), bytes.end()};
}

/// `text` so many times.
inline std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    while (times-- != 0)
        all += text;
    return all;
}

/// What ASCIIHexDecode makes `data` of.
inline std::string hexed(std::string_view data) {
    std::string text;
    for (const char code : data) {
        text += "0123456789ABCDEF"[static_cast<unsigned char>(code) >> 4U];
        text += "0123456789ABCDEF"[static_cast<unsigned char>(code) & 15U];
    }
    return text + ">";
}

} // namespace Support
