#include "host/char_reader.h"
#include "host/numbers.h"
#include "host/text.h"
#include "packed/unpacker.h"
#include "reader/file_structure.h"
#include "spelling/characters.h"
#include "spelling/digits.h"
#include "values/dictionary.h"
#include "values/failure.h"

#include <string_view>

namespace Libraries::Files::PDF {

namespace {

/// The keywords at the end of a file, looked for from there. Each search gives 0 for "not found",
/// which is no place where any of them could end.
class BackwardSearch {
public:
    explicit BackwardSearch(Host::Cursor& cursor) noexcept : cursor_(cursor) {}

    /// Position of "%%EOF", behind which only line endings may stand.
    [[nodiscard]] std::uint64_t findEndMarker() noexcept;
    /// Position behind "startxref", which stands before `from`.
    [[nodiscard]] std::uint64_t findStartXref(std::uint64_t from) noexcept;
    /// Position behind "trailer", whose dictionary stands before `from`.
    [[nodiscard]] std::uint64_t findTrailer(std::uint64_t from) noexcept;

private:
    [[nodiscard]] int at(std::uint64_t position) noexcept {
        cursor_.seek(position);
        return cursor_.next();
    }
    [[nodiscard]] bool endsAt(std::uint64_t end, std::string_view keyword) noexcept;
    [[nodiscard]] std::uint64_t findDictionaryStart(std::uint64_t from) noexcept;

    Host::Cursor& cursor_;
};

bool BackwardSearch::endsAt(std::uint64_t end, std::string_view keyword) noexcept {
    if (end < keyword.size()) return false;
    cursor_.seek(end - keyword.size());
    for (char expected : keyword) {
        if (cursor_.next() != static_cast<unsigned char>(expected)) return false;
    }
    return true;
}

std::uint64_t BackwardSearch::findEndMarker() noexcept {
    constexpr std::string_view marker = "%%EOF";
    std::uint64_t end = cursor_.size();
    while (end > marker.size() && Spelling::isLineEnding(at(end - 1)))
        --end;
    return endsAt(end, marker) ? end - marker.size() : 0;
}

std::uint64_t BackwardSearch::findStartXref(std::uint64_t from) noexcept {
    std::uint64_t end = from;
    for (; end > 0; --end) {
        const int code = at(end - 1);
        if (!Spelling::isDigit(code) && !Spelling::isLineEnding(code)) break;
    }
    return endsAt(end, "startxref") ? end : 0;
}

std::uint64_t BackwardSearch::findDictionaryStart(std::uint64_t from) noexcept {
    std::int64_t open = 0; // below 0 where a pair opens that none has closed
    bool seen = false;
    int behind = 0;
    for (std::uint64_t position = from; position > 0; --position) {
        const int code = at(position - 1);
        if (code == Host::Cursor::end) return 0;
        const bool pair = code == behind && (code == '>' || code == '<');
        behind = pair ? 0 : code;
        if (pair && code == '>') {
            ++open;
            seen = true;
        } else if (pair) {
            --open;
        } else if (seen && open == 0 && !Spelling::isLineEnding(code)) {
            return position;
        }
    }
    return 0;
}

std::uint64_t BackwardSearch::findTrailer(std::uint64_t from) noexcept {
    const std::uint64_t end = findDictionaryStart(from);
    return endsAt(end, "trailer") ? end : 0;
}

bool readXrefOffset(DocumentState& state, Host::Cursor& cursor, std::uint64_t position) {
    Host::CharReader reader(cursor);
    cursor.seek(position);
    if (!reader.readLine() || !Host::StringUtil::trim(reader.line()).empty()) return false;
    if (!reader.readLine()) return false;
    const auto offset = Host::StrConv::num<std::uint64_t>(Host::StringUtil::trim(reader.line()));
    if (!offset) return false;
    state.xrefOffset = *offset;
    return true;
}

} // namespace

bool readTrailer(DocumentState& state, Host::Cursor& cursor, Scanner& scanner) {
    BackwardSearch search(cursor);
    const std::uint64_t endMarker = search.findEndMarker();
    if (endMarker == 0) return fail(EndMarkerMissing);
    const std::uint64_t startXref = search.findStartXref(endMarker);
    if (startXref == 0) return fail(StartXrefMissing);
    const std::uint64_t trailer = search.findTrailer(startXref);
    if (trailer == 0) return fail(TrailerMissing);

    if (!readXrefOffset(state, cursor, startXref)) return fail(TrailerUnreadable);
    cursor.seek(trailer);
    if (!scanner.readDictionary()) return fail(TrailerUnreadable);
    scanner.addLosses(state.losses, 0);
    state.trailer =
        Ref<Dictionary>(as<Dictionary>(unpack(scanner.packed(), state.objects.store()->shared())));
    return true;
}

} // namespace Libraries::Files::PDF
