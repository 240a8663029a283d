#include "structures/object_loader.h"

#include "host/guard.h"
#include "packed/entry.h"
#include "structures/flaw.h"

#include <host/memory_stripe.h>

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF {

namespace {

bool isStorageType(std::string_view type) noexcept {
    return type == "/XRef" || type == "/ObjStm";
}

/// Entries by where they stand in the file, so that it is read from front to back.
void sortByPlace(std::vector<const Entry*>& entries) {
    if (std::ranges::is_sorted(entries, {}, &Entry::place)) return;
    std::ranges::sort(entries, {}, &Entry::place);
}

} // namespace

void ObjectLoader::load() {
    markStorage();
    // What is no object shows when it is read. Then all references to it have been read as well,
    // so that they have to be read once more; there is nothing new to be found the second time.
    for (;;) {
        prepare();
        loadFromFile();
        loadFromStreams();
        checkTypes();
        if (dropped_.empty()) break;
        for (const std::uint32_t number : std::exchange(dropped_, {}))
            entries_.mark(number, Entry::Kind::Free);
    }
    checkAllThere();
    checkLengths();
    place_ = {};
}

void ObjectLoader::markStorage() {
    for (const Entry& entry : entries_.list()) {
        if (entry.kind != Entry::Kind::InStream) continue;
        const auto stream = static_cast<std::uint32_t>(entry.place);
        if (streams_.empty() || streams_.back() != stream) streams_.push_back(stream);
    }
    std::ranges::sort(streams_);
    streams_.erase(std::unique(streams_.begin(), streams_.end()), streams_.end());
    for (const std::uint32_t number : streams_) {
        place_ = {number, 0};
        const Entry* const entry = entries_.find(number);
        const bool isThere =
            entry != nullptr && entry->generation == 0 &&
            (entry->kind == Entry::Kind::InFile || entry->kind == Entry::Kind::Storage);
        if (!isThere) damaged(0, "this object stream is no object of the file");
        entries_.mark(number, Entry::Kind::Storage);
    }
}

void ObjectLoader::prepare() {
    entries_.number();
    state_.objects = {};
    state_.losses = {};
    lengths_.clear();
    types_.clear();
    state_.objects.reserve(entries_.objects());
    for (std::uint32_t number = 1; number <= entries_.objects(); ++number)
        state_.objects.append(number, 0, PackedValue());
}

void ObjectLoader::loadFromFile() {
    std::vector<const Entry*> entries;
    for (const Entry& entry : entries_.list()) {
        if (entry.kind == Entry::Kind::InFile) entries.push_back(&entry);
    }
    sortByPlace(entries);
    scanner_.numberBy(&entries_);
    for (const Entry* entry : entries)
        loadObject(*entry);
}

void ObjectLoader::loadObject(const Entry& entry) {
    place_ = {entry.number, 0};
    objects_.seek(entry.place);
    const auto head = objects_.readHead();
    if (head.number != entry.number || head.generation != entry.generation) {
        damaged(objects_.inSource(entry.place), "another object stands here");
    }
    const PackedValue value = objects_.readValue();
    const bool isStream = value.kind == Value::Type::Stream;
    const std::string_view type = isStream ? findPackedEntry(value.bytes, "Type") : "";
    if (type.ends_with(" R")) types_.push_back(entry.number);
    if (value.kind == Value::Type::Null || isStorageType(type)) {
        dropped_.push_back(entry.number);
        return;
    }
    if (isStream) checkData(entry, value);
    keep(entry, value);
}

/// Looks at where the data of a stream ends, at once or when its length has been read.
void ObjectLoader::checkData(const Entry& entry, const PackedValue& stream) {
    const std::string_view length = findPackedEntry(stream.bytes, "Length");
    if (length.ends_with(" R")) {
        lengths_.push_back(entry.number);
        return;
    }
    const auto whole = wholePacked(length);
    if (!whole)
        damaged(objects_.inSource(entry.place), "the Length of this stream is no whole number");
    objects_.checkEnd(stream.streamOffset, *whole);
}

void ObjectLoader::keep(const Entry& entry, PackedValue value) {
    scanner_.addLosses(state_.losses, entry.newNumber);
    PackedStore& store = *state_.objects.store();
    const bool large = PackedStore::isLarge(value.bytes.size());
    value.bytes = large ? store.adopt(scanner_.takeBytes()) : store.keep(value.bytes);
    state_.objects.replace(slot(entry), value);
}

void ObjectLoader::loadFromStreams() {
    std::vector<const Entry*> streams;
    for (const std::uint32_t number : streams_)
        streams.push_back(entries_.find(number));
    sortByPlace(streams);
    for (const Entry* stream : streams)
        loadStream(*stream);
}

void ObjectLoader::loadStream(const Entry& stream) {
    place_ = {stream.number, 0};
    std::string dict;
    const Ref<Host::MemoryStripe> data =
        Host::orThrow(Host::MemoryStripe::create(readStream(stream, dict)));
    Host::Cursor cursor(*data);
    const std::vector<Member> members = readMembers(cursor, dict);
    scanner_.numberBy(&entries_);
    for (std::size_t index = 0; index < members.size(); ++index) {
        const Entry* const entry = entries_.find(members[index].number);
        const bool isHere = entry != nullptr && entry->kind == Entry::Kind::InStream &&
                            entry->place == stream.number && entry->index == index;
        if (!isHere) continue;
        const bool last = index + 1 == members.size();
        place_ = {entry->number, stream.number};
        cursor.seek(members[index].offset);
        loadMember(cursor, *entry, last ? data->size() : members[index + 1].offset);
    }
}

void ObjectLoader::loadMember(Host::Cursor& cursor, const Entry& entry, std::uint64_t end) {
    const std::uint64_t offset = cursor.position();
    const PackedValue value = scanner_.read(cursor);
    if (cursor.position() > end) damaged(offset, "this object reaches into the next one");
    if (value.kind == Value::Type::Null) {
        dropped_.push_back(entry.number);
    } else {
        keep(entry, value);
    }
}

/// The objects that an object stream says it has, with where they begin in its data.
std::vector<ObjectLoader::Member> ObjectLoader::readMembers(Host::Cursor& cursor,
                                                            std::string_view dict) {
    const auto count = wholePacked(findPackedEntry(dict, "N"));
    const auto first = wholePacked(findPackedEntry(dict, "First"));
    if (!count || !first) damaged(0, "the N or First of this object stream is no whole number");
    if (*first > cursor.size()) damaged(0, "First leads out of this object stream");
    std::vector<Member> members;
    Tokens tokens(cursor);
    while (members.size() < *count) {
        Member member{};
        member.number = tokens.number("the number of an object was expected");
        member.offset = tokens.number("the offset of an object was expected");
        const std::uint64_t offset = tokens.wordOffset();
        if (member.offset > cursor.size() - *first) damaged(offset, "an offset leads out");
        member.offset += *first;
        const bool ascends = members.empty() || members.back().offset < member.offset;
        if (!ascends) damaged(offset, "the offsets of an object stream do not ascend");
        members.push_back(member);
    }
    if (cursor.position() > *first) damaged(*first, "First leads into the offsets");
    return members;
}

Host::ByteBuffer ObjectLoader::readStream(const Entry& stream, std::string& dict) {
    scanner_.numberBy(nullptr); // what is needed of the objects it refers to is read from the file
    objects_.seek(stream.place);
    const auto head = objects_.readHead();
    if (head.number != stream.number || head.generation != 0) {
        damaged(objects_.inSource(stream.place), "another object stands here");
    }
    const PackedValue value = objects_.readValue();
    if (value.kind != Value::Type::Stream || findPackedEntry(value.bytes, "Type") != "/ObjStm") {
        damaged(objects_.inSource(stream.place), "an object stream was expected");
    }
    dict = value.bytes; // reading on takes its place
    const std::uint64_t length = lengthOf(dict, objects_.inSource(stream.place));
    objects_.checkEnd(value.streamOffset, length);
    return data_.read(dict, value.streamOffset, length);
}

/// The length of an object stream, which no object in an object stream may be (7.5.7).
std::uint64_t ObjectLoader::lengthOf(std::string_view dict, std::uint64_t offset) {
    std::string_view length = findPackedEntry(dict, "Length");
    if (length.ends_with(" R")) {
        const auto number = wholeNumber(length.substr(0, length.find(' ')));
        const Entry* const entry = number ? entries_.find(*number) : nullptr;
        if (entry == nullptr || entry->kind != Entry::Kind::InFile) {
            damaged(offset, "the Length of this stream is no object of the file");
        }
        objects_.seek(entry->place);
        static_cast<void>(objects_.readHead());
        length = objects_.readValue().bytes;
    }
    const auto whole = wholePacked(length);
    if (!whole) damaged(offset, "the Length of this stream is no whole number");
    return *whole;
}

/// The packed value that a reference leads to.
std::string_view ObjectLoader::follow(std::string_view packed) const noexcept {
    const auto number = wholeNumber(packed.substr(0, packed.find(' ')));
    return state_.objects.slots()[*number - 1].packed().bytes;
}

void ObjectLoader::checkTypes() {
    for (const std::uint32_t number : types_) {
        const std::string_view dict = slot(*entries_.find(number)).packed().bytes;
        if (isStorageType(follow(findPackedEntry(dict, "Type")))) dropped_.push_back(number);
    }
}

void ObjectLoader::checkLengths() {
    for (const std::uint32_t number : lengths_) {
        const Entry& entry = *entries_.find(number);
        place_ = {number, 0};
        const PackedValue stream = slot(entry).packed();
        const auto whole = wholePacked(follow(findPackedEntry(stream.bytes, "Length")));
        if (!whole)
            damaged(objects_.inSource(entry.place), "the Length of this stream is no whole number");
        objects_.checkEnd(stream.streamOffset, *whole);
    }
}

void ObjectLoader::checkAllThere() {
    for (const Entry& entry : entries_.list()) {
        if (!entry.isObject() || slot(entry).packed().kind != Value::Type::Invalid) continue;
        place_ = {entry.number, entry.place};
        damaged(0, "the object stream does not have this object where its entry says");
    }
}

} // namespace Libraries::Files::PDF
