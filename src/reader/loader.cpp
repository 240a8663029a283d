#include "host/cursor.h"
#include "reader/file_structure.h"
#include "reader/object_reader.h"
#include "reader/reader.h"
#include "reader/scanner.h"
#include "values/failure.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace Libraries::Files::PDF {

namespace {

/// How many times the source's size may be read as objects in all. A well-formed file is read once;
/// one whose objects lie inside each other could otherwise take quadratic time and memory.
constexpr std::uint64_t longestReading = 8;
/// How many times the source's size may be kept of objects before another one is read. No byte that
/// is read once becomes more than four, as in "\377".
constexpr std::uint64_t mostKept = 4;
/// A source so small that none of this matters.
constexpr std::uint64_t smallSource = std::uint64_t{1} << 20;

/// `times` the source's size, or at least what a small one may take; all there is where that cannot
/// be told.
std::uint64_t budgetOf(std::uint64_t size, std::uint64_t times) noexcept {
    const bool countable = size < std::numeric_limits<std::uint64_t>::max() / times / 2;
    return countable ? size * times + smallSource : std::numeric_limits<std::uint64_t>::max();
}

bool loadObjects(DocumentState& state, Host::Cursor& cursor, Scanner& scanner,
                 const std::vector<XrefEntry>& entries) {
    ObjectReader reader(cursor, scanner);
    const std::uint64_t budget = budgetOf(cursor.size(), longestReading);
    const std::uint64_t kept = budgetOf(cursor.size(), mostKept);
    const auto inUse = std::ranges::count_if(entries, &XrefEntry::inUse);
    state.objects.reserve(static_cast<std::size_t>(inUse));

    for (std::size_t index = 0; index < entries.size(); ++index) {
        const XrefEntry& entry = entries[index];
        if (!entry.inUse) continue;
        const std::uint64_t id = std::uint64_t{state.xrefFirstId} + index;
        if (entry.offset == 0) {
            return fail(XrefUnreadable, "In use object reference is at offset 0: ", id);
        }
        const bool read = reader.charactersRead() <= budget &&
                          state.objects.store()->size() <= kept &&
                          reader.read(id, entry.generation, entry.offset, state);
        if (!read) return fail(ObjectUnreadable, "Failed to read object at ", entry.offset);
    }
    state.nextObjectId = state.xrefFirstId + static_cast<std::uint32_t>(entries.size());
    return true;
}

} // namespace

bool load(DocumentState& state) {
    Host::Cursor cursor(*state.source);
    Scanner scanner(cursor);
    if (!readHeader(state, cursor)) return false;
    if (!readTrailer(state, cursor, scanner)) return false;
    std::vector<XrefEntry> entries;
    if (!readXrefTable(state, cursor, entries)) return fail(XrefUnreadable);
    return loadObjects(state, cursor, scanner, entries);
}

} // namespace Libraries::Files::PDF
