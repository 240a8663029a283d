// For the targets that take documents: changes an input and then makes the table, the trailer and
// the offsets true again, so that the engine gets past the loader.

#include "document_input.h"

#include <algorithm>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

std::string_view textOf(Fuzzing::Bytes bytes) noexcept {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// What stands in front of the first document: the background target's mode, or nothing.
std::size_t prefixOf(Fuzzing::Bytes bytes) noexcept {
    return textOf(bytes).substr(1).starts_with("%PDF-") ? 1 : 0;
}

std::string mended(Fuzzing::Bytes bytes, unsigned seed) {
    const std::size_t prefix = prefixOf(bytes);
    const bool fill = seed % 8 != 0;
    const auto [first, second] = Fuzzing::documentsOf(bytes.subspan(prefix));
    std::string result(textOf(bytes.first(prefix)));
    result += Fuzzing::withTable(textOf(first), fill);
    if (second.data() != first.data()) result += Fuzzing::withTable(textOf(second), fill);
    return result;
}

} // namespace

// The engine declares it nowhere but in its own headers.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
    const std::size_t changed = LLVMFuzzerMutate(data, size, maxSize);
    // A broken table must be seen as well.
    if (changed < 2 || seed % 16 == 1) return changed;
    const std::string result = mended({data, changed}, seed >> 4);
    if (result.size() > maxSize) return changed;
    std::ranges::copy(result, data);
    return result.size();
}
