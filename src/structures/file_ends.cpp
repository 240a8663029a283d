#include "structures/file_ends.h"

#include "structures/flaw.h"
#include "structures/tokens.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace Libraries::Files::PDF {

namespace {

constexpr std::uint64_t farthestHeader = 1024;
/// Readers look for the end in the last 1024 bytes; "startxref" and its offset stand before it.
constexpr std::uint64_t longestEnd = 1054;

std::string read(Host::Cursor& cursor, std::uint64_t offset, std::uint64_t count) {
    std::string text;
    cursor.seek(offset);
    for (; count != 0; --count) {
        const int code = cursor.next();
        if (code == Host::Cursor::end) break;
        text.push_back(static_cast<char>(code));
    }
    if (cursor.failed()) throw Flaw{SourceNotRead, offset, "the source cannot be read"};
    return text;
}

} // namespace

FileHeader findHeader(Host::Cursor& cursor) {
    constexpr std::string_view mark = "%PDF-";
    constexpr std::size_t longestVersion = 8;
    const std::string begin = read(cursor, 0, farthestHeader + mark.size() + longestVersion);
    for (std::size_t place = begin.find(mark); place != std::string::npos;
         place = begin.find(mark, place + 1)) {
        const PdfVersion version =
            nearestVersion(std::string_view(begin).substr(place + mark.size()));
        if (version != PdfVersion::Unsupported) return {place, version};
    }
    throw Flaw{NotPdf, 0, "no header stands in the first 1024 bytes"};
}

PdfVersion nearestVersion(std::string_view text) noexcept {
    int major = 0;
    int minor = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, major);
    if (parsed.ec != std::errc{} || parsed.ptr == end || *parsed.ptr != '.' || major < 0) {
        return PdfVersion::Unsupported;
    }
    if (std::from_chars(parsed.ptr + 1, end, minor).ec != std::errc{} || minor < 0) {
        return PdfVersion::Unsupported;
    }
    if (major >= 2) return PdfVersion::V2_0;
    if (major < 1) return PdfVersion::V1_0;
    constexpr int lastMinor = 7;
    return static_cast<PdfVersion>(static_cast<int>(PdfVersion::V1_0) + std::min(minor, lastMinor));
}

std::uint64_t findSections(Host::Cursor& cursor) {
    const std::uint64_t size = cursor.size();
    const std::uint64_t start = size - std::min(size, longestEnd);
    const std::string text = read(cursor, start, longestEnd);
    const std::size_t place = text.rfind("startxref");
    if (place == std::string::npos)
        damaged(start, "\"startxref\" was expected in the last 1054 bytes");
    // What was to be a further revision lost its end.
    if (text.find(" obj", place) != std::string::npos) {
        damaged(start + place, "behind the last \"startxref\" stands an object");
    }
    cursor.seek(start + place);
    Tokens tokens(cursor);
    tokens.keyword("startxref", "\"startxref\" was expected");
    return tokens.number("the offset behind \"startxref\" was expected");
}

} // namespace Libraries::Files::PDF
