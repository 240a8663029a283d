#pragma once

#include <host/stripe.h>
#include <pdf/document.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Testing {

/// Puts a PDF file together: computes offsets, the cross-reference table and startxref, and breaks
/// exactly one rule when asked to.
///
///     open(DocumentBuilder::minimal().object(5, "<< /A 1 >>").bytes())
class DocumentBuilder {
public:
    /// Catalog 1, page tree 2, page 3 and its content stream 4 with the data "0 0 9 9 re f".
    [[nodiscard]] static DocumentBuilder
    minimal(Libraries::Files::PDF::Compression content = Libraries::Files::PDF::Compression::None);

    /// What stands behind "%PDF-": 1.7 until set.
    DocumentBuilder& version(std::string_view version);
    /// Ends every line but those of stream data: LF until set.
    DocumentBuilder& lineEnding(std::string_view lineEnding);
    /// Adds an object at the end of the file, or replaces the one with this number where it is.
    /// Numbers that were left out become free entries.
    DocumentBuilder& object(std::uint32_t id, std::string_view body, std::uint16_t generation = 0);
    /// As `object`, for a stream whose dictionary has `entries` and the Length of `data`.
    DocumentBuilder& stream(std::uint32_t id, std::string_view entries, std::string_view data);
    /// Entries of the trailer beside Size: "/Root 1 0 R" until set.
    DocumentBuilder& trailer(std::string_view entries);
    /// The first number of the table: 0 until set.
    DocumentBuilder& firstId(std::uint32_t id);
    /// Breaks the rule of this name, one of the table in the source file; entry and object faults
    /// strike the last object added.
    DocumentBuilder& fault(std::string_view name);

    [[nodiscard]] std::string bytes() const;
    /// Where object `id` begins in `bytes()`.
    [[nodiscard]] std::uint64_t offsetOf(std::uint32_t id) const;

private:
    struct Object {
        std::uint32_t id;
        std::uint16_t generation;
        std::string body;
        std::uint64_t offset = 0;
    };

    enum class Part { Header, Object, Table, Entry, Ending };
    struct Rule;
    static const Rule rules[];

    [[nodiscard]] std::string broken(Part part, std::string text) const;
    [[nodiscard]] std::string header() const;
    [[nodiscard]] std::string objectText(const Object& object) const;
    [[nodiscard]] std::string table(const std::vector<Object>& objects) const;
    [[nodiscard]] std::string ending(std::uint64_t xref) const;
    [[nodiscard]] std::vector<Object> placed() const;
    [[nodiscard]] std::uint64_t endId() const;

    std::string version_ = "1.7";
    std::string lineEnding_ = "\n";
    std::string trailer_ = "/Root 1 0 R";
    std::uint32_t firstId_ = 0;
    std::string fault_;
    std::vector<Object> objects_;
};

/// A stripe over a copy of these bytes.
[[nodiscard]] Host::Ref<Host::MemoryStripe> stripeOf(std::string_view bytes);
/// The document that these bytes are; null, with the code set, where they are none.
[[nodiscard]] Host::Ref<Libraries::Files::PDF::Document> open(std::string_view bytes);
/// What the document writes; empty where writing fails.
[[nodiscard]] std::string write(Libraries::Files::PDF::Document& document);
/// The object's value, or null.
[[nodiscard]] Host::Ref<Libraries::Files::PDF::Value>
valueOf(const Libraries::Files::PDF::Document& document, std::uint32_t id,
        std::uint16_t generation = 0);
/// The stream that object `id` is, or null.
[[nodiscard]] Host::Ref<Libraries::Files::PDF::Stream>
streamOf(const Libraries::Files::PDF::Document& document, std::uint32_t id);
/// Everything in a stripe, from its start; "(null)" for null.
[[nodiscard]] std::string contentsOf(const Host::Ref<Interfaces::Stripe>& stripe);
/// The text form of whatever has one; "(null)" for null.
template <class T>
[[nodiscard]] std::string textOf(const Host::Ref<T>& value) {
    return value ? value->asText()->utf8() : "(null)";
}
/// `data` in the zlib format.
[[nodiscard]] std::string deflated(std::string_view data);
/// The bytes of examples/samples/`name`.
[[nodiscard]] std::string sample(std::string_view name);
/// The file names in examples/samples, sorted.
[[nodiscard]] std::vector<std::string> sampleNames();

} // namespace Testing
