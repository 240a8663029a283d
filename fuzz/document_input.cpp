#include "document_input.h"

#include <algorithm>
#include <charconv>
#include <map>

namespace Fuzzing {

namespace {

/// Keeps the table small: a number may be any.
constexpr std::uint32_t largestId = 400;

struct Found {
    std::size_t offset;
    std::uint32_t generation;
};
using Objects = std::map<std::uint32_t, Found>;

bool isDigit(char character) noexcept {
    return character >= '0' && character <= '9';
}

/// Steps back over the number that ends before `end`, and gives where it begins.
std::size_t numberStart(std::string_view text, std::size_t end) noexcept {
    while (end > 0 && isDigit(text[end - 1]))
        --end;
    return end;
}

std::uint32_t numberAt(std::string_view text, std::size_t start, std::size_t end) noexcept {
    std::uint32_t number = UINT32_MAX;
    std::from_chars(text.data() + start, text.data() + end, number);
    return number;
}

/// The headers "N G obj" in `body`; of equal numbers the first.
Objects objectsIn(std::string_view body) {
    constexpr std::string_view keyword = " obj";
    Objects objects;
    for (std::size_t at = body.find(keyword); at != std::string_view::npos;
         at = body.find(keyword, at + 1)) {
        const std::size_t generation = numberStart(body, at);
        if (generation == at || generation == 0 || body[generation - 1] != ' ') continue;
        const std::size_t id = numberStart(body, generation - 1);
        if (id == generation - 1 || id == 0) continue;
        const std::uint32_t number = numberAt(body, id, generation - 1);
        const std::uint32_t generationNumber = numberAt(body, generation, at);
        if (number == 0 || number > largestId || generationNumber > 65535) continue;
        objects.insert({number, {id, generationNumber}});
    }
    return objects;
}

struct Parts {
    std::string body;
    std::string trailer;
};

Parts partsOf(std::string_view bytes) {
    constexpr std::string_view keyword = "trailer";
    const std::size_t trailer = bytes.rfind(keyword);
    std::string_view dictionary;
    std::string_view body = bytes;
    if (trailer != std::string_view::npos) {
        dictionary = bytes.substr(trailer + keyword.size());
        dictionary = dictionary.substr(0, dictionary.rfind("startxref"));
        body = bytes.substr(0, trailer);
        // "xref" is also the end of "startxref", but not of the last one any more.
        body = body.substr(0, body.rfind("xref"));
    }
    const bool whole = dictionary.find("<<") != std::string_view::npos &&
                       dictionary.find(">>") != std::string_view::npos;
    Parts parts;
    if (!body.starts_with("%PDF-")) parts.body = "%PDF-1.7\n";
    parts.body += body;
    parts.trailer = whole ? dictionary : std::string_view("\n<< /Root 1 0 R >>\n");
    return parts;
}

std::string padded(std::size_t number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return std::string(width - std::min(width, digits.size()), '0') + digits;
}

std::uint32_t endId(const Objects& objects) {
    return objects.empty() ? 1 : objects.rbegin()->first + 1;
}

void fillGaps(std::string& body, Objects& objects) {
    const std::uint32_t end = endId(objects);
    for (std::uint32_t id = 1; id < end; ++id) {
        if (!objects.insert({id, {body.size(), 0}}).second) continue;
        body += std::to_string(id) + " 0 obj\n<< >>\nendobj\n";
    }
}

std::string tableOf(const Objects& objects) {
    std::string table = "xref\n0 " + std::to_string(endId(objects)) + "\n";
    for (std::uint32_t id = 0; id < endId(objects); ++id) {
        const auto found = objects.find(id);
        table += found == objects.end() ? std::string("0000000000 65535 f \n")
                                        : padded(found->second.offset, 10) + " " +
                                              padded(found->second.generation, 5) + " n \n";
    }
    return table;
}

} // namespace

std::string withTable(std::string_view bytes, bool fill) {
    auto [body, trailer] = partsOf(bytes);
    Objects objects = objectsIn(body);
    if (!body.ends_with('\n')) body += '\n';
    if (fill) fillGaps(body, objects);
    const std::size_t xref = body.size();
    return body + tableOf(objects) + "trailer" + trailer + "startxref\n" + std::to_string(xref) +
           "\n%%EOF\n";
}

std::pair<Bytes, Bytes> documentsOf(Bytes bytes) noexcept {
    constexpr std::string_view seam = "%%EOF\n%PDF-";
    constexpr std::size_t inFirst = 6;
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::size_t found = text.find(seam);
    if (found == std::string_view::npos) return {bytes, bytes};
    return {bytes.first(found + inFirst), bytes.subspan(found + inFirst)};
}

} // namespace Fuzzing
