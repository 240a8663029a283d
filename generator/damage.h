#pragma once

#include "generator/spelling.h"

#include <cstdint>
#include <map>
#include <string>

namespace Generator {

/// Where an object is, as a cross-reference section says it.
struct CrossReference {
    enum Kind : std::uint8_t { Free, InFile, Packed };
    std::uint64_t kind = Free;
    std::uint64_t place = 0; ///< the next free number, an offset, or the number of an object stream
    std::uint64_t part = 0;  ///< a generation, or the index in the object stream
};

using CrossReferences = std::map<std::uint32_t, CrossReference>;

/// Spoils one thing of a file, whichever it is asked about at the right time.
class Damage {
public:
    explicit Damage(std::uint32_t seed) : random_(seed) {}

    /// One of the entries of a section, its place, its kind or whether it is there.
    void spoil(CrossReferences& entries);
    /// One of the values of a dictionary, or whether it is there.
    void spoil(Spelling::Entries& entries);
    /// Some bytes.
    void spoil(std::string& bytes);

private:
    /// Whether it is time; then never again.
    bool due(unsigned percent);
    std::string spoilt(const std::string& value);
    std::uint64_t otherNumber(std::uint64_t number);

    Random random_;
    bool done_ = false;
};

/// A file with some of its bytes changed, gone, twice or cut off at the end, by the seed. Most of
/// that happens to what stands where the structure does.
[[nodiscard]] std::string mutated(std::string file, std::uint32_t seed);

} // namespace Generator
