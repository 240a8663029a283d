#pragma once

#include "generator/random.h"

#include <string>
#include <string_view>
#include <vector>

namespace Generator {

/// Data as a stream stores it.
struct Encoded {
    std::string data;
    std::vector<std::string> filters; ///< names with their slash; the first is decoded first
    std::vector<std::string> parms;   ///< a dictionary or "null" for each
};

/// `data` behind FlateDecode; with a predictor where `rowSize` is not 0: a PNG one of any kind for
/// each row of so many bytes, or TIFF's. The size of the data must be a multiple.
[[nodiscard]] Encoded deflatedRows(std::string_view data, std::size_t rowSize, Random& random);
/// `data` behind FlateDecode, another filter without loss, a chain of two, or none.
[[nodiscard]] Encoded encodedAnyhow(std::string_view data, Random& random);
/// `data` behind ASCIIHexDecode.
[[nodiscard]] std::string hexadecimal(std::string_view data);

} // namespace Generator
