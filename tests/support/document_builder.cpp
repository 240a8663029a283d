#include "support/document_builder.h"

#include <algorithm>

namespace Support {

DocumentBuilder DocumentBuilder::minimal(PDF::Compression content) {
    DocumentBuilder builder;
    builder.object(1, "<< /Type /Catalog /Pages 2 0 R >>");
    builder.object(2, "<< /Type /Pages /Count 1 /Kids [3 0 R] >>");
    builder.object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] /Resources << >> "
                      "/Contents 4 0 R >>");
    if (content == PDF::Compression::None) return builder.stream(4, "", "0 0 9 9 re f");
    return builder.stream(4, "/Filter /FlateDecode ", deflated("0 0 9 9 re f"));
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
    const auto former = std::ranges::find(objects_, id, &Object::id);
    Object& object = former == objects_.end() ? objects_.emplace_back() : *former;
    object = {id, generation, std::string(body)};
    return *this;
}

DocumentBuilder& DocumentBuilder::stream(std::uint32_t id, std::string_view entries,
                                         std::string_view data) {
    std::string body = "<< ";
    body.append(entries).append("/Length ").append(std::to_string(data.size()));
    body.append(" >>\nstream\n").append(data).append("\nendstream");
    return object(id, body);
}

DocumentBuilder& DocumentBuilder::first(std::uint64_t id) {
    first_ = id;
    return *this;
}

DocumentBuilder& DocumentBuilder::put(Part part, std::string_view text) {
    parts_[part] = text;
    return *this;
}

std::string DocumentBuilder::part(Part part, const std::string& usual) const {
    const auto put = parts_.find(part);
    return put == parts_.end() ? usual : put->second;
}

std::string padded(std::uint64_t number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return std::string(width - std::min(width, digits.size()), '0') + digits;
}

std::string DocumentBuilder::bytes() const {
    const std::string& eol = lineEnding_;
    std::string text = part(Part::Header, "%PDF-" + version_ + eol);
    std::map<std::uint64_t, std::string> entries;
    for (const auto& [id, generation, body] : objects_) {
        const auto own = [&, last = id == objects_.back().id](Part which,
                                                              const std::string& usual) {
            return last ? part(which, usual) : usual;
        };
        entries[id] = own(Part::Offset, padded(text.size(), 10)) + " " +
                      own(Part::Generation, padded(generation, 5)) + " " + own(Part::InUse, "n");
        text += own(Part::ObjectHeader,
                    std::to_string(id) + " " + std::to_string(generation) + " obj" + eol);
        text += body + eol + own(Part::ObjectEnd, "endobj" + eol);
    }
    const std::string xref = std::to_string(text.size());
    const std::uint64_t end = (entries.empty() ? 0 : entries.rbegin()->first) + 1;
    const std::string range = std::to_string(first_) + " " + std::to_string(end - first_);
    text += part(Part::XrefKeyword, "xref" + eol) + part(Part::XrefRange, range + eol);
    for (std::uint64_t id = first_; id < end; ++id) {
        // Entries have 20 bytes: a space makes up for a line ending of one character.
        text += entries.try_emplace(id, part(Part::FreeEntry, "0000000000 65535 f")).first->second;
        text += (eol.size() == 1 ? " " : "") + eol;
    }
    text += part(Part::TrailerKeyword, "trailer" + eol) + "<< /Size ";
    text += std::to_string(end) + " " + part(Part::TrailerEntries, "/Root 1 0 R") + " >>" + eol;
    text += part(Part::StartXref, "startxref" + eol) + part(Part::XrefOffset, xref + eol);
    return text + part(Part::EndMarker, "%%EOF" + eol);
}

} // namespace Support
