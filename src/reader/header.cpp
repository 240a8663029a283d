#include "host/char_reader.h"
#include "host/numbers.h"
#include "reader/file_structure.h"
#include "spelling/characters.h"
#include "values/failure.h"

#include <cstdint>

namespace Libraries::Files::PDF {

namespace {

template <class... Pieces>
PdfVersion unsupported(const Pieces&... pieces) noexcept {
    report(LogLevel::Error, pieces...);
    return PdfVersion::Unsupported;
}

PdfVersion versionOf(std::uint32_t major, std::uint32_t minor) noexcept {
    if (major == 1 && minor <= 7) return static_cast<PdfVersion>(minor + 1);
    return major == 2 && minor == 0 ? PdfVersion::V2_0 : PdfVersion::Unsupported;
}

constexpr std::string_view mark = "%PDF-";

/// Looks at the first characters before the line is read: a file of another format may have no line
/// endings at all.
bool readMark(Host::Cursor& cursor) noexcept {
    cursor.seek(0);
    const int first = cursor.next();
    if (first == Host::Cursor::end || Spelling::isLineEnding(first)) {
        return fail(HeaderUnreadable);
    }
    cursor.back();
    for (char expected : mark) {
        if (cursor.next() == expected) continue;
        return fail(cursor.failed() ? HeaderUnreadable : VersionUnsupported);
    }
    return true;
}

bool readVersion(DocumentState& state, std::string_view version) noexcept {
    const std::size_t point = version.find('.');
    if (point == std::string_view::npos) return fail(VersionUnsupported);

    state.version = parseVersion(version.substr(0, point), version.substr(point + 1));
    return state.version != PdfVersion::Unsupported || fail(VersionUnsupported);
}

bool readLineEnding(DocumentState& state, Host::Cursor& cursor) {
    const int code = cursor.next();
    if (code == '\n') {
        state.lineEnding = "\n";
        return true;
    }
    if (code == Host::Cursor::end) return fail(LineEndingUnknown);
    if (code != '\r') {
        return fail(LineEndingUnknown,
                    "Unexpected line ending character: ", static_cast<char32_t>(code));
    }
    const int next = cursor.next();
    if (next == Host::Cursor::end) return fail(LineEndingUnknown);
    state.lineEnding = next == '\n' ? "\r\n" : "\r";
    return true;
}

} // namespace

PdfVersion parseVersion(std::string_view major, std::string_view minor) noexcept {
    const auto majorNumber = Host::StrConv::num<std::uint32_t>(major);
    if (!majorNumber) return unsupported("Unsupported major version: ", Host::Codes{major});
    if (*majorNumber != 1 && *majorNumber != 2) {
        return unsupported("Unsupported major version: ", *majorNumber);
    }
    const auto minorNumber = Host::StrConv::num<std::uint32_t>(minor);
    if (!minorNumber) return unsupported("Unsupported minor version: ", Host::Codes{minor});

    const PdfVersion version = versionOf(*majorNumber, *minorNumber);
    if (version != PdfVersion::Unsupported) return version;
    return unsupported("Unsupported minor version for major version ", *majorNumber, ": ",
                       *minorNumber);
}

bool readHeader(DocumentState& state, Host::Cursor& cursor) {
    if (!readMark(cursor)) return false;
    Host::CharReader reader(cursor);
    if (!reader.readLine() && cursor.failed()) return fail(HeaderUnreadable);
    if (!readVersion(state, reader.line())) return false;
    cursor.seek(mark.size() + reader.line().size());
    return readLineEnding(state, cursor);
}

} // namespace Libraries::Files::PDF
