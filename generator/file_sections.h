#pragma once

#include "generator/damage.h"
#include "generator/spelling.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Generator {

/// How numbers and lines of one file's sections are spelled.
struct SectionStyle {
    bool wild = false;    ///< white space of all kinds
    bool padded = false;  ///< offsets have ten digits and data no filter: its size is known before
    std::string entryEnd; ///< of a table's entries: two bytes
    Damage* damage = nullptr; ///< what spoils them; none where it is null
};

/// A table with its trailer (ISO 32000-1, 7.5.4 and 7.5.5).
[[nodiscard]] std::string tableSection(CrossReferences entries, Spelling::Entries trailer,
                                       const SectionStyle& style, Random& random);
/// A cross-reference stream (ISO 32000-1, 7.5.8) as object `id`.
[[nodiscard]] std::string streamSection(std::uint32_t id, CrossReferences entries,
                                        Spelling::Entries trailer, const SectionStyle& style,
                                        Random& random);
/// "ID GENERATION obj", `value`, "endobj".
[[nodiscard]] std::string objectText(std::uint32_t id, std::uint16_t generation,
                                     const std::string& value, bool wild, Random& random);
/// The value that an object stream with these values is (ISO 32000-1, 7.5.7). `extends`: a
/// reference, or nothing.
[[nodiscard]] std::string
objectStream(const std::vector<std::pair<std::uint32_t, std::string>>& held,
             const std::string& extends, const SectionStyle& style, Random& random);

} // namespace Generator
