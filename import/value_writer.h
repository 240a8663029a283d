#pragma once

#include "libqpdf.h"

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace Libraries::Files::PDF::Import {

/// The entries of a dictionary, by names with their solidus.
using Entries = std::map<std::string, QPDFObjectHandle>;

/// Gives objects their numbers in the file that is written, in the order in which they are met.
class Numbering {
public:
    /// The number of what `reference` leads to; 0 where that is nothing, or belongs to the former
    /// structure of the file.
    [[nodiscard]] std::uint32_t of(QPDFObjectHandle& reference);

    /// How many objects have a number.
    [[nodiscard]] std::uint32_t count() const noexcept {
        return static_cast<std::uint32_t>(objects_.size());
    }
    /// The object of a number from 1 to `count`.
    [[nodiscard]] QPDFObjectHandle object(std::uint32_t number) const {
        return objects_[number - 1];
    }

private:
    std::vector<QPDFObjectHandle> objects_;
    std::unordered_map<std::uint64_t, std::uint32_t> numbers_;
};

/// Spells values in PDF syntax. What nests does not make calls nest. An entry whose value is
/// nothing is no entry (ISO 32000-1, 7.3.7), an element that is nothing is null.
class ValueWriter {
public:
    explicit ValueWriter(Numbering& numbering) noexcept : numbering_(numbering) {}

    /// Appends the value of an object that is no stream.
    void append(std::string& text, QPDFObjectHandle object);
    /// Appends a dictionary of these entries.
    void append(std::string& text, Entries entries);
    /// The same with no angle bracket inside a string: where the trailer is searched they count.
    void appendTrailer(std::string& text, Entries entries);

private:
    /// A container that was begun, with what is still to come.
    struct Level {
        bool isArray;
        Entries entries;
        std::vector<QPDFObjectHandle> items; // from the last to the first
    };

    [[nodiscard]] bool isNothing(QPDFObjectHandle& value);
    void begin(std::string& text, QPDFObjectHandle& value);
    void beginDirect(std::string& text, QPDFObjectHandle& value);
    void beginArray(std::string& text, QPDFObjectHandle& array);
    void beginDictionary(std::string& text, Entries entries);
    void step(std::string& text);
    void finish(std::string& text);

    Numbering& numbering_;
    std::vector<Level> levels_;
    bool hexStrings_ = false;
};

} // namespace Libraries::Files::PDF::Import
