#pragma once

#include <cstdint>

namespace Libraries::Files::PDF {

/// The number of the document of which a container is an object's value; 0 for none. It takes three
/// bytes, since there is unused room of that size beside a count.
class HomeNumber {
public:
    constexpr HomeNumber() noexcept = default;
    constexpr explicit HomeNumber(std::uint32_t number) noexcept
        : low_(static_cast<std::uint8_t>(number)),
          middle_(static_cast<std::uint8_t>(number >> 8)),
          high_(static_cast<std::uint8_t>(number >> 16)) {}

    [[nodiscard]] constexpr bool isKnown() const noexcept { return *this != HomeNumber(); }
    [[nodiscard]] constexpr bool operator==(const HomeNumber&) const noexcept = default;

private:
    std::uint8_t low_ = 0;
    std::uint8_t middle_ = 0;
    std::uint8_t high_ = 0;
};

} // namespace Libraries::Files::PDF
