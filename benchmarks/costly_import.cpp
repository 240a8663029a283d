#include "costly.h"
#include "modern_file.h"
#include "object_file.h"

#include <host/files.h>
#include <pdf/import.h>

#include <algorithm>

namespace Benchmarks {
namespace {

/// A catalog, whose entry X is object 4, and one page.
ObjectFile begun() {
    ObjectFile file;
    file.add("<</Type/Catalog/Pages 2 0 R/X 4 0 R>>");
    file.add("<</Type/Pages/Count 1/Kids[3 0 R]>>");
    file.add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]>>");
    return file;
}

/// One object, stored in an object stream that holds `values` and is encoded as `entries` say.
std::string stored(std::size_t size, const std::string& values, std::string_view entries) {
    ModernFile file;
    file.add("<</Type/Catalog/Pages 2 0 R/X 4 0 R>>");
    file.add("<</Type/Pages/Count 1/Kids[3 0 R]>>");
    file.add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]>>");
    file.addMember(5, 0);
    file.addObjects(4, {values}, entries);
    file.addStream("", std::string(size - std::min(size, file.size()), 'x'));
    return file.file();
}

std::string longRows(std::size_t size) {
    return stored(size, "null", "/DecodeParms<</Predictor 12/Columns 4000000000>>");
}

std::string manyValues(std::size_t size) {
    return stored(size, "[" + repeated("0 ", 100 * size) + "]", "");
}

std::string manyFilters(std::size_t size) {
    auto file = begun();
    file.addStream("/Filter[" + repeated("/Crypt ", size) + "]", "x");
    return file.file();
}

std::string nestedFilters(std::size_t size) {
    auto file = begun();
    constexpr std::size_t deep = 400;
    file.add("[" + repeated(" 5 0 R", size / 2) + "]");
    while (file.size() < size)
        file.addStream("/Filter" + repeated("[", deep) + repeated("]", deep), "x");
    return file.file();
}

std::string droppedFilters(std::size_t size) {
    auto file = begun();
    std::string all;
    const std::size_t count = size / 120;
    for (std::size_t index = 0; index < count; ++index)
        all += reference(5 + index);
    file.add("[" + all + "]");
    for (std::size_t index = 0; index < count; ++index)
        file.addStream("/Filter[/Crypt/Crypt/Crypt/ASCIIHexDecode]", "41>");
    return file.file();
}

/// `count` streams whose entries are these, and object 5, to which they refer.
std::string sharing(std::size_t count, std::string_view entries, const std::string& shared) {
    auto file = begun();
    std::string all;
    for (std::size_t index = 0; index < count; ++index)
        all += reference(6 + index);
    file.add("[" + all + "]");
    file.add(shared);
    for (std::size_t index = 0; index < count; ++index)
        file.addStream(entries, "x");
    return file.file();
}

std::string sharedFilters(std::size_t size) {
    return sharing(size / 160, "/Filter 5 0 R", "[" + repeated("/A ", size / 2) + "]");
}

std::string sharedParameters(std::size_t size) {
    return sharing(size / 160, "/Filter[/FlateDecode]/DecodeParms 5 0 R",
                   "[<</A[" + repeated("1 ", size / 2) + "]>>]");
}

std::string sharedKids(std::size_t size) {
    ObjectFile file;
    const std::size_t nodes = size / 120;
    std::string all;
    for (std::size_t index = 0; index < nodes; ++index)
        all += reference(5 + index);
    file.add("<</Type/Catalog/Pages 2 0 R>>");
    file.add("<</Type/Pages/Count 1/Kids[" + all + "]>>");
    file.add("<</Type/Page/MediaBox[0 0 9 9]>>");
    file.add("[" + repeated("3 0 R ", size / 3) + "]");
    for (std::size_t index = 0; index < nodes; ++index)
        file.add("<</Type/Pages/Count 1/Kids 4 0 R>>");
    return file.file();
}

/// What many tables might be looked for in.
std::string insideEachOther(std::size_t size) {
    auto file = begun();
    file.add("null");
    return file.file() + repeated("obj [ /XRef ", size - std::min(size, file.size()));
}

Ending import(const std::string& path) {
    const auto source = Host::FileSource::open(path);
    const auto target = Host::FileTarget::create(path + ".saved");
    if (!source || !target) return Ending::NotOpened;
    const bool done = Libraries::Files::PDF::Import::normalise(source, target);
    return done && target->commit() ? Ending::Done : Ending::Refused;
}

constexpr CostlyFile files[] = {
    {"import: a predictor of long rows", longRows, import, Ending::Refused},
    {"import: an object stream of small numbers", manyValues, import, Ending::Refused},
    {"import: one stream of many filters", manyFilters, import, Ending::Refused},
    {"import: filters that nest", nestedFilters, import, Ending::Done},
    {"import: filters that are dropped", droppedFilters, import, Ending::Done},
    {"import: streams share filters", sharedFilters, import, Ending::Refused},
    {"import: streams share parameters", sharedParameters, import, Ending::Refused},
    {"import: nodes share their kids", sharedKids, import, Ending::Refused},
    {"import: arrays inside each other", insideEachOther, import, Ending::Refused},
};

} // namespace

std::span<const CostlyFile> costlyImport() {
    return files;
}

} // namespace Benchmarks
