#include "support/document_builder.h"

#include "values/scalars.h"

#include <libdeflate.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>

namespace Testing {

using Host::Ref;
namespace PDF = Libraries::Files::PDF;

namespace {

std::string padded(std::uint64_t number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return std::string(width - std::min(width, digits.size()), '0') + digits;
}

} // namespace

/// What a fault does to the text of a part of the file.
struct DocumentBuilder::Rule {
    std::string_view fault;
    Part part;
    const char* pattern;
    const char* replacement;
};

constexpr DocumentBuilder::Rule DocumentBuilder::rules[] = {
    {"HeaderMissing", Part::Header, "^[^\r\n]+", ""},
    {"HeaderMisspelt", Part::Header, "PDF", "PFD"},
    {"EndMarkerMissing", Part::Ending, "%%EOF", "%%EO"},
    {"SpaceBehindEndMarker", Part::Ending, "%%EOF", "%%EOF "},
    {"StartXrefMissing", Part::Ending, "startxref", "endxref"},
    {"SpaceBehindXrefOffset", Part::Ending, "(startxref\\s+\\d+)", "$1 "},
    {"XrefOffsetMissing", Part::Ending, "(startxref\\s+)\\d+\\s+", "$1"},
    {"XrefOffsetOnKeywordLine", Part::Ending, "startxref\\s+", "startxref"},
    {"XrefOffsetOverflows", Part::Ending, "(startxref\\s+)", "$0199999999999999999999"},
    {"XrefOffsetPastEnd", Part::Ending, "(startxref\\s+)", "$0199999"},
    {"TrailerMissing", Part::Ending, "trailer", "tailer"},
    {"SpaceBehindTrailer", Part::Ending, "trailer", "trailer "},
    {"TrailerUnbalanced", Part::Ending, ">>", ">> >>"},
    {"TrailerUneven", Part::Ending, "/Size", ""},
    {"XrefKeywordMissing", Part::Table, "xref", "table"},
    {"XrefHeaderShort", Part::Table, "(xref\\s+\\d+) \\d+", "$1"},
    {"XrefHeaderNegative", Part::Table, "(xref\\s+)", "$1-1"},
    {"EntryMissing", Part::Table, "(xref\\s+\\d+ )", "$0199"},
    {"EntryShort", Part::Entry, " n", ""},
    {"EntryKindUnknown", Part::Entry, "n", "x"},
    {"EntryGenerationTooLarge", Part::Entry, " \\d+ ", " 65537 "},
    {"EntryOffsetZero", Part::Entry, "^\\d+", "0000000000"},
    {"EntryPastEnd", Part::Entry, "^\\d+", "9999999999"},
    {"ObjectKeywordMissing", Part::Object, "obj", "object"},
    {"ObjectIdInvalid", Part::Object, "^\\d+", "x"},
    {"ObjectIdDiffers", Part::Object, "^\\d+", "77"},
    {"ObjectGenerationInvalid", Part::Object, " \\d+ ", " 65536 "},
    {"ObjectGenerationDiffers", Part::Object, " \\d+ ", " 7 "},
};

DocumentBuilder DocumentBuilder::minimal(PDF::Compression content) {
    constexpr std::string_view drawing = "0 0 9 9 re f";
    DocumentBuilder builder;
    builder.object(1, "<< /Type /Catalog /Pages 2 0 R >>");
    builder.object(2, "<< /Type /Pages /Count 1 /Kids [3 0 R] >>");
    builder.object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] /Resources << >> "
                      "/Contents 4 0 R >>");
    if (content == PDF::Compression::None) return builder.stream(4, "", drawing);
    return builder.stream(4, "/Filter /FlateDecode ", deflated(drawing));
}

DocumentBuilder& DocumentBuilder::version(std::string_view version) {
    version_ = version;
    return *this;
}

DocumentBuilder& DocumentBuilder::lineEnding(std::string_view lineEnding) {
    lineEnding_ = lineEnding;
    return *this;
}

DocumentBuilder& DocumentBuilder::object(std::uint32_t id, std::string_view body,
                                         std::uint16_t generation) {
    Object object{id, generation, std::string(body)};
    const auto former = std::ranges::find(objects_, id, &Object::id);
    if (former == objects_.end()) {
        objects_.push_back(std::move(object));
    } else {
        *former = std::move(object);
    }
    return *this;
}

DocumentBuilder& DocumentBuilder::stream(std::uint32_t id, std::string_view entries,
                                         std::string_view data) {
    std::string body = "<< ";
    body.append(entries).append("/Length ").append(std::to_string(data.size()));
    body.append(" >>\nstream\n").append(data).append("\nendstream");
    return object(id, body);
}

DocumentBuilder& DocumentBuilder::trailer(std::string_view entries) {
    trailer_ = entries;
    return *this;
}

DocumentBuilder& DocumentBuilder::firstId(std::uint32_t id) {
    firstId_ = id;
    return *this;
}

DocumentBuilder& DocumentBuilder::fault(std::string_view name) {
    if (std::ranges::find(rules, name, &Rule::fault) == std::end(rules))
        throw std::invalid_argument("no fault " + std::string(name));
    fault_ = name;
    return *this;
}

std::string DocumentBuilder::broken(Part part, std::string text) const {
    const auto rule = std::ranges::find(rules, fault_, &Rule::fault);
    if (rule == std::end(rules) || rule->part != part) return text;
    return std::regex_replace(text, std::regex(rule->pattern), rule->replacement,
                              std::regex_constants::format_first_only);
}

std::string DocumentBuilder::header() const {
    return broken(Part::Header, "%PDF-" + version_ + lineEnding_);
}

std::string DocumentBuilder::objectText(const Object& object) const {
    std::string text = std::to_string(object.id) + " " + std::to_string(object.generation) +
                       " obj" + lineEnding_ + object.body + lineEnding_ + "endobj" + lineEnding_;
    return object.id == objects_.back().id ? broken(Part::Object, std::move(text)) : text;
}

std::string DocumentBuilder::table(const std::vector<Object>& objects) const {
    const std::uint64_t end = endId();
    std::string text = "xref" + lineEnding_ + std::to_string(firstId_) + " " +
                       std::to_string(end - firstId_) + lineEnding_;
    for (std::uint64_t id = firstId_; id < end; ++id) {
        const auto found = std::ranges::find(objects, id, &Object::id);
        std::string entry = padded(0, 10) + " 65535 f";
        if (found != objects.end()) {
            entry = padded(found->offset, 10) + " " + padded(found->generation, 5) + " n";
            if (id == objects.back().id) entry = broken(Part::Entry, std::move(entry));
        }
        // Entries have 20 bytes: a space makes up for a line ending of one character.
        text += entry + (lineEnding_.size() == 1 ? " " : "") + lineEnding_;
    }
    return broken(Part::Table, std::move(text));
}

std::string DocumentBuilder::ending(std::uint64_t xref) const {
    const std::string& eol = lineEnding_;
    return broken(Part::Ending, "trailer" + eol + "<< /Size " + std::to_string(endId()) + " " +
                                    trailer_ + " >>" + eol + "startxref" + eol +
                                    std::to_string(xref) + eol + "%%EOF" + eol);
}

std::uint64_t DocumentBuilder::endId() const {
    const auto last = std::ranges::max_element(objects_, {}, &Object::id);
    return last == objects_.end() ? firstId_ + 1 : std::uint64_t{last->id} + 1;
}

std::vector<DocumentBuilder::Object> DocumentBuilder::placed() const {
    std::vector<Object> objects = objects_;
    std::uint64_t offset = header().size();
    for (Object& object : objects) {
        object.offset = offset;
        offset += objectText(object).size();
    }
    return objects;
}

std::string DocumentBuilder::bytes() const {
    std::string text = header();
    const std::vector<Object> objects = placed();
    for (const Object& object : objects)
        text += objectText(object);
    const std::uint64_t xref = text.size();
    return text + table(objects) + ending(xref);
}

std::uint64_t DocumentBuilder::offsetOf(std::uint32_t id) const {
    for (const Object& object : placed()) {
        if (object.id == id) return object.offset;
    }
    throw std::out_of_range("no object " + std::to_string(id));
}

Ref<Host::MemoryStripe> stripeOf(std::string_view bytes) {
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    return Host::MemoryStripe::create(std::span(data, bytes.size()));
}

Ref<PDF::Document> open(std::string_view bytes) {
    return PDF::Document::create(stripeOf(bytes));
}

std::string write(PDF::Document& document) {
    const Ref<Host::MemoryStripe> target = Host::MemoryStripe::create();
    return document.write(target) ? contentsOf(target) : std::string();
}

Ref<PDF::Value> valueOf(const PDF::Document& document, std::uint32_t id, std::uint16_t generation) {
    const auto object = document.getObject(PDF::newValue<PDF::ObjectRefObj>(id, generation));
    return object ? object->value() : nullptr;
}

Ref<PDF::Stream> streamOf(const PDF::Document& document, std::uint32_t id) {
    return PDF::castTo<PDF::Stream>(valueOf(document, id));
}

std::string contentsOf(const Ref<Interfaces::Stripe>& stripe) {
    if (!stripe) return "(null)";
    std::string bytes(stripe->size(), '\0');
    if (bytes.empty()) return bytes;
    stripe->position(0);
    bytes.resize(stripe->readBytes(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()));
    return bytes;
}

std::string deflated(std::string_view data) {
    libdeflate_compressor* compressor = libdeflate_alloc_compressor(6);
    std::string out(libdeflate_zlib_compress_bound(compressor, data.size()), '\0');
    out.resize(
        libdeflate_zlib_compress(compressor, data.data(), data.size(), out.data(), out.size()));
    libdeflate_free_compressor(compressor);
    return out;
}

std::string sample(std::string_view name) {
    std::ifstream file(std::string(FILES_PDF_SAMPLES "/").append(name), std::ios::binary);
    if (!file) throw std::runtime_error("no sample " + std::string(name));
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> sampleNames() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(FILES_PDF_SAMPLES)) {
        if (file.path().extension() == ".pdf") names.push_back(file.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

} // namespace Testing
