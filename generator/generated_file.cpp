#include "generator/generated_file.h"

#include "generator/file_sections.h"
#include "generator/generated_document.h"

#include <algorithm>

namespace Generator {

namespace {

using Objects = std::map<std::uint32_t, GeneratedObject>;

/// How the objects of a revision are found.
enum class Section { Table, Stream, Hybrid };

class FileWriter {
public:
    FileWriter(Random& random, bool wild, Damage* damage) : random_(random), damage_(damage) {
        static constexpr std::string_view entryEnds[] = {" \n", " \r", "\r\n"};
        style_.wild = wild;
        style_.damage = damage;
        style_.entryEnd = random.oneOf(entryEnds);
        usual_ = static_cast<Section>(random.below(3));
    }

    std::string file(const GeneratedDocument& document);

private:
    void putHeader();
    void putRevision(const GeneratedRevision& revision);
    void putDivided(const GeneratedRevision& revision);
    void putSection(const GeneratedRevision& revision, Section kind);
    std::string hidden(const GeneratedRevision& revision, std::uint32_t self);
    void putEnd(std::size_t section);

    Section anyKind();
    void begin(const GeneratedRevision& revision);
    void pack(Objects& objects);
    void packInto(std::uint32_t stream, Objects& objects);
    void place(const Objects& objects);
    void fillGaps();
    Spelling::Entries trailer(const GeneratedRevision& revision, std::size_t former,
                              Random& random);
    [[nodiscard]] std::size_t position() const { return bytes_.size() - start_; }

    Random& random_;
    Damage* damage_;
    SectionStyle style_;
    Section usual_ = Section::Table;
    std::string bytes_;
    std::size_t start_ = 0;           // of the header
    CrossReferences entries_;         // of the section to come
    std::vector<std::uint32_t> free_; // numbers for what stores others
    std::string lastStream_;          // a reference to the object stream before
    std::uint32_t size_ = 1;
    std::size_t former_ = 0; // where the section before is; 0: there is none
};

std::string FileWriter::file(const GeneratedDocument& document) {
    putHeader();
    for (const GeneratedRevision& revision : document.revisions()) {
        begin(revision);
        former_ == 0 && random_.chance(25) ? putDivided(revision) : putRevision(revision);
    }
    if (random_.chance(20))
        bytes_ += std::string(random_.below(900), random_.chance(50) ? '\0' : 'j');
    return bytes_;
}

void FileWriter::putHeader() {
    static constexpr std::string_view versions[] = {"1.0", "1.3", "1.4", "1.5",
                                                    "1.6", "1.7", "2.0"};
    static constexpr std::string_view ends[] = {"\n", "\r\n", "\r"};
    if (random_.chance(15)) bytes_ = std::string(random_.below(900), 'x') + "\n";
    start_ = bytes_.size();
    bytes_.append("%PDF-").append(random_.oneOf(versions)).append(random_.oneOf(ends));
    if (random_.chance(70)) bytes_ += "%\xE2\xE3\xCF\xD3\n";
}

Section FileWriter::anyKind() {
    return random_.chance(70) ? usual_ : static_cast<Section>(random_.below(3));
}

void FileWriter::begin(const GeneratedRevision& revision) {
    entries_.clear();
    free_ = revision.spare;
    if (former_ == 0 || random_.chance(30)) entries_[0] = {CrossReference::Free, 0, 65535};
    for (const auto& [id, generation] : revision.freed)
        entries_[id] = {CrossReference::Free, 0, generation};
}

void FileWriter::putRevision(const GeneratedRevision& revision) {
    const Section kind = anyKind();
    Objects objects = revision.objects;
    if (kind != Section::Table) pack(objects);
    place(objects);
    putSection(revision, kind);
}

/// Takes what may lie in object streams out of `objects`, and adds the streams.
void FileWriter::pack(Objects& objects) {
    for (std::size_t left = random_.below(4); left > 0; --left) {
        Objects taken;
        const unsigned share = random_.chance(50) ? 90 : 40;
        for (const auto& [id, object] : Objects(objects)) {
            if (!object.outside && random_.chance(share)) taken.insert(objects.extract(id));
        }
        packInto(free_.front(), taken);
        free_.erase(free_.begin());
    }
}

void FileWriter::packInto(std::uint32_t stream, Objects& objects) {
    std::vector<std::pair<std::uint32_t, std::string>> held;
    for (const auto& [id, object] : objects)
        held.emplace_back(id, object.value);
    random_.shuffle(held);
    for (std::size_t index = 0; index < held.size(); ++index)
        entries_[held[index].first] = {CrossReference::Packed, stream, index};
    const std::string extends = random_.chance(30) ? lastStream_ : "";
    place({{stream, {0, objectStream(held, extends, style_, random_), true}}});
    lastStream_ = std::to_string(stream) + " 0 R";
}

void FileWriter::place(const Objects& objects) {
    std::vector<std::uint32_t> order;
    for (const auto& [id, object] : objects)
        order.push_back(id);
    random_.shuffle(order);
    for (const std::uint32_t id : order) {
        const GeneratedObject& object = objects.at(id);
        entries_[id] = {CrossReference::InFile, position(), object.generation};
        bytes_ += objectText(id, object.generation, object.value, style_.wild, random_);
    }
}

/// Numbers that no one uses are free, or not in the section at all.
void FileWriter::fillGaps() {
    if (former_ != 0 || style_.padded || random_.chance(40)) return;
    for (std::uint32_t id = entries_.rbegin()->first; id > 0; --id)
        entries_.try_emplace(id, CrossReference{CrossReference::Free, 0, 0});
}

Spelling::Entries FileWriter::trailer(const GeneratedRevision& revision, std::size_t former,
                                      Random& random) {
    const auto number = [this](std::size_t value) {
        const std::string digits = std::to_string(value);
        return std::string(style_.padded ? 10 - digits.size() : 0, '0') + digits;
    };
    size_ = std::max(size_, entries_.rbegin()->first + 1);
    Spelling::Entries entries = {{"/Size", number(size_)}, {"/Root", revision.root}};
    if (!revision.info.empty()) entries.emplace_back("/Info", revision.info);
    if (random.chance(40)) entries.emplace_back("/ID", "[<00112233>(\\n\\\\0123456789abcd)]");
    if (random.chance(10)) entries.emplace_back("/A#20Key", "[1 (a) null 99999 0 R]");
    if (former != 0) entries.emplace_back("/Prev", number(former));
    random.shuffle(entries);
    return entries;
}

void FileWriter::putSection(const GeneratedRevision& revision, Section kind) {
    const std::uint32_t self = free_.back();
    if (kind != Section::Table) entries_[self] = {CrossReference::InFile, position(), 0};
    if (entries_.empty()) entries_[0] = {CrossReference::Free, 0, 65535};
    fillGaps();
    Spelling::Entries entries = trailer(revision, former_, random_);
    if (kind == Section::Hybrid) {
        entries.emplace_back("/XRefStm", std::to_string(position()));
        bytes_ += hidden(revision, self);
    }
    former_ = position();
    bytes_ += kind == Section::Stream ? streamSection(self, entries_, entries, style_, random_)
                                      : tableSection(entries_, entries, style_, random_);
    putEnd(former_);
}

/// The cross-reference stream with what a hybrid file hides: the table has these as free ones, or
/// not at all.
std::string FileWriter::hidden(const GeneratedRevision& revision, std::uint32_t self) {
    CrossReferences hidden;
    for (const auto& [id, entry] : entries_) {
        if (entry.kind == CrossReference::Packed || id == self) hidden[id] = entry;
    }
    const bool areFree = random_.chance(70);
    for (const auto& [id, entry] : hidden) {
        if (areFree) entries_[id] = {CrossReference::Free, 0, 65535};
        if (!areFree && entries_.size() > 1) entries_.erase(id);
    }
    const Spelling::Entries entries = {{"/Size", std::to_string(size_)}, {"/Root", revision.root}};
    return streamSection(self, hidden, entries, style_, random_);
}

void FileWriter::putEnd(std::size_t section) {
    static constexpr std::string_view ends[] = {"\n", "\r\n", "\r"};
    const std::string_view end = style_.wild ? random_.oneOf(ends) : "\n";
    bytes_.append("startxref").append(end).append(std::to_string(section)).append(end);
    bytes_.append("%%EOF").append(random_.chance(80) ? end : "");
}

/// As a linearised file (ISO 32000-1, annex F): a section with some of the objects in front, one
/// with the others behind all.
void FileWriter::putDivided(const GeneratedRevision& revision) {
    const bool asStream = usual_ != Section::Table;
    Objects front, rest = revision.objects;
    for (const auto& [id, object] : revision.objects) {
        if (random_.chance(30)) front.insert(rest.extract(id));
    }
    style_.padded = true;
    const std::size_t frontAt = position();
    place(front);
    const std::uint32_t self = free_.back();
    free_.pop_back();
    if (asStream) entries_[self] = {CrossReference::InFile, frontAt, 0};
    const Random former = random_;
    const auto section = [&](std::size_t behind) {
        Random random = former;
        const Spelling::Entries entries = trailer(revision, behind, random);
        return asStream ? streamSection(self, entries_, entries, style_, random)
                        : tableSection(entries_, entries, style_, random);
    };
    // Sound it tells its size, and with it where the objects behind it are.
    style_.damage = nullptr;
    const std::size_t size = section(1).size();
    style_.damage = damage_;
    for (auto& [id, entry] : entries_) {
        if (entry.kind == CrossReference::InFile && id != self) entry.place += size;
    }
    bytes_.insert(start_ + frontAt, size, ' ');
    CrossReferences inFront = std::exchange(entries_, {{0, {CrossReference::Free, 0, 65535}}});
    if (asStream) pack(rest);
    place(rest);
    if (asStream) entries_[free_.back()] = {CrossReference::InFile, position(), 0};
    size_ = std::max(inFront.rbegin()->first, entries_.rbegin()->first) + 1;
    const std::size_t mainAt = position();
    putSection(revision, asStream ? Section::Stream : Section::Table);
    entries_ = std::move(inFront);
    bytes_.replace(start_ + frontAt, size, section(mainAt));
    style_.padded = false;
    former_ = frontAt;
    putEnd(frontAt);
}

} // namespace

namespace {

std::string file(std::uint32_t seed, Damage* damage) {
    Random random(seed);
    const bool wild = random.chance(50);
    const GeneratedDocument document(random, wild);
    return FileWriter(random, wild, damage).file(document);
}

} // namespace

std::string generatedFile(std::uint32_t seed) {
    return file(seed, nullptr);
}

std::string damagedFile(std::uint32_t seed) {
    Damage damage(seed);
    return file(seed, &damage);
}

} // namespace Generator
