#include "host/cursor.h"
#include "packed/entry.h"
#include "packed/unpacker.h"
#include "structures/file_ends.h"
#include "structures/flaw.h"
#include "structures/mending.h"
#include "structures/object_loader.h"
#include "structures/sections.h"
#include "structures/structures.h"
#include "values/failure.h"

#include <algorithm>
#include <string>

namespace Libraries::Files::PDF {

namespace {

class AnyLoader {
public:
    explicit AnyLoader(DocumentState& state) noexcept
        : state_(state),
          cursor_(*state.source),
          objects_(cursor_, scanner_),
          data_(cursor_),
          sections_(cursor_, objects_, data_),
          loader_(state, entries_, objects_, scanner_, data_) {}

    [[nodiscard]] bool load();

private:
    void read();
    void readTrailer();
    void complain(const Flaw& flaw);
    [[nodiscard]] std::string foundAt(std::uint64_t offset);

    DocumentState& state_;
    Host::Cursor cursor_;
    ValueScanner scanner_;
    IndirectObjects objects_;
    StructureData data_;
    Entries entries_;
    Sections sections_;
    ObjectLoader loader_;
};

bool AnyLoader::load() {
    try {
        read();
        return true;
    } catch (const Flaw& flaw) {
        // What ends too early may be the source's fault.
        const Flaw unread{SourceNotRead, cursor_.position(), "the source cannot be read"};
        const Flaw& reason = cursor_.failed() ? unread : flaw;
        complain(reason);
        return fail(reason.code);
    }
}

void AnyLoader::complain(const Flaw& flaw) {
    const auto place = loader_.place();
    if (place.stream != 0) {
        report(LogLevel::Error, "Object ", place.object, " in object stream ", place.stream, ": ",
               flaw.what, "; offset: ", flaw.offset);
        return;
    }
    const std::string found = foundAt(flaw.offset);
    if (place.object != 0) {
        report(LogLevel::Error, "Object ", place.object, ": ", flaw.what, "; offset: ", flaw.offset,
               "; found: ", Host::Codes{found});
    } else {
        report(LogLevel::Error, "File: ", flaw.what, "; offset: ", flaw.offset,
               "; found: ", Host::Codes{found});
    }
}

/// What stands at an offset, as far as it can be printed.
std::string AnyLoader::foundAt(std::uint64_t offset) {
    constexpr std::size_t most = 24;
    std::string found;
    cursor_.seek(offset);
    for (int code = cursor_.next(); code >= ' ' && code <= '~' && found.size() < most;
         code = cursor_.next())
        found.push_back(static_cast<char>(code));
    return found;
}

void AnyLoader::read() {
    const FileHeader header = findHeader(cursor_);
    objects_.countFrom(header.offset);
    state_.version = header.version;
    sections_.read(findSections(cursor_), entries_);
    loader_.load();
    readTrailer();
    state_.faithfulNumbers = true;
    state_.nextObjectId = static_cast<std::uint32_t>(state_.objects.size()) + 1;
    if (sections_.earlierRevisions() != 0) {
        state_.losses.note(Loss::Superseded, sections_.earlierRevisions());
    }
}

void AnyLoader::readTrailer() {
    scanner_.numberBy(&entries_);
    scanner_.onlyHexadecimal(true);
    cursor_.seek(sections_.trailer());
    const PackedValue trailer = scanner_.read(cursor_);
    if (cursor_.failed())
        throw Flaw{SourceNotRead, sections_.trailer(), "the source cannot be read"};
    scanner_.addLosses(state_.losses, 0);
    Mending mending(state_);
    mending.mend(trailer);
    const Ref<Value> value = unpack(mending.trailer(), state_.objects.store()->shared());
    state_.trailer = Ref<Dictionary>(as<Dictionary>(value));
    state_.version = std::max(state_.version, mending.version());
}

} // namespace

bool loadAny(DocumentState& state) {
    return AnyLoader(state).load();
}

} // namespace Libraries::Files::PDF
