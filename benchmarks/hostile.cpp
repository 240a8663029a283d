#include "hostile.h"

#include "object_file.h"

#include <string_view>
#include <vector>

namespace Benchmarks {
namespace {

constexpr std::string_view header = "%PDF-1.4\n";

/// One object: `unit` again and again, between `open` and `close`.
std::string repeated(std::string_view open, std::string_view unit, std::string_view close,
                     std::size_t size) {
    std::string body(header);
    body.append("1 0 obj ").append(open);
    while (body.size() < size)
        body += unit;
    return fileOf(body.append(close).append(" endobj"), {header.size()});
}

/// Short keys that differ, none in its place; the dictionary stands in `texts` strings, which are
/// objects as well.
std::string unsortedKeys(std::size_t size, std::size_t texts) {
    std::string body(header);
    std::vector<std::size_t> offsets;
    for (std::size_t object = 0; object <= texts; ++object) {
        offsets.push_back(body.size());
        body += std::to_string(offsets.size()) + " 0 obj " + (object < texts ? "(" : "<<");
    }
    for (std::size_t key = 0; body.size() < size; ++key) {
        body += '/';
        for (std::size_t rest = key, digit = 0; digit < 5; ++digit, rest /= 26)
            body += static_cast<char>('A' + rest % 26);
        body += "/B";
    }
    return fileOf(body + ">>endobj" + std::string(texts, ')') + " endobj", offsets);
}

/// Dictionaries as deep as they may be, each of which has to be put in order.
std::string nestedKeys(std::size_t size) {
    std::string body = std::string(header) + "1 0 obj ";
    for (int level = 0; level < 512; ++level)
        body += "<</B/C/A";
    body += "(" + std::string(size, 'x') + ")";
    for (int level = 0; level < 512; ++level)
        body += ">>";
    return fileOf(body + "endobj", {header.size()});
}

std::string smallObjects(std::size_t size) {
    std::string body(header);
    std::vector<std::size_t> offsets;
    while (body.size() + offsets.size() * 12 < size) {
        offsets.push_back(body.size());
        body += std::to_string(offsets.size()) + " 0 obj 1 ";
    }
    return fileOf(body, offsets);
}

/// Each object begins in the value of the one before, where it does not count, and reaches to the
/// same end.
std::string overlapping(std::size_t size, std::size_t count, std::string_view open,
                        std::string_view unit, std::string_view close) {
    std::string body(header);
    std::vector<std::size_t> offsets;
    while (offsets.size() < count) {
        offsets.push_back(body.size());
        body.append(std::to_string(offsets.size())).append(" 0 obj ").append(open);
    }
    body += '\n';
    while (body.size() < size)
        body += unit;
    return fileOf(body.append(close).append(" endobj"), offsets);
}

constexpr HostileKind kinds[] = {
    {"one array of empty strings `()`",
     [](std::size_t size) { return repeated("[", "()", "]", size); }},
    {"of empty arrays `[]`", [](std::size_t size) { return repeated("[", "[]", "]", size); }},
    {"of empty dictionaries `<<>>`",
     [](std::size_t size) { return repeated("[", "<<>>", "]", size); }},
    {"of names `/A`", [](std::size_t size) { return repeated("[", "/A", "]", size); }},
    {"of references `1 0 R`", [](std::size_t size) { return repeated("[", "1 0 R ", "]", size); }},
    {"of numbers that are a point alone",
     [](std::size_t size) { return repeated("[", ". ", "]", size); }},
    {"one text, of characters that are written as octal escapes",
     [](std::size_t size) { return repeated("(", "\xFF", ")", size); }},
    {"one dictionary with a single key, again and again",
     [](std::size_t size) { return repeated("<<", "/A/B", ">>", size); }},
    {"one dictionary of many keys, none in its place",
     [](std::size_t size) { return unsortedKeys(size, 0); }},
    {"the same, inside two texts that are objects as well",
     [](std::size_t size) { return unsortedKeys(size, 2); }},
    {"dictionaries within each other, 512 deep, with their keys out of order", nestedKeys},
    {"the smallest objects there are", smallObjects},
    {"two arrays of empty strings, one inside the other",
     [](std::size_t size) { return overlapping(size, 2, "[%", "()", "]"); }},
    {"nine of them", [](std::size_t size) { return overlapping(size, 9, "[%", "()", "]"); }},
    {"three dictionaries with a single key, inside each other",
     [](std::size_t size) { return overlapping(size, 3, "<<%", "/A/B", ">>endobj"); }},
    {"nine arrays of texts of such characters, inside each other",
     [](std::size_t size) { return overlapping(size, 9, "[%", "(\xFF\xFF\xFF\xFF)", "]"); }},
};

} // namespace

std::span<const HostileKind> hostileKinds() {
    return kinds;
}

} // namespace Benchmarks
