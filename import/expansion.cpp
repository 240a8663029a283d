#include "expansion.h"

#include "pipelines.h"
#include "report.h"
#include "spelling/characters.h"
#include "spelling/digits.h"
#include "spelling/names.h"

#include <pdf/errors.h>

#include <algorithm>
#include <functional>
#include <set>

namespace Libraries::Files::PDF::Import {

namespace {

using PDF::Spelling::isDigit;
using PDF::Spelling::isReadAsWhite;
using PDF::Spelling::takeNameCharacter;
using Position = std::uint64_t;

/// Dictionaries stand side by side, but for what looks like one and is none.
constexpr std::uint64_t timesScanned = 8;
constexpr std::uint64_t leastScanned = std::uint64_t{1} << 20;

/// Shows `visit` the source piece by piece, each with where it begins; what `overlap` bytes hold
/// stands whole in one of them. Ends where `visit` gives false.
void eachPiece(Source& source, std::size_t overlap,
               const std::function<bool(std::string_view, Position)>& visit) {
    std::string piece(std::size_t{64} << 10, '\0');
    for (Position start = 0; start < source.size(); start += piece.size() - overlap) {
        source.seek(static_cast<qpdf_offset_t>(start), SEEK_SET);
        const std::size_t count = source.read(piece.data(), piece.size());
        if (!visit(std::string_view(piece.data(), count), start)) return;
    }
}

/// Whether a text begins with a version: digits, a point, digits.
bool isVersion(std::string_view text) noexcept {
    const auto point = std::ranges::find_if_not(text, isDigit);
    return point != text.begin() && text.end() - point > 1 && *point == '.' && isDigit(point[1]);
}

/// Where the header stands (7.5.2), from which libqpdf counts the document's offsets; 0 where there
/// is none.
Position headerIn(Source& source) {
    constexpr std::string_view mark = "%PDF-";
    constexpr std::size_t farthest = 1024;
    constexpr std::size_t longestVersion = 16;
    std::string text(farthest + mark.size() + longestVersion, '\0');
    source.seek(0, SEEK_SET);
    text.resize(source.read(text.data(), text.size()));
    for (std::size_t at = text.find(mark); at < farthest; at = text.find(mark, at + 1)) {
        if (isVersion(std::string_view(text).substr(at + mark.size()))) return at;
    }
    return 0;
}

bool takeName(std::string_view& text, std::string_view name) noexcept {
    return std::ranges::all_of(
        name, [&](char code) { return !text.empty() && takeNameCharacter(text) == code; });
}

/// Whether the name that `text` is the inside of may make a dictionary one of a cross-reference
/// stream: XRef, or Type with something else than a name behind it.
bool mayMakeXref(std::string_view text) noexcept {
    std::string_view behind = text;
    if (takeName(behind, "XRef")) return true;
    if (!takeName(text, "Type")) return false;
    while (!text.empty() && isReadAsWhite(text.front()))
        text.remove_prefix(1);
    return text.empty() || text.front() == '%' || isDigit(text.front());
}

constexpr std::size_t longestMention = 64;

[[noreturn]] void refuseSize() {
    fail(LimitExceeded, "the document's structure is larger than allowed");
}

void take(std::uint64_t& left, std::uint64_t amount) {
    if (amount > left) refuseSize();
    left -= amount;
}

/// How many bytes an entry of a cross-reference stream takes (7.5.8.2); 1 where that is not known.
std::uint64_t entrySize(QPDFObjectHandle widths) {
    std::uint64_t size = 0;
    for (int place = 0; place < 3 && widths.isArray() && place < widths.getArrayNItems(); ++place) {
        QPDFObjectHandle width = widths.getArrayItem(place);
        if (width.isInteger() && width.getIntValue() > 0)
            size += static_cast<std::uint64_t>(width.getIntValue());
    }
    return std::max<std::uint64_t>(size, 1);
}

bool refersTo(QPDFObjectHandle value) {
    if (value.isIndirect()) return true;
    if (value.isArray()) return std::ranges::any_of(value.getArrayAsVector(), refersTo);
    if (!value.isDictionary()) return false;
    return std::ranges::any_of(value.getDictAsMap(),
                               [](const auto& entry) { return refersTo(entry.second); });
}

/// The offsets of the objects in an object stream, as its first numbers give them; those behind
/// the first that is too many are left out.
std::vector<Position> offsetsIn(const std::shared_ptr<InputSource>& data, std::uint64_t first,
                                std::uint64_t most) {
    QPDFTokenizer tokenizer;
    tokenizer.allowEOF();
    std::vector<Position> offsets;
    for (bool isOffset = false; offsets.size() <= most; isOffset = !isOffset) {
        const auto token = tokenizer.readToken(data, "object stream", true);
        if (!token.isInteger() || static_cast<Position>(data->tell()) > first) return offsets;
        const long long number = std::strtoll(token.getValue().c_str(), nullptr, 10);
        if (isOffset && number >= 0) offsets.push_back(first + static_cast<Position>(number));
    }
    return offsets;
}

} // namespace

Expansion::Expansion(std::shared_ptr<Source> source, const Limits& limits)
    : source_(std::move(source)),
      left_(limits),
      scanned_(timesScanned * std::min(source_->size(), UINT64_MAX / 16) + leastScanned) {}

std::string Expansion::slice(Position start, Position end) {
    std::string text(std::min(end, source_->size()) - start, '\0');
    source_->seek(static_cast<qpdf_offset_t>(start), SEEK_SET);
    text.resize(source_->read(text.data(), text.size()));
    return text;
}

/// Decodes a stream and takes off what each of its filters gives. Gives what it holds, in bytes.
std::uint64_t Expansion::decode(QPDFObjectHandle& stream, Pipeline* next) {
    QPDFObjectHandle dict = stream.getDict();
    const FilterChain chain = filterChain(dict.getKey("/Filter"), dict.getKey("/DecodeParms"));
    const Decoded decoded = decoder_.decode(stream, chain, left_.bytes, next);
    source_->check();
    const bool known = decoded.known || !stream.pipeStreamData(nullptr, 0, qpdf_dl_specialized);
    if (decoded.exceeded || !known) refuseSize();
    return decoded.given;
}

void Expansion::measureXrefStreams() {
    if (!mentionsXref()) return;
    constexpr std::string_view keyword = "obj";
    eachPiece(*source_, keyword.size() - 1, [&](std::string_view piece, Position start) {
        for (std::size_t at = piece.find(keyword); at != std::string_view::npos;
             at = piece.find(keyword, at + 1)) {
            const bool isEnd = at >= 3 && piece.substr(at - 3, 3) == "end";
            if (!isEnd) measureXrefStream(start + at + keyword.size());
        }
        return true;
    });
    if (largest_.bytes != 0) countRepeated();
}

/// A table may name a cross-reference stream beside it (7.5.8.4), and many tables the same one,
/// which libqpdf reads for each of them.
void Expansion::countRepeated() {
    eachPiece(*source_, longestMention, [&](std::string_view piece, Position) {
        for (std::size_t at = piece.find('/'); at != std::string_view::npos;
             at = piece.find('/', at + 1)) {
            std::string_view name = piece.substr(at + 1, longestMention - 1);
            if (!takeName(name, "XRefStm")) continue;
            take(left_.bytes, largest_.bytes);
            take(left_.entries, largest_.entries);
        }
        return true;
    });
}

bool Expansion::mentionsXref() {
    bool found = false;
    eachPiece(*source_, longestMention, [&](std::string_view piece, Position) {
        for (std::size_t at = piece.find('/'); at != std::string_view::npos && !found;
             at = piece.find('/', at + 1)) {
            found = mayMakeXref(piece.substr(at + 1, longestMention - 1));
        }
        return !found;
    });
    return found;
}

void Expansion::measureXrefStream(Position start) {
    const Scanned value = scan(source_, start, {.bytes = scanned_});
    const Position read = value.end - std::min(value.end, start);
    if (read > scanned_) fail(BeyondRepair, "what may be objects lies inside each other");
    scanned_ -= read;
    if (!value.dictionary || !value.mayBeXref) return;
    // Its Length tells how much of the file is the stream, unless it is wrong.
    constexpr Position keywords = 64;
    const Position size = source_->size();
    const bool known = value.length >= 0 && static_cast<Position>(value.length) < size;
    const Position end = value.end + static_cast<Position>(value.length) + keywords;
    if (known && end < size && measureAlone(start, end)) return;
    static_cast<void>(measureAlone(start, size));
}

/// Measures the object whose value begins at `start` as the only one of a document that ends at
/// `end`. False where libqpdf found it damaged, as it is where `end` cuts it off.
bool Expansion::measureAlone(Position start, Position end) {
    std::string text = "%PDF-1.7\n1 0 obj\n";
    text += slice(start, end);
    const std::size_t table = text.append("\nendstream\nendobj\n").size();
    text += "xref\n0 2\n0000000000 65535 f \n0000000009 00000 n \n"
            "trailer\n<< /Size 2 /Root 1 0 R >>\nstartxref\n" +
            std::to_string(table) + "\n%%EOF\n";
    QPDF alone;
    alone.setSuppressWarnings(true);
    try {
        alone.processMemoryFile("cross-reference stream", text.data(), text.size());
    } catch (const QPDFExc&) {
        return true; // what is no object alone is none in the document
    }
    QPDFObjectHandle object = alone.getObject(1, 0);
    if (!object.isStream()) return !alone.anyWarnings();
    QPDFObjectHandle dict = object.getDict();
    if (refersTo(dict.getKey("/Filter")) || refersTo(dict.getKey("/DecodeParms"))) {
        fail(BeyondRepair, "the filter of a cross-reference stream is a reference");
    }
    const bool whole = !alone.anyWarnings();
    const std::uint64_t given = decode(object, nullptr);
    const std::uint64_t entries = given / entrySize(dict.getKey("/W"));
    take(left_.entries, entries);
    largest_.bytes = std::max(largest_.bytes, given);
    largest_.entries = std::max(largest_.entries, entries);
    return whole;
}

void Expansion::measureObjectStreams(QPDF& document) {
    header_ = headerIn(*source_);
    const Entries entries = document.getXRefTable();
    std::set<int> streams;
    for (const auto& entry : entries) {
        if (entry.second.getType() == 2) streams.insert(entry.second.getObjStreamNumber());
    }
    for (const int id : streams) {
        const auto entry = entries.find(QPDFObjGen(id, 0));
        if (entry == entries.end()) continue;
        checkReferences(entries, entry->second);
        measureObjectStream(document.getObject(id, 0));
    }
}

/// What an object stream needs to be read does not lie in an object stream (7.5.7): libqpdf would
/// have to read that one first, without having it measured.
void Expansion::checkReferences(const Entries& entries, const QPDFXRefEntry& stream) {
    const auto refuse = [] { fail(BeyondRepair, "an object stream lies in another"); };
    if (stream.getType() != 1) refuse();
    const auto offset = static_cast<Position>(stream.getOffset());
    for (const long long id : scanObject(source_, header_ + offset).references) {
        const auto entry = id > 0 && id <= INT32_MAX
                               ? entries.find(QPDFObjGen(static_cast<int>(id), 0))
                               : entries.end();
        if (entry != entries.end() && entry->second.getType() == 2) refuse();
    }
}

void Expansion::measureObjectStream(QPDFObjectHandle stream) {
    if (!stream.isStream()) return;
    Host::ByteBuffer bytes;
    Collector collector(bytes);
    static_cast<void>(decode(stream, &collector));
    collector.check();

    QPDFObjectHandle first = stream.getDict().getKey("/First");
    if (!first.isInteger() || first.getIntValue() < 0) return;
    Buffer buffer(bytes.data(), bytes.size());
    const std::shared_ptr<InputSource> data =
        std::make_shared<BufferInputSource>("object stream", &buffer);
    const auto begin = static_cast<Position>(first.getIntValue());
    // The objects stand side by side. Where each began inside the one before, reading them all
    // would take the square of the size.
    Position budget = 4 * bytes.size();
    const std::vector<Position> offsets = offsetsIn(data, begin, left_.values);
    if (offsets.size() > left_.values) refuseSize();
    for (const Position offset : offsets) {
        if (offset >= bytes.size()) continue;
        const Scanned value = scan(data, offset, {.values = left_.values});
        take(left_.values, value.values);
        const Position read = value.end - offset;
        if (read > budget) fail(BeyondRepair, "objects in an object stream lie inside each other");
        budget -= read;
    }
}

} // namespace Libraries::Files::PDF::Import
