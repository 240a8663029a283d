// For the targets that take documents: changes an input and then makes the table, the trailer and
// the offsets true again, so that the engine gets past the loader.

#include "mutation.h"

namespace {

std::string_view textOf(Fuzzing::Bytes bytes) noexcept {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// What stands in front of the first document: the background target's mode, or nothing.
std::size_t prefixOf(Fuzzing::Bytes bytes) noexcept {
    return textOf(bytes).substr(1).starts_with("%PDF-") ? 1 : 0;
}

} // namespace

std::string Fuzzing::mended(Bytes bytes, unsigned seed) {
    const std::size_t prefix = prefixOf(bytes);
    const bool fill = seed % 8 != 0;
    const auto [first, second] = Fuzzing::documentsOf(bytes.subspan(prefix));
    std::string result(textOf(bytes.first(prefix)));
    result += Fuzzing::withTable(textOf(first), fill);
    if (second.data() != first.data()) result += Fuzzing::withTable(textOf(second), fill);
    return result;
}
