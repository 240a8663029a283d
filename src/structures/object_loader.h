#pragma once

#include "state/document_state.h"
#include "structures/entries.h"
#include "structures/indirect_objects.h"
#include "structures/structure_data.h"
#include "structures/value_scanner.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF {

/// Reads the objects of a document out of its file and its object streams (ISO 32000-1, 7.5.7) into
/// the object table. Throws `Flaw`.
class ObjectLoader {
public:
    ObjectLoader(DocumentState& state, Entries& entries, IndirectObjects& objects,
                 ValueScanner& scanner, StructureData& data) noexcept
        : state_(state), entries_(entries), objects_(objects), scanner_(scanner), data_(data) {}

    /// Which object is being read, for messages; 0 for none.
    struct Place {
        std::uint64_t object = 0;
        std::uint64_t stream = 0; ///< the object stream that it lies in
    };

    void load();

    [[nodiscard]] Place place() const noexcept { return place_; }

private:
    /// An object in an object stream, as its first numbers say.
    struct Member {
        std::uint64_t number;
        std::uint64_t offset;
    };

    void markStorage();
    void prepare();
    void loadFromFile();
    void loadFromStreams();
    void loadObject(const Entry& entry);
    void loadStream(const Entry& stream);
    [[nodiscard]] std::vector<Member> readMembers(Host::Cursor& cursor, std::string_view dict);
    void loadMember(Host::Cursor& cursor, const Entry& entry, std::uint64_t end);
    [[nodiscard]] Host::ByteBuffer readStream(const Entry& stream, std::string& dict);
    [[nodiscard]] std::uint64_t lengthOf(std::string_view dict, std::uint64_t offset);
    void keep(const Entry& entry, PackedValue value);
    void checkData(const Entry& entry, const PackedValue& stream);
    void checkTypes();
    void checkLengths();
    void checkAllThere();
    [[nodiscard]] const ObjectTable::Slot& slot(const Entry& entry) const noexcept {
        return state_.objects.slots()[entry.newNumber - 1];
    }
    [[nodiscard]] std::string_view follow(std::string_view packed) const noexcept;

    DocumentState& state_;
    Entries& entries_;
    IndirectObjects& objects_;
    ValueScanner& scanner_;
    StructureData& data_;
    Place place_;
    std::vector<std::uint32_t> streams_; // the numbers of the object streams
    // By the file's numbers:
    std::vector<std::uint32_t> dropped_; // what turned out to be no object
    std::vector<std::uint32_t> lengths_; // streams whose Length is a reference
    std::vector<std::uint32_t> types_;   // streams whose Type is one
};

} // namespace Libraries::Files::PDF
