#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <type_traits>

namespace Host::StrConv {

/// The number that `text` spells: an optional sign, then digits of the base and nothing else. A
/// text without digits is 0. Fails for "-" with unsigned numbers, and on overflow.
template <std::integral Number>
std::optional<Number> num(std::string_view text, int base = 10) noexcept {
    const bool negative = !text.empty() && text.front() == '-';
    if (negative && std::is_unsigned_v<Number>) return std::nullopt;
    if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    if (text.empty()) return Number{0};

    std::uint64_t magnitude = 0;
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, magnitude, base);
    if (parsed.ec != std::errc{} || parsed.ptr != end) return std::nullopt;

    const auto limit = static_cast<std::uint64_t>(std::numeric_limits<Number>::max());
    if (magnitude > limit + (negative ? 1U : 0U)) return std::nullopt;
    return static_cast<Number>(negative ? ~magnitude + 1 : magnitude);
}

} // namespace Host::StrConv
