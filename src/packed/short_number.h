#pragma once

#include "spelling/digits.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Libraries::Files::PDF {

/// A number as most are: a sign or none, digits, and digits behind a point or none; so few that
/// nothing can overflow. In one walk over its characters.
class ShortNumber {
public:
    /// Whether `token` spells such a number, which is then what this is.
    [[nodiscard]] bool parse(std::string_view token) noexcept {
        constexpr std::size_t surelyFits = 18;
        if (token.empty() || token.size() > surelyFits) return false;
        const char* next = token.data();
        const char* const end = next + token.size();
        const bool negative = *next == '-';
        if (negative) ++next;
        const char* const first = next;
        std::uint64_t whole = 0;
        std::uint64_t behind = 0;
        const bool wholeIsPlain = digits(next, end, whole);
        if (next == first) return false;
        bool behindIsPlain = true;
        if (next != end) {
            if (*next != '.' || next + 1 == end) return false;
            ++next;
            behindIsPlain = digits(next, end, behind) && behind != 0;
            if (next != end) return false;
        }
        integer = negative ? -static_cast<std::int64_t>(whole) : static_cast<std::int64_t>(whole);
        fraction = behind;
        canonical = wholeIsPlain && behindIsPlain && !(negative && whole == 0);
        return true;
    }

    std::int64_t integer = 0;
    std::uint64_t fraction = 0;
    /// Whether the token is what is written for the number.
    bool canonical = false;

private:
    /// Walks digits; whether they have no zero in front.
    static bool digits(const char*& next, const char* end, std::uint64_t& number) noexcept {
        const char* const first = next;
        for (; next != end && Spelling::isDigit(*next); ++next)
            number = number * 10 + Spelling::digitValue(*next);
        return next == first + 1 || (next != first && *first != '0');
    }
};

} // namespace Libraries::Files::PDF
