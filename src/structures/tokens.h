#pragma once

#include "host/cursor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Libraries::Files::PDF {

/// The words between values: of tables, of the heads and ends of objects (ISO 32000-1, 7.2).
class Tokens {
public:
    explicit Tokens(Host::Cursor& cursor) noexcept : cursor_(cursor) {}

    /// Skips white space and comments. Gives the offset of what comes next.
    std::uint64_t skipSpace() noexcept;
    /// The word that comes next, behind white space and comments; empty where none does. Valid
    /// until the next call.
    [[nodiscard]] std::string_view word();
    /// Where that word began.
    [[nodiscard]] std::uint64_t wordOffset() const noexcept { return wordOffset_; }
    /// The whole number, of digits alone, that comes next; throws `Flaw` where none does.
    [[nodiscard]] std::uint64_t number(const char* expected);
    /// Throws `Flaw` where another word comes next.
    void keyword(std::string_view word, const char* expected);

private:
    Host::Cursor& cursor_;
    std::uint64_t wordOffset_ = 0;
    std::string word_;
};

/// The whole number that digits alone spell.
[[nodiscard]] std::optional<std::uint64_t> wholeNumber(std::string_view digits) noexcept;
/// The whole number that is packed, in whatever spelling: no real.
[[nodiscard]] std::optional<std::uint64_t> wholePacked(std::string_view packed) noexcept;

} // namespace Libraries::Files::PDF
