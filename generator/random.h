#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string_view>
#include <vector>

namespace Generator {

/// Choices that depend on the seed alone, on every platform.
class Random {
public:
    explicit Random(std::uint32_t seed) : random_(seed) {}

    std::size_t below(std::size_t limit) { return random_() % limit; }
    std::size_t between(std::size_t least, std::size_t most) {
        return least + below(most - least + 1);
    }
    bool chance(unsigned percent) { return below(100) < percent; }
    template <class T>
    const T& oneOf(const std::vector<T>& choices) {
        return choices[below(choices.size())];
    }
    template <std::size_t Count>
    std::string_view oneOf(const std::string_view (&choices)[Count]) {
        return choices[below(Count)];
    }
    template <class Range>
    void shuffle(Range& range) {
        for (std::size_t left = range.size(); left > 1; --left)
            std::swap(range[left - 1], range[below(left)]);
    }

private:
    std::mt19937 random_;
};

} // namespace Generator
