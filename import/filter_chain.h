#pragma once

#include "libqpdf.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace Libraries::Files::PDF::Import {

/// One filter of a stream (ISO 32000-1, 7.4), and what it is told: its part of DecodeParms.
struct Filter {
    QPDFObjectHandle name;
    QPDFObjectHandle parms;
};

/// The filters of a stream, in the order in which they decode.
using FilterChain = std::vector<Filter>;

/// What the entries Filter and DecodeParms say, behind whatever references; a DecodeParms that is
/// no array is for each filter, as libqpdf takes it. Throws `Failed` where there are more than
/// eight filters: no producer has more than three, and many of them cost as many times the data.
[[nodiscard]] FilterChain filterChain(QPDFObjectHandle filter, QPDFObjectHandle parms);

/// What undoing the predictor of a filter takes at once, in bytes; 0 where it has none.
[[nodiscard]] std::uint64_t predictorRow(const Filter& filter);

/// The parameters with nothing in them but what the filters that libqpdf decodes look at; nothing
/// where they are not understood.
[[nodiscard]] std::optional<QPDFObjectHandle> plainParms(const Filter& filter);

} // namespace Libraries::Files::PDF::Import
