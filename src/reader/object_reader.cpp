#include "reader/object_reader.h"

#include "host/numbers.h"
#include "spelling/characters.h"
#include "values/failure.h"

namespace Libraries::Files::PDF {

using Host::Cursor;
using Host::StrConv::num;

bool ObjectReader::read(std::uint64_t id, std::uint16_t generation, std::uint64_t offset,
                        DocumentState& state) {
    const bool done = readAt(id, generation, offset);
    const std::uint64_t end = cursor_.position();
    if (end > offset) charactersRead_ += end - offset;
    if (!done) return false;
    const auto number = static_cast<std::uint32_t>(id);
    scanner_.addLosses(state.losses, number);
    state.objects.append(number, generation, keep(*state.objects.store()));
    return true;
}

bool ObjectReader::readAt(std::uint64_t id, std::uint16_t generation, std::uint64_t offset) {
    cursor_.seek(offset);
    if (!readHeaderLine() || !checkHeader(id, generation, offset)) return false;
    // The end of the data may end a line or a name; a fault may not.
    if (scanner_.readObjectValue() && !cursor_.failed()) return true;
    return refuse("Failed to read value of object ", id, " at ", offset);
}

PackedValue ObjectReader::keep(PackedStore& store) {
    PackedValue packed = scanner_.packed();
    const bool large = PackedStore::isLarge(packed.bytes.size());
    packed.bytes = large ? store.adopt(scanner_.takeBytes()) : store.keep(packed.bytes);
    return packed;
}

// Only as much of the line is read as is needed: a whole file may stand on one line.
bool ObjectReader::readHeaderLine() {
    std::size_t count = 0;
    bool inPart = false;
    for (int code = cursor_.next(); code != Cursor::end; code = cursor_.next()) {
        if (code == ' ') {
            inPart = false;
            continue;
        }
        if (Spelling::isLineEnding(code)) {
            if (code == '\r') skipLineFeed();
            break;
        }
        if (!inPart && count == parts_.size()) {
            cursor_.back();
            break;
        }
        if (!inPart) parts_[count++].clear();
        inPart = true;
        parts_[count - 1].push_back(static_cast<char>(code));
    }
    return count == parts_.size() && parts_[2] == "obj" && !cursor_.failed();
}

void ObjectReader::skipLineFeed() noexcept {
    const int code = cursor_.next();
    if (code != Cursor::end && code != '\n') cursor_.back();
}

bool ObjectReader::checkHeader(std::uint64_t id, std::uint16_t generation,
                               std::uint64_t offset) const noexcept {
    const auto foundId = num<std::uint32_t>(parts_[0]);
    if (!foundId) {
        return refuse("Object id is invalid: ", Host::Codes{parts_[0]}, "; offset: ", offset);
    }
    const auto foundGeneration = num<std::uint16_t>(parts_[1]);
    if (!foundGeneration) {
        return refuse("Object generation is invalid: ", Host::Codes{parts_[1]},
                      "; offset: ", offset);
    }
    if (*foundId != id) {
        return refuse("ID for object at ", offset, " differs; expected ", id, ", but got ",
                      *foundId);
    }
    if (*foundGeneration != generation) {
        return refuse("Generation for object at ", offset, " differs; expected ", generation,
                      ", but got ", *foundGeneration);
    }
    return true;
}

} // namespace Libraries::Files::PDF
