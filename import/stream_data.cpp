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

/// The library looks at the entry itself.
void makeDirect(Entries& entries, const std::string& key) {
    Handle value = find(entries, key);
    if (!value.isIndirect()) return;
    if (value.isName()) entries[key] = Handle::newName(value.getName());
    if (value.isArray()) entries[key] = Handle::newArray(value.getArrayAsVector());
}

/// Makes the entry an array of what the chain says.
void setList(Entries& entries, const std::string& key, const FilterChain& chain,
             Handle Filter::*part) {
    Handles items;
    for (const Filter& filter : chain)
        items.push_back(filter.*part);
    entries[key] = Handle::newArray(items);
}

bool isCrypt(const Filter& filter) {
    return Handle(filter.name).isNameAndEquals("/Crypt");
}

/// Takes out the filter for encryption (7.4.10): the data is decrypted by now.
void dropCrypt(Entries& entries, FilterChain& chain) {
    if (std::erase_if(chain, isCrypt) == 0) return;
    setList(entries, filterKey, chain, &Filter::name);
    if (find(entries, parmsKey).isArray()) setList(entries, parmsKey, chain, &Filter::parms);
    if (!chain.empty()) return;
    entries.erase(filterKey);
    entries.erase(parmsKey);
}

bool hasPredictor(const Filter& filter) {
    return predictorRow(filter) != 0;
}

/// Whether the data is what FlateDecode alone decodes, however that is said.
bool isFlateAlone(const FilterChain& chain) {
    return chain.size() == 1 && Handle(chain.front().name).isNameAndEquals(flate) &&
           !hasPredictor(chain.front());
}

} // namespace

StreamData::StreamData(Source& source, const Options& options)
    : source_(source),
      plainFilters_(options.plainFilters),
      streamLimit_(options.streamLimit),
      left_(std::min(UINT64_MAX - 64 * std::min(source.size(), UINT64_MAX / 128), streamLimit_) +
            64 * std::min(source.size(), UINT64_MAX / 128)) {}

std::span<const std::uint8_t> StreamData::read(Handle& stream, Entries& entries) {
    const FilterChain chain = takeChain(entries);
    const bool isFlate = isFlateAlone(chain);
    if (plainFilters_ && chain.empty()) entries.erase(filterKey);
    if (plainFilters_ && !chain.empty() && (isFlate || deflate(stream, chain))) {
        entries[filterKey] = Handle::newName(flate);
        entries.erase(parmsKey);
        if (!isFlate) return bytes_.span();
    }
    readStored(stream);
    return bytes_.span();
}

/// The filters that are left when the data is decrypted, as `entries` say them then.
FilterChain StreamData::takeChain(Entries& entries) {
    Handle filter = find(entries, filterKey);
    Handle parms = find(entries, parmsKey);
    inlined_ = filter.isIndirect() || parms.isIndirect();
    FilterChain chain = filterChain(filter, parms);
    // What is told to more filters than there are is told to none.
    const bool isLonger = parms.isArray() && parms.getArrayNItems() > std::ssize(chain);
    if (isLonger) setList(entries, parmsKey, chain, &Filter::parms);
    makeDirect(entries, filterKey);
    makeDirect(entries, parmsKey);
    dropCrypt(entries, chain);
    return chain;
}

void StreamData::readStored(Handle& stream) {
    Collector collector(bytes_);
    const bool whole = stream.pipeStreamData(&collector, nullptr, 0, qpdf_dl_none);
    collector.check();
    source_.check();
    if (!whole) warn("the data of a stream is not whole");
}

/// Decodes and deflates the data. False where it stays as it is.
bool StreamData::deflate(Handle& stream, const FilterChain& chain) {
    Collector collector(bytes_);
    Pl_Flate deflater("deflater", &collector, Pl_Flate::a_deflate);
    const std::uint64_t allowed = std::min(streamLimit_, left_);
    std::uint64_t left = allowed;
    const Decoded decoded = decoder_.decode(stream, chain, left, &deflater);
    collector.check();
    source_.check();
    left_ -= allowed - left;
    if (decoded.exceeded) warn("a stream that holds more than the limit stays as it is stored");
    if (!decoded.known || decoded.exceeded) return false;
    if (!decoded.whole) warn("a stream that cannot be decoded stays as it is stored");
    if (decoded.whole && decoded.doubted) warn("the decoded data of a stream may not be whole");
    return decoded.whole;
}

} // namespace Libraries::Files::PDF::Import
