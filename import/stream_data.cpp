#include "stream_data.h"

#include "pipelines.h"
#include "report.h"

#include <algorithm>
#include <vector>

namespace Libraries::Files::PDF::Import {

namespace {

using Handle = QPDFObjectHandle;
using Handles = std::vector<Handle>;

constexpr const char* filterKey = "/Filter";
constexpr const char* parmsKey = "/DecodeParms";
constexpr const char* flate = "/FlateDecode";

Handle find(const Entries& entries, const std::string& key) {
    const auto found = entries.find(key);
    return found == entries.end() ? Handle::newNull() : found->second;
}

/// An entry that may be one thing or an array of them.
Handles listOf(const Entries& entries, const std::string& key) {
    Handle value = find(entries, key);
    if (value.isArray()) return value.getArrayAsVector();
    return value.isNull() ? Handles() : Handles{value};
}

void set(Entries& entries, const std::string& key, const Handles& items, bool wasArray) {
    if (items.empty()) {
        entries.erase(key);
    } else {
        entries[key] = wasArray ? Handle::newArray(items) : items.front();
    }
}

/// Takes out the filter for encryption (7.4.10): the data is decrypted by now.
void dropCrypt(Entries& entries) {
    Handles filters = listOf(entries, filterKey);
    Handles parms = listOf(entries, parmsKey);
    const bool wasArray = find(entries, filterKey).isArray();
    const std::size_t former = filters.size();
    for (std::size_t index = filters.size(); index-- > 0;) {
        if (!filters[index].isNameAndEquals("/Crypt")) continue;
        const auto place = static_cast<std::ptrdiff_t>(index);
        filters.erase(filters.begin() + place);
        if (index < parms.size()) parms.erase(parms.begin() + place);
    }
    if (filters.size() == former) return;
    set(entries, filterKey, filters, wasArray);
    set(entries, parmsKey, parms, wasArray);
}

/// The library looks at the entry itself.
void makeDirect(Entries& entries, const std::string& key) {
    Handle value = find(entries, key);
    if (!value.isIndirect()) return;
    if (value.isName()) entries[key] = Handle::newName(value.getName());
    if (value.isArray()) entries[key] = Handle::newArray(value.getArrayAsVector());
}

bool hasPredictor(Handle parms) {
    if (!parms.isDictionary()) return false;
    Handle predictor = parms.getKey("/Predictor");
    return predictor.isInteger() && predictor.getIntValue() > 1;
}

/// Whether the data is what FlateDecode alone decodes, however that is said.
bool isFlateAlone(const Entries& entries) {
    const Handles filters = listOf(entries, filterKey);
    return filters.size() == 1 && Handle(filters.front()).isNameAndEquals(flate) &&
           std::ranges::none_of(listOf(entries, parmsKey), hasPredictor);
}

} // namespace

StreamData::StreamData(Source& source, const Options& options)
    : source_(source),
      plainFilters_(options.plainFilters),
      streamLimit_(options.streamLimit),
      left_(std::min(UINT64_MAX - 64 * std::min(source.size(), UINT64_MAX / 128), streamLimit_) +
            64 * std::min(source.size(), UINT64_MAX / 128)) {}

std::span<const std::uint8_t> StreamData::read(Handle& stream, Entries& entries) {
    dropCrypt(entries);
    makeDirect(entries, filterKey);
    makeDirect(entries, parmsKey);
    const bool isFlate = isFlateAlone(entries);
    const bool isPlain = listOf(entries, filterKey).empty();
    if (plainFilters_ && !isPlain && (isFlate || deflate(stream))) {
        entries[filterKey] = Handle::newName(flate);
        entries.erase(parmsKey);
        if (!isFlate) return bytes_.span();
    }
    readStored(stream);
    return bytes_.span();
}

void StreamData::readStored(Handle& stream) {
    Collector collector(bytes_);
    const bool whole = stream.pipeStreamData(&collector, nullptr, 0, qpdf_dl_none);
    collector.check();
    source_.check();
    if (!whole) warn("the data of a stream is not whole");
}

/// Decodes and deflates the data. False where it stays as it is.
bool StreamData::deflate(Handle& stream) {
    if (!stream.pipeStreamData(nullptr, 0, qpdf_dl_specialized)) return false;
    Collector collector(bytes_);
    Pl_Flate deflater("deflater", &collector, Pl_Flate::a_deflate);
    Meter meter(std::min(streamLimit_, left_), &deflater);
    const bool done = stream.pipeStreamData(&meter, nullptr, 0, qpdf_dl_specialized, false, true);
    collector.check();
    source_.check();
    left_ -= meter.passed();
    if (meter.exceeded()) warn("a stream that holds more than the limit stays as it is stored");
    return done && !meter.exceeded();
}

} // namespace Libraries::Files::PDF::Import
