#include "structures/sections.h"

#include "packed/entry.h"
#include "structures/flaw.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Libraries::Files::PDF {

namespace {

constexpr std::uint64_t numbers = std::uint64_t{1} << 32;
/// There are no more objects than bytes.
constexpr std::uint64_t fewEntries = 65536;

/// A whole number under `key`; `otherwise` where there is no such entry.
std::uint64_t numberIn(std::string_view dict, std::string_view key, std::uint64_t otherwise,
                       std::uint64_t offset, const char* expected) {
    const std::string_view entry = findPackedEntry(dict, key);
    if (entry.empty()) return otherwise;
    const auto number = wholePacked(entry);
    if (!number) damaged(offset, expected);
    return *number;
}

} // namespace

void Sections::read(std::uint64_t offset, Entries& entries) {
    entries_ = &entries;
    for (bool newest = true; newest || offset != 0; newest = false) {
        if (!visited_.insert(offset).second) {
            damaged(objects_.inSource(offset), "the sections make a ring");
        }
        former_ = hybrid_ = 0;
        readSection(offset, false);
        const std::uint64_t former = former_;
        if (hybrid_ != 0) readSection(hybrid_, true);
        for (const Entry& entry : std::exchange(freed_, {}))
            add(entry, offset);
        // That of a linearised file points ahead, to the other part of the same revision.
        if (former != 0 && former < offset) ++earlierRevisions_;
        offset = former;
    }
    entries.settle();
    for (const auto& [number, place] : streams_) {
        const Entry* const entry = entries.find(number);
        const bool isOwn = entry != nullptr && entry->kind == Entry::Kind::InFile;
        if (isOwn && entry->place == place) entries.mark(number, Entry::Kind::Storage);
    }
}

void Sections::readSection(std::uint64_t offset, bool hybrid) {
    objects_.seek(offset);
    const std::uint64_t start = objects_.tokens().skipSpace();
    if (objects_.tokens().word() == "xref" && !hybrid) {
        readTable();
    } else {
        cursor_.seek(start);
        readStream(offset, hybrid);
    }
}

void Sections::readTable() {
    Tokens& tokens = objects_.tokens();
    for (std::string_view word = tokens.word(); word != "trailer"; word = tokens.word()) {
        const auto first = wholeNumber(word);
        if (!first)
            damaged(tokens.wordOffset(), "the number of an object or \"trailer\" was expected");
        readSubsection(*first, tokens.number("the count of a subsection was expected"));
    }
    objects_.charge();
    const std::uint64_t offset = tokens.skipSpace();
    takeTrailer(objects_.readDictionary().bytes, offset);
}

void Sections::readSubsection(std::uint64_t first, std::uint64_t count) {
    constexpr std::uint64_t shortestEntry = 6; // "0 0 f "
    Tokens& tokens = objects_.tokens();
    const std::uint64_t start = tokens.wordOffset();
    if (first > numbers || count > numbers - first) damaged(start, "numbers are out of range");
    // The count is only the file's claim.
    if (count <= (cursor_.size() - start) / shortestEntry) entries_->reserve(count);
    for (std::uint64_t number = first; number < first + count; ++number) {
        Entry entry;
        entry.number = static_cast<std::uint32_t>(number);
        entry.place = tokens.number("the offset of an entry was expected");
        const std::uint64_t generation = tokens.number("the generation of an entry was expected");
        const std::string_view kind = tokens.word();
        if (kind == "n") {
            if (generation > 65535) damaged(tokens.wordOffset(), "a generation is out of range");
            entry.generation = static_cast<std::uint16_t>(generation);
            entry.kind = Entry::Kind::InFile;
            add(entry, tokens.wordOffset());
        } else if (kind == "f") {
            freed_.push_back(entry);
        } else {
            damaged(tokens.wordOffset(), "\"n\" or \"f\" was expected");
        }
    }
}

void Sections::readStream(std::uint64_t place, bool hybrid) {
    streams_.emplace_back(objects_.readHead().number, place);
    const std::uint64_t offset = objects_.tokens().skipSpace();
    const PackedValue stream = objects_.readValue();
    if (stream.kind != Value::Type::Stream || findPackedEntry(stream.bytes, "Type") != "/XRef") {
        damaged(offset, "a cross-reference stream was expected");
    }
    constexpr std::uint64_t none = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t length = numberIn(stream.bytes, "Length", none, offset,
                                          "the length of a cross-reference stream is no number");
    const std::string dict(stream.bytes); // reading on takes its place
    objects_.checkEnd(stream.streamOffset, length);
    const Layout layout = layoutOf(dict, offset);
    const Host::ByteBuffer data = data_.read(dict, stream.streamOffset, length);
    addEntries(layout, data.span(), offset);
    if (!hybrid) takeTrailer(dict, offset);
}

Sections::Layout Sections::layoutOf(std::string_view dict, std::uint64_t offset) const {
    constexpr std::uint64_t widest = 8;
    Layout layout{};
    const std::string_view widths = findPackedEntry(dict, "W");
    if (!widths.starts_with('[')) damaged(offset, "a cross-reference stream has no W");
    PackedElements each(widths);
    for (std::uint64_t& width : layout.widths) {
        const auto number = wholePacked(each.next());
        if (!number || *number > widest) damaged(offset, "W is no list of three widths");
        width = *number;
    }
    if (layout.entrySize() == 0) damaged(offset, "the entries of W have no width");
    const std::uint64_t size =
        numberIn(dict, "Size", 0, offset, "the Size of a cross-reference stream is no number");
    const std::string_view index = findPackedEntry(dict, "Index");
    if (index.empty()) {
        layout.index = {0, size};
        return layout;
    }
    if (!index.starts_with('[')) damaged(offset, "Index is no list");
    PackedElements parts(index);
    for (std::string_view part = parts.next(); !part.empty(); part = parts.next()) {
        const auto number = wholePacked(part);
        if (!number || *number > numbers) damaged(offset, "Index is no list of numbers");
        layout.index.push_back(*number);
    }
    if (layout.index.size() % 2 != 0) damaged(offset, "Index has an odd length");
    return layout;
}

void Sections::addEntries(const Layout& layout, std::span<const std::uint8_t> data,
                          std::uint64_t offset) {
    const std::uint64_t size = layout.entrySize();
    std::uint64_t left = data.size() / size;
    if (data.size() % size != 0) damaged(offset, "a cross-reference stream ends inside an entry");
    entries_->reserve(std::min<std::uint64_t>(left, cursor_.size()));
    const std::uint8_t* next = data.data();
    for (std::size_t part = 0; part < layout.index.size(); part += 2) {
        const std::uint64_t first = layout.index[part];
        const std::uint64_t count = layout.index[part + 1];
        if (count > left || count > numbers - first) {
            damaged(offset, "a cross-reference stream has fewer entries than it says");
        }
        for (std::uint64_t number = first; number < first + count; ++number, next += size)
            addEntry(layout, next, number, offset);
        left -= count;
    }
    if (left != 0) damaged(offset, "a cross-reference stream has more entries than it says");
}

void Sections::addEntry(const Layout& layout, const std::uint8_t* bytes, std::uint64_t number,
                        std::uint64_t offset) {
    std::uint64_t fields[3] = {1, 0, 0};
    for (int field = 0; field < 3; ++field) {
        if (layout.widths[field] != 0) fields[field] = 0;
        for (std::uint64_t byte = 0; byte < layout.widths[field]; ++byte)
            fields[field] = fields[field] << 8U | *bytes++;
    }
    Entry entry;
    entry.number = static_cast<std::uint32_t>(number);
    entry.place = fields[1];
    if (fields[0] == 1) {
        if (fields[2] > 65535) damaged(offset, "a generation is out of range");
        entry.kind = Entry::Kind::InFile;
        entry.generation = static_cast<std::uint16_t>(fields[2]);
    } else if (fields[0] == 2) {
        if (fields[1] >= numbers || fields[2] >= numbers) {
            damaged(offset, "the place of an object is out of range");
        }
        entry.kind = Entry::Kind::InStream;
        entry.index = static_cast<std::uint32_t>(fields[2]);
    } else if (fields[0] != 0) {
        damaged(offset, "a cross-reference stream has an entry of an unknown kind");
    }
    add(entry, offset);
}

void Sections::add(Entry entry, std::uint64_t offset) {
    // There the header stands: some programs say so that a number has no object.
    if (entry.kind == Entry::Kind::InFile && entry.place == 0) entry.kind = Entry::Kind::Free;
    if (entries_->list().size() > cursor_.size() + fewEntries) {
        throw Flaw{LimitExceeded, offset, "there are more entries than bytes"};
    }
    entries_->add(entry);
}

void Sections::takeTrailer(std::string_view dict, std::uint64_t offset) {
    if (!findPackedEntry(dict, "Encrypt").empty()) {
        throw Flaw{FileEncrypted, offset, "the trailer has an entry Encrypt"};
    }
    if (trailer_ == 0) trailer_ = offset;
    former_ = numberIn(dict, "Prev", 0, offset, "Prev is no number");
    hybrid_ = numberIn(dict, "XRefStm", 0, offset, "XRefStm is no number");
}

} // namespace Libraries::Files::PDF
