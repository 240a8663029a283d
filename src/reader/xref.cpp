#include "host/char_reader.h"
#include "host/numbers.h"
#include "host/text.h"
#include "reader/characters.h"
#include "reader/file_structure.h"
#include "spelling/digits.h"
#include "values/failure.h"

#include <array>
#include <optional>
#include <string_view>

namespace Libraries::Files::PDF {

namespace {

using Host::StrConv::num;
using Host::StringUtil::splitExactly;

/// An entry's generation may be one more than an object's, and is then kept as 0.
constexpr std::uint32_t largestEntryGeneration = 65536;

std::optional<XrefEntry> parseEntry(std::string_view line) noexcept {
    std::array<std::string_view, 3> parts;
    if (!splitExactly(line, ' ', parts)) return std::nullopt;
    const auto offset = num<std::uint64_t>(parts[0]);
    const auto generation = num<std::uint32_t>(parts[1]);
    if (!offset || !generation || *generation > largestEntryGeneration) return std::nullopt;
    if (parts[2] != "n" && parts[2] != "f") return std::nullopt;
    return XrefEntry{*offset, static_cast<std::uint16_t>(*generation), parts[2] == "n"};
}

/// Whether more numbers follow: a further subsection, or entries that the header does not count.
bool goesOn(Host::Cursor& cursor) noexcept {
    int code = cursor.next();
    while (Characters::isWhite(code))
        code = cursor.next();
    return Spelling::isDigit(code);
}

} // namespace

bool readXrefTable(DocumentState& state, Host::Cursor& cursor, std::vector<XrefEntry>& entries) {
    Host::CharReader reader(cursor);
    cursor.seek(state.xrefOffset);
    if (!reader.readLine() || Host::StringUtil::trim(reader.line()) != "xref") return false;

    std::array<std::string_view, 2> header;
    if (!reader.readLine() || !splitExactly(reader.line(), ' ', header)) return false;
    const auto firstId = num<std::uint32_t>(header[0]);
    const auto count = num<std::uint32_t>(header[1]);
    if (!firstId || !count) return false;

    // The count is only the file's claim: memory grows with the entries that are there.
    state.xrefFirstId = *firstId;
    for (std::uint32_t index = 0; index < *count; ++index) {
        const bool read = reader.readLine();
        const auto entry = read ? parseEntry(reader.line()) : std::nullopt;
        if (!entry) {
            return refuse("XRef entry ", index, " is invalid: ", Host::Codes{reader.line()});
        }
        entries.push_back(*entry);
    }
    if (goesOn(cursor)) state.losses.note(Loss::Subsections);
    return !cursor.failed();
}

} // namespace Libraries::Files::PDF
