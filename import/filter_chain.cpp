#include "filter_chain.h"

#include "report.h"

#include <pdf/errors.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Libraries::Files::PDF::Import {

namespace {

constexpr int mostFilters = 8;

bool takesParms(QPDFObjectHandle name) {
    static constexpr const char* names[] = {"/FlateDecode", "/Fl", "/LZWDecode", "/LZW"};
    return std::ranges::any_of(names, [&](const char* one) { return name.isNameAndEquals(one); });
}

/// What a filter's parameters say, where there is nothing that stands for `otherwise`.
long long number(QPDFObjectHandle parms, const char* key, long long otherwise) {
    QPDFObjectHandle value = parms.getKey(key);
    return value.isInteger() ? value.getIntValue() : otherwise;
}

} // namespace

FilterChain filterChain(QPDFObjectHandle filter, QPDFObjectHandle parms) {
    FilterChain chain;
    if (filter.isNull()) return chain;
    const int count = filter.isArray() ? filter.getArrayNItems() : 1;
    if (count > mostFilters) fail(LimitExceeded, "a stream has more than eight filters");
    const int told = parms.isArray() ? parms.getArrayNItems() : count;
    for (int index = 0; index < count; ++index) {
        QPDFObjectHandle own = index < told ? parms : QPDFObjectHandle::newNull();
        if (own.isArray()) own = own.getArrayItem(index);
        chain.push_back({filter.isArray() ? filter.getArrayItem(index) : filter, own});
    }
    return chain;
}

std::uint64_t predictorRow(const Filter& filter) {
    QPDFObjectHandle parms = filter.parms;
    if (!parms.isDictionary() || number(parms, "/Predictor", 1) <= 1) return 0;
    double bits = 1;
    const std::pair<const char*, int> factors[] = {
        {"/Columns", 1}, {"/Colors", 1}, {"/BitsPerComponent", 8}};
    for (const auto& [key, otherwise] : factors)
        bits *= static_cast<double>(std::max(0LL, number(parms, key, otherwise)));
    return static_cast<std::uint64_t>(std::clamp(std::ceil(bits / 8), 1.0, 1e18));
}

std::optional<QPDFObjectHandle> plainParms(const Filter& filter) {
    QPDFObjectHandle parms = filter.parms;
    if (!takesParms(filter.name) || !parms.isDictionary()) return QPDFObjectHandle::newNull();
    QPDFObjectHandle plain = QPDFObjectHandle::newDictionary();
    static constexpr const char* keys[] = {"/Predictor", "/Colors", "/BitsPerComponent", "/Columns",
                                           "/EarlyChange"};
    for (const char* key : keys) {
        QPDFObjectHandle value = parms.getKey(key);
        if (value.isNull()) continue;
        if (!value.isInteger()) return std::nullopt;
        const long long known = value.getIntValue();
        if (known < 0 || known > std::numeric_limits<int>::max()) return std::nullopt;
        plain.replaceKey(key, QPDFObjectHandle::newInteger(known));
    }
    // Its default (table 8), which libqpdf does not know.
    if (!plain.hasKey("/Columns")) plain.replaceKey("/Columns", QPDFObjectHandle::newInteger(1));
    return plain;
}

} // namespace Libraries::Files::PDF::Import
