#pragma once

#include "support/documents.h"

#include <pdf/document.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Support {

namespace PDF = Libraries::Files::PDF;

/// The parts of a file that a fault can be put into: lines with their ending, but for the three
/// pieces of an entry. Those of an object, and of its entry, are the last object's.
enum class Part {
    Header,
    ObjectHeader,
    ObjectEnd,
    XrefKeyword,
    XrefRange,
    FreeEntry,
    Offset,
    Generation,
    InUse,
    TrailerKeyword,
    TrailerEntries,
    StartXref,
    XrefOffset,
    EndMarker
};

/// Puts a PDF file together: computes offsets, the cross-reference table and startxref.
///
///     open(DocumentBuilder::minimal().object(5, "<< /A 1 >>").bytes())
class DocumentBuilder {
public:
    /// Catalog 1, page tree 2, page 3 and its content stream 4 with the data "0 0 9 9 re f".
    [[nodiscard]] static DocumentBuilder minimal(PDF::Compression content = PDF::Compression::None);

    /// What stands behind "%PDF-": 1.7 until set.
    DocumentBuilder& version(std::string_view version);
    /// Ends every line but those of stream data: LF until set.
    DocumentBuilder& lineEnding(std::string_view lineEnding);
    /// Adds an object at the end of the file, or replaces the one with this number where it is.
    /// Numbers that were left out become free entries.
    DocumentBuilder& object(std::uint32_t id, std::string_view body, std::uint16_t generation = 0);
    /// As `object`, for a stream whose dictionary has `entries` and the Length of `data`.
    DocumentBuilder& stream(std::uint32_t id, std::string_view entries, std::string_view data);
    DocumentBuilder&
    objects(std::initializer_list<std::pair<std::uint32_t, std::string_view>> objects) {
        for (const auto& [id, body] : objects)
            object(id, body);
        return *this;
    }
    /// The number of the table's first entry: 0 until set.
    DocumentBuilder& first(std::uint64_t id);
    /// Entries of the trailer beside Size: "/Root 1 0 R" until set.
    DocumentBuilder& trailer(std::string_view entries) {
        return put(Part::TrailerEntries, entries);
    }
    /// Puts `text` in the place of a part; all that lies behind it is where the table says.
    DocumentBuilder& put(Part part, std::string_view text);

    [[nodiscard]] std::string bytes() const;

private:
    struct Object {
        std::uint32_t id;
        std::uint16_t generation;
        std::string body;
    };

    [[nodiscard]] std::string part(Part part, const std::string& usual) const;

    std::string version_ = "1.7", lineEnding_ = "\n";
    std::uint64_t first_ = 0;
    std::map<Part, std::string> parts_;
    std::vector<Object> objects_;
};

/// A small document with one more object, 5, or another trailer.
inline DocumentBuilder withFive(std::string_view body, std::string_view trailer = "/Root 1 0 R") {
    return DocumentBuilder::minimal().object(5, body).trailer(trailer);
}

/// The document that this file is, as of its bytes.
[[nodiscard]] inline Host::Ref<PDF::Document> open(const DocumentBuilder& file) {
    return open(file.bytes());
}

/// A document with the form dictionary 5; `objects` are its fields and whatever they refer to.
inline std::string
formFile(std::string_view form,
         std::initializer_list<std::pair<std::uint32_t, std::string_view>> objects) {
    DocumentBuilder file = DocumentBuilder::minimal();
    file.object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm 5 0 R >>").object(5, form);
    return file.objects(objects).bytes();
}

/// A number in so many digits.
[[nodiscard]] std::string padded(std::uint64_t number, std::size_t width);

/// References to `count` objects from `first` on, each of which is so far behind the one before.
inline std::string references(std::uint32_t first, std::size_t count, std::uint32_t step = 1) {
    std::string text;
    for (; count != 0; --count, first += step)
        text += std::to_string(first) + " 0 R ";
    return text;
}

/// The root of a page tree that lists those.
inline std::string pageTree(std::uint32_t first, std::size_t count, std::uint32_t step = 1) {
    return "<< /Type /Pages /Count 1 /Kids [ " + references(first, count, step) + "] >>";
}

} // namespace Support
