#include "generator/file_sections.h"

#include "generator/encoding.h"

#include <algorithm>
#include <array>

namespace Generator {

namespace {

std::string padded(std::uint64_t number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return std::string(width - std::min(width, digits.size()), '0') + digits;
}

/// The numbers in parts of consecutive ones, at times in more parts than must be.
std::vector<std::vector<std::uint32_t>> partsOf(const CrossReferences& entries, Random& random) {
    const unsigned cut = random.chance(30) ? 10 : 0;
    std::vector<std::vector<std::uint32_t>> parts;
    for (const auto& [id, entry] : entries) {
        if (parts.empty() || parts.back().back() + 1 != id || random.chance(cut))
            parts.emplace_back();
        parts.back().push_back(id);
    }
    return parts;
}

std::size_t leastWidth(std::uint64_t number) {
    std::size_t width = 0;
    for (; number != 0; number >>= 8)
        ++width;
    return width;
}

/// The widths of the fields: what they need, or more.
std::array<std::size_t, 3> widthsOf(const CrossReferences& entries, bool wide, Random& random) {
    std::array<std::size_t, 3> widths = {0, 1, 0};
    for (const auto& [id, entry] : entries) {
        if (entry.kind != CrossReference::InFile) widths[0] = 1;
        widths[1] = std::max(widths[1], leastWidth(entry.place));
        widths[2] = std::max(widths[2], leastWidth(entry.part));
    }
    if (wide) widths[1] = 4;
    for (std::size_t& width : widths) {
        if (random.chance(60)) width = std::max<std::size_t>(width, random.between(width, 8));
    }
    if (random.chance(60)) widths[0] = std::max<std::size_t>(widths[0], 1);
    return widths;
}

std::string fieldsOf(const CrossReference& entry, const std::array<std::size_t, 3>& widths) {
    const std::uint64_t fields[] = {entry.kind, entry.place, entry.part};
    std::string bytes;
    for (std::size_t field = 0; field < 3; ++field) {
        for (std::size_t place = widths[field]; place-- > 0;)
            bytes += static_cast<char>(place < 8 ? fields[field] >> (8 * place) : 0);
    }
    return bytes;
}

Encoded encodedRows(const std::string& data, std::size_t rowSize, Random& random) {
    if (random.chance(15)) return {data, {}, {}};
    return deflatedRows(data, random.chance(60) ? rowSize : 0, random);
}

void addEncoding(Spelling::Entries& entries, const Encoded& encoded, Spelling& spelling,
                 Random& random) {
    if (!encoded.filters.empty()) {
        const bool asArray = random.chance(20);
        entries.emplace_back("/Filter",
                             asArray ? spelling.array(encoded.filters) : encoded.filters.front());
        if (encoded.parms.front() != "null" || random.chance(20))
            entries.emplace_back("/DecodeParms",
                                 asArray ? spelling.array(encoded.parms) : encoded.parms.front());
    }
}

std::string streamText(Spelling::Entries entries, Encoded encoded, const SectionStyle& style,
                       Random& random) {
    Spelling spelling(random, style.wild);
    addEncoding(entries, encoded, spelling, random);
    entries.emplace_back("/Length", std::to_string(encoded.data.size()));
    if (style.damage != nullptr) {
        style.damage->spoil(entries);
        style.damage->spoil(encoded.data);
    }
    random.shuffle(entries);
    static constexpr std::string_view starts[] = {"stream\n", "stream\r\n", "\nstream\r\n"};
    std::string text = spelling.dictionary(entries);
    text.append(random.oneOf(starts)).append(encoded.data);
    return text + (random.chance(80) ? "\nendstream" : "endstream");
}

} // namespace

std::string tableSection(CrossReferences entries, Spelling::Entries trailer,
                         const SectionStyle& style, Random& random) {
    if (style.damage != nullptr) {
        style.damage->spoil(entries);
        style.damage->spoil(trailer);
    }
    Spelling spelling(random, style.wild);
    static constexpr std::string_view ends[] = {"\n", "\r\n", "\r", " \n"};
    const std::string end(style.wild ? random.oneOf(ends) : "\n");
    std::string text = "xref" + end;
    for (const auto& part : partsOf(entries, random)) {
        text += std::to_string(part.front()) + " " + std::to_string(part.size()) + end;
        for (const std::uint32_t id : part) {
            const CrossReference& entry = entries.at(id);
            text += padded(entry.place, 10) + " " + padded(entry.part, 5) + " ";
            text += (entry.kind == CrossReference::Free ? "f" : "n") + style.entryEnd;
        }
    }
    text += "trailer";
    if (random.chance(60)) text += random.chance(50) ? " " : "\n";
    return text + spelling.dictionary(trailer) + end;
}

std::string streamSection(std::uint32_t id, CrossReferences entries, Spelling::Entries trailer,
                          const SectionStyle& style, Random& random) {
    Spelling spelling(random, style.wild);
    const auto size =
        std::ranges::find(trailer, "/Size", [](const auto& entry) { return entry.first; });
    const bool withIndex =
        style.padded || std::stoul(size->second) != entries.size() || random.chance(50);
    const auto widths = widthsOf(entries, style.padded, random);
    if (style.damage != nullptr) style.damage->spoil(entries);
    std::string data;
    Spelling::Tokens index;
    for (const auto& part : partsOf(entries, random)) {
        index.push_back(std::to_string(part.front()));
        index.push_back(std::to_string(part.size()));
        for (const std::uint32_t number : part)
            data += fieldsOf(entries.at(number), widths);
    }
    Spelling::Tokens fields;
    for (const std::size_t width : widths)
        fields.push_back(std::to_string(width));
    if (style.damage != nullptr) style.damage->spoil(data);
    trailer.emplace_back("/Type", "/XRef");
    trailer.emplace_back("/W", spelling.array(fields));
    if (withIndex) trailer.emplace_back("/Index", spelling.array(index));
    const Encoded encoded = style.padded
                                ? Encoded{data, {}, {}}
                                : encodedRows(data, widths[0] + widths[1] + widths[2], random);
    return objectText(id, 0, streamText(trailer, encoded, style, random), style.wild, random);
}

std::string objectText(std::uint32_t id, std::uint16_t generation, const std::string& value,
                       bool wild, Random& random) {
    Spelling spelling(random, wild);
    const std::string text =
        spelling.join({std::to_string(id), std::to_string(generation), "obj", value, "endobj"});
    return text + (random.chance(80) ? "\n" : spelling.blank());
}

std::string objectStream(const std::vector<std::pair<std::uint32_t, std::string>>& held,
                         const std::string& extends, const SectionStyle& style, Random& random) {
    Spelling spelling(random, style.wild);
    std::string values;
    std::string header;
    for (const auto& [id, value] : held) {
        header += std::to_string(id) + " " + std::to_string(values.size()) +
                  (random.chance(80) ? " " : "\n");
        values += value + (random.chance(80) ? " " : spelling.blank());
    }
    if (random.chance(20)) header += "   ";
    std::string data = header + values;
    const std::size_t rowSize = random.chance(20) ? random.between(1, 40) : 0;
    if (rowSize != 0) data.append((rowSize - data.size() % rowSize) % rowSize, ' ');
    Spelling::Entries entries = {{"/Type", "/ObjStm"},
                                 {"/N", std::to_string(held.size())},
                                 {"/First", std::to_string(header.size())}};
    if (style.damage != nullptr) style.damage->spoil(data);
    if (!extends.empty()) entries.emplace_back("/Extends", extends);
    const Encoded encoded =
        rowSize != 0 ? deflatedRows(data, rowSize, random) : encodedRows(data, 0, random);
    return streamText(entries, encoded, style, random);
}

} // namespace Generator
