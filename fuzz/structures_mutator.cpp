// For the target of files of any structure: changes an input and then makes lengths true, and puts
// sections behind it that lead to all objects in it: a table, a cross-reference stream, or both, in
// one revision or in two.

#include "mutation.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view seam = "%sections\n";
constexpr std::uint64_t largestNumber = 400;
constexpr std::size_t none = std::string_view::npos;

/// Kind, offset or object stream, generation or index.
using Entry = std::array<std::uint64_t, 3>;
using Entries = std::map<std::uint64_t, Entry>;

/// Takes a number, and the blanks before it, from the front of `text`; `largestNumber` + 1 for
/// none.
std::uint64_t takeNumber(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \n"), text.size()));
    std::uint64_t number = largestNumber + 1;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(parsed.ptr - text.data()));
    return number;
}

/// Each direct Length is that of the data up to the next "endstream".
void mendLengths(std::string& body) {
    constexpr std::string_view key = "/Length ";
    for (std::size_t at = body.find(key); at != none; at = body.find(key, at + 1)) {
        const std::size_t digits = at + key.size();
        const std::size_t data = body.find("stream\n", digits);
        const std::size_t end = data == none ? none : body.find("\nendstream", data + 6);
        if (end == none || body.find(" obj", digits) < data) continue;
        const std::size_t behind = std::min(body.find_first_not_of("0123456789", digits), data);
        const std::size_t length = end - std::min(end, data + 7);
        body.replace(digits, behind - digits, std::to_string(length));
    }
}

/// The objects that an object stream says it has: pairs of numbers at the front of its data.
void addHeld(std::string_view data, std::uint64_t stream, Entries& entries) {
    for (std::uint64_t index = 0;; ++index) {
        const std::uint64_t number = takeNumber(data);
        static_cast<void>(takeNumber(data));
        if (number > largestNumber || data.empty() || data.front() != ' ') return;
        if (number != stream) entries.insert({number, {2, stream, index}});
    }
}

Entries entriesOf(std::string_view body) {
    Entries entries;
    for (std::size_t at = body.find(" 0 obj"); at != none; at = body.find(" 0 obj", at + 1)) {
        std::size_t start = at;
        while (start > 0 && body[start - 1] >= '0' && body[start - 1] <= '9')
            --start;
        std::string_view text = body.substr(start, at - start);
        const std::uint64_t number = takeNumber(text);
        if (number > largestNumber) continue;
        entries[number] = {1, start, 0};
        const std::string_view object = body.substr(at, body.find("endobj", at) - at);
        const std::size_t data = object.find("stream\n");
        if (object.find("/ObjStm") < data && data != none) {
            addHeld(object.substr(data + 7), number, entries);
        }
    }
    return entries;
}

std::string bigEndian(std::uint64_t number, int width) {
    std::string bytes;
    for (int byte = width - 1; byte >= 0; --byte)
        bytes += static_cast<char>(number >> (8 * byte));
    return bytes;
}

std::string tableOf(const Entries& entries) {
    std::string table = "xref\n";
    for (const auto& [number, entry] : entries) {
        std::string offset = std::to_string(entry[1]);
        offset.insert(0, 10 - std::min<std::size_t>(10, offset.size()), '0');
        table += std::to_string(number) + " 1\n" + offset + " 00000 n \n";
    }
    return table + "trailer\n<< /Root 1 0 R /Size 500";
}

std::string streamOf(const Entries& entries, const std::string& prev, unsigned seed) {
    const int width = 2 + static_cast<int>(seed % 3);
    std::string index;
    std::string data;
    for (const auto& [number, entry] : entries) {
        index += " " + std::to_string(number) + " 1";
        data += bigEndian(entry[0], 1) + bigEndian(entry[1], width) + bigEndian(entry[2], width);
    }
    const std::string field = " " + std::to_string(width);
    return "499 0 obj\n<< /Type /XRef /Root 1 0 R /Size 500 /W [ 1" + field + field +
           " ] /Index [" + index + " ] /Length " + std::to_string(data.size()) + prev +
           " >>\nstream\n" + data + "\nendstream\nendobj\n";
}

/// Appends a section, and gives where it begins; `former` is the one before it, 0 for none.
std::size_t append(std::string& file, const Entries& entries, std::size_t former, unsigned seed) {
    const std::string prev = former == 0 ? "" : " /Prev " + std::to_string(former);
    Entries inFile = entries;
    std::erase_if(inFile, [](const auto& entry) { return entry.second[0] != 1; });
    const std::size_t start = file.size();
    const std::string stream = streamOf(entries, prev, seed);
    if (seed % 4 == 0) {
        file += stream;
        return start;
    }
    if (inFile.size() == entries.size()) {
        file += tableOf(entries) + prev + " >>\n";
        return start;
    }
    file += stream;
    const std::size_t table = file.size();
    file += tableOf(inFile) + " /XRefStm " + std::to_string(start) + prev + " >>\n";
    return table;
}

} // namespace

std::string Fuzzing::mended(Bytes input, unsigned seed) {
    const std::string_view text(reinterpret_cast<const char*>(input.data()), input.size());
    std::string file(text.substr(0, text.find(seam)));
    mendLengths(file);
    Entries newer = entriesOf(file);
    Entries older;
    if (seed % 3 == 0) {
        for (auto entry = newer.begin(); entry != newer.end(); ++entry)
            if (entry->first % 2 == seed % 2) older.insert(*entry);
    }
    file += seam;
    const std::size_t former = older.empty() ? 0 : append(file, older, 0, seed / 3);
    const std::size_t start = append(file, newer, former, seed / 16);
    return file + "startxref\n" + std::to_string(start) + "\n%%EOF\n";
}
