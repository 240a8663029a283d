#pragma once

#include "structures/entries.h"
#include "structures/indirect_objects.h"
#include "structures/structure_data.h"

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF {

/// Reads the cross-reference sections of a file (ISO 32000-1, 7.5.4, 7.5.8), from the newest one
/// along Prev. Throws `Flaw`.
class Sections {
public:
    Sections(Host::Cursor& cursor, IndirectObjects& objects, StructureData& data) noexcept
        : cursor_(cursor), objects_(objects), data_(data) {}

    /// Reads all of them, from the one at `offset` on, into `entries`.
    void read(std::uint64_t offset, Entries& entries);

    /// Where the newest section's trailer, or the dictionary that serves as one, stands in the
    /// source.
    [[nodiscard]] std::uint64_t trailer() const noexcept { return trailer_; }
    /// How many sections were superseded by one behind them.
    [[nodiscard]] std::uint64_t earlierRevisions() const noexcept { return earlierRevisions_; }

private:
    /// How the entries of a cross-reference stream are stored.
    struct Layout {
        std::uint64_t widths[3];
        std::vector<std::uint64_t> index; ///< pairs of a first number and a count
        [[nodiscard]] std::uint64_t entrySize() const noexcept {
            return widths[0] + widths[1] + widths[2];
        }
    };

    void readSection(std::uint64_t offset, bool hybrid);
    void readTable();
    void readSubsection(std::uint64_t first, std::uint64_t count);
    void readStream(std::uint64_t place, bool hybrid);
    [[nodiscard]] Layout layoutOf(std::string_view dict, std::uint64_t offset) const;
    void addEntries(const Layout& layout, std::span<const std::uint8_t> data, std::uint64_t offset);
    void addEntry(const Layout& layout, const std::uint8_t* bytes, std::uint64_t number,
                  std::uint64_t offset);
    void add(Entry entry, std::uint64_t offset);
    void takeTrailer(std::string_view dict, std::uint64_t offset);

    Host::Cursor& cursor_;
    IndirectObjects& objects_;
    StructureData& data_;
    Entries* entries_ = nullptr;
    std::vector<Entry> freed_; // by the table that is being read
    std::vector<std::pair<std::uint64_t, std::uint64_t>> streams_; // by number and offset
    std::set<std::uint64_t> visited_;
    std::uint64_t trailer_ = 0;
    std::uint64_t former_ = 0; // Prev of the section that is being read
    std::uint64_t hybrid_ = 0; // its XRefStm
    std::uint64_t earlierRevisions_ = 0;
};

} // namespace Libraries::Files::PDF
