// Changes an input, and then has it mended, so that the engine gets past what reads it first.

#include "mutation.h"

#include <algorithm>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

// The engine declares it nowhere but in its own headers.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
    const std::size_t changed = LLVMFuzzerMutate(data, size, maxSize);
    // What is broken must be seen as well.
    if (changed < 2 || seed % 16 == 1) return changed;
    const std::string result = Fuzzing::mended({data, changed}, seed >> 4);
    if (result.size() > maxSize) return changed;
    std::ranges::copy(result, data);
    return result.size();
}
