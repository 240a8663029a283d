#include "costly.h"
#include "modern_file.h"
#include "object_file.h"

#include <pdf/tools/files.h>

#include <algorithm>
#include <vector>

namespace Benchmarks {
namespace {

namespace Tools = Libraries::Files::PDF::Tools;

/// A catalog, and the root of a page tree, object 2, whose Kids are object 3.
template <class File>
File begun() {
    File file;
    file.add("<</Type/Catalog/Pages 2 0 R>>");
    file.add("<</Type/Pages/Count 1/Kids[3 0 R]>>");
    file.add("<</Type/Page/Parent 2 0 R>>");
    return file;
}

/// One object stream with one object, of so many bytes of `unit` between `begin` and `end`.
std::string expanding(std::string_view begin, std::string_view unit, std::size_t bytes,
                      std::string_view end) {
    auto file = begun<ModernFile>();
    file.addMember(5, 0);
    file.addObjects(4, {std::string(begin) + repeated(unit, bytes) + std::string(end)});
    return file.file();
}

/// Expands to a bit less than what is allowed for a file of the size, which random bytes fill.
std::string expandsAsAllowed(std::size_t size) {
    auto file = begun<ModernFile>();
    file.addMember(5, 0);
    file.addObjects(4, {"[" + repeated("()", 30 * size) + "]"});
    file.addStream("", std::string(size - std::min(size, file.size()), 'x'));
    return file.file();
}

/// Texts within dictionaries, the keys of each of which are in bad order.
std::string nestedDeep(std::size_t size) {
    constexpr int deep = 500;
    constexpr std::size_t text = 50000;
    std::string begin;
    std::string end;
    for (int level = 0; level < deep; ++level) {
        begin += "<</Z ";
        end += "/A 0>>";
    }
    const std::vector<std::string> values(30 * size / text + 1,
                                          begin + "(" + std::string(text, 'x') + ")" + end);
    auto file = begun<ModernFile>();
    for (std::size_t index = 0; index < values.size(); ++index)
        file.addMember(4 + values.size(), index);
    file.addObjects(4, values);
    file.addStream("", std::string(size - std::min(size, file.size()), 'x'));
    return file.file();
}

/// Many objects in one stream, each a subsection of its own, the last one first.
std::string badOrder(std::size_t size) {
    auto file = begun<ModernFile>();
    std::vector<std::string> values;
    const std::size_t count = size / 20;
    for (std::size_t index = 0; index < count; ++index)
        values.push_back(std::to_string(index * 7919 % 10007));
    const std::size_t stream = file.next() + count;
    for (std::size_t index = 0; index < count; ++index)
        file.addMember(stream, index);
    file.addObjects(4, values);
    const std::string ordered = file.table();
    std::string table;
    std::string index;
    for (std::size_t number = file.next(); number-- != 0;) {
        table.append(ordered, 7 * number, 7);
        index += std::to_string(number) + " 1 ";
    }
    return file.file(table, "/W[1 4 2]/Index[" + index + "]");
}

/// Each has one object, and extends the next one; the last one extends the first.
std::string manyObjectStreams(std::size_t size) {
    auto file = begun<ModernFile>();
    const std::size_t count = size / 150;
    for (std::size_t index = 0; index < count; ++index) {
        const std::size_t number = file.next();
        file.addMember(number + 1, 0);
        const std::size_t further = index + 1 == count ? 5 : number + 3;
        file.addObjects(number, {"0"}, "/Extends " + reference(further));
    }
    return file.file();
}

/// Rows as long as is allowed, and hardly any data.
std::string wideRows(std::size_t size) {
    auto file = begun<ModernFile>();
    while (file.size() < size) {
        const std::size_t number = file.next();
        file.addMember(number + 1, 0);
        const std::string numbers = std::to_string(number) + " 0 ";
        file.addStream("/Type/ObjStm/N 1/First " + std::to_string(numbers.size()) +
                           "/Filter/FlateDecode/DecodeParms<</Predictor 12/Columns 1048575>>",
                       deflated('\2' + numbers + "0"));
    }
    return file.file();
}

std::string tooWideRows(std::size_t size) {
    auto file = begun<ModernFile>();
    file.addStream("", std::string(size, 'x'));
    return file.file('\2' + file.table(), "/W[1 4 2]/DecodeParms<</Predictor 12/Columns "
                                          "4000000000>>");
}

std::string tableExpands(std::size_t size) {
    const auto file = begun<ModernFile>();
    return file.file(file.table() + std::string(800 * size, '\0'), "/W[1 4 2]/Size 4294967295");
}

/// Entries without any width, or of one byte that is not there.
std::string countless(std::size_t size, const std::string& widths) {
    auto file = begun<ModernFile>();
    file.addStream("", std::string(size, 'x'));
    return file.file(file.table(), widths + "/Index[0 4294967295]");
}

/// Tables of no entries, one before the other, that share a stream of entries.
std::string manySections(std::size_t size) {
    const std::string first = begun<ObjectFile>().file();
    std::string file = first;
    std::size_t former = first.rfind("xref\n0 ");
    while (file.size() < size) {
        const std::size_t offset = file.size();
        file += "xref\ntrailer<</Root 1 0 R/Prev " + std::to_string(former) + ">>\n";
        former = offset;
    }
    return file + "startxref\n" + std::to_string(former) + "\n%%EOF\n";
}

std::string sharedHybrid(std::size_t size) {
    auto modern = begun<ModernFile>();
    for (std::size_t count = 0; count < size / 50; ++count)
        modern.add("0");
    std::string file = modern.file();
    const std::size_t place = file.rfind("startxref\n") + 10;
    const std::string shared = file.substr(place, file.find('\n', place) - place);
    std::string former = shared;
    while (file.size() < size) {
        const std::string offset = std::to_string(file.size());
        file += "xref\ntrailer<</Root 1 0 R/XRefStm " + shared + "/Prev " + former + ">>\n";
        former = offset;
    }
    return file + "startxref\n" + former + "\n%%EOF\n";
}

/// Objects in texts that are objects as well.
std::string overlapping(std::size_t size) {
    std::string body = "%PDF-1.7\n";
    std::vector<std::size_t> offsets;
    const auto begin = [&](const std::string& value) {
        offsets.push_back(body.size());
        body += std::to_string(offsets.size()) + " 0 obj\n" + value;
    };
    begin("<</Type/Catalog/Pages 2 0 R>>\nendobj\n");
    begin("<</Type/Pages/Count 1/Kids[3 0 R]>>\nendobj\n");
    begin("<</Type/Page/Parent 2 0 R>>\nendobj\n");
    const std::size_t count = size / 50;
    for (std::size_t level = 0; level < count; ++level)
        begin("(");
    for (std::size_t level = 0; level < count; ++level)
        body += ")\nendobj\n";
    return fileOf(body, offsets);
}

/// Nodes of the page tree that share one array, object 4, of `kid` again and again.
std::string sharedKids(std::size_t size, const std::string& kid) {
    ObjectFile file;
    file.add("<</Type/Catalog/Pages 2 0 R>>");
    std::string nodes;
    const std::size_t count = size / 100;
    for (std::size_t index = 0; index < count; ++index)
        nodes += reference(5 + index);
    file.add("<</Type/Pages/Count 1/Kids[" + nodes + "]>>");
    file.add("<</Type/Page>>");
    file.add("[" + repeated(kid, size / 2) + "]");
    while (file.next() < 5 + count)
        file.add("<</Type/Pages/Kids 4 0 R>>");
    return file.file();
}

std::string longPageListed(std::size_t size) {
    ObjectFile file;
    file.add("<</Type/Catalog/Pages 2 0 R>>");
    file.add("<</Type/Pages/Count 1/Kids[" + repeated("3 0 R ", size / 2) + "]>>");
    file.add("<</Type/Page/T[" + repeated("0 ", size / 2) + "]>>");
    return file.file();
}

/// Streams with `entries` that refer to object 4.
std::string sharedByStreams(std::size_t size, const std::string& entries,
                            const std::string& shared) {
    auto file = begun<ObjectFile>();
    file.add(shared);
    while (file.size() < size)
        file.add("<<" + entries + ">>\nstream\n\nendstream");
    return file.file();
}

/// References to what turns out to be nothing, so that all are read again.
std::string manyNulls(std::size_t size) {
    auto file = begun<ModernFile>();
    while (file.size() < size)
        file.add(file.next() % 2 == 0 ? "null" : "[" + reference(file.next() - 1) + "]");
    return file.file();
}

Ending rewrite(const std::string& path) {
    const auto document = Tools::open(path);
    return document && Tools::save(*document, path + ".saved") ? Ending::Done : Ending::Refused;
}

constexpr CostlyFile files[] = {
    {"structure: an object stream of thousand times its size",
     [](std::size_t size) { return expanding("[", "()", 900 * size, "]"); }, rewrite,
     Ending::Refused},
    {"structure: an object stream of thirty times the file", expandsAsAllowed, rewrite,
     Ending::Done},
    {"structure: dictionaries within each other that expand", nestedDeep, rewrite, Ending::Done},
    {"structure: entries in bad order", badOrder, rewrite, Ending::Done},
    {"structure: object streams that extend each other", manyObjectStreams, rewrite, Ending::Done},
    {"structure: predictors with wide rows", wideRows, rewrite, Ending::Done},
    {"structure: a predictor of 4000000000 columns", tooWideRows, rewrite, Ending::Refused},
    {"structure: a table that expands", tableExpands, rewrite, Ending::Refused},
    {"structure: entries without width",
     [](std::size_t size) { return countless(size, "/W[0 0 0]"); }, rewrite, Ending::Refused},
    {"structure: more entries than data",
     [](std::size_t size) { return countless(size, "/W[1 4 2]"); }, rewrite, Ending::Refused},
    {"structure: many sections", manySections, rewrite, Ending::Done},
    {"structure: sections share a stream of entries", sharedHybrid, rewrite, Ending::Refused},
    {"structure: objects inside each other", overlapping, rewrite, Ending::Refused},
    {"structure: streams inside each other", streamsInsideEachOther, rewrite, Ending::Refused},
    {"structure: nodes share their kids",
     [](std::size_t size) { return sharedKids(size, "3 0 R "); }, rewrite, Ending::Refused},
    {"structure: nodes share kids that are no objects",
     [](std::size_t size) { return sharedKids(size, "<<>>"); }, rewrite, Ending::Refused},
    {"structure: one long page listed often", longPageListed, rewrite, Ending::Refused},
    {"structure: streams share a list of filters",
     [](std::size_t size) {
         return sharedByStreams(size, "/Length 0/Filter 4 0 R",
                                "[" + repeated("/A", size / 2) + "]");
     },
     rewrite, Ending::Refused},
    {"structure: streams share parameters",
     [](std::size_t size) {
         return sharedByStreams(size, "/Length 0/DecodeParms 4 0 R",
                                "[" + repeated("null ", size / 2) + "]");
     },
     rewrite, Ending::Refused},
    {"structure: streams share a length of many zeros",
     [](std::size_t size) {
         return sharedByStreams(size, "/Length 4 0 R", std::string(size / 2, '0'));
     },
     rewrite, Ending::Refused},
    {"structure: references to nothing", manyNulls, rewrite, Ending::Done},
};

} // namespace

std::span<const CostlyFile> costlyStructures() {
    return files;
}

} // namespace Benchmarks
