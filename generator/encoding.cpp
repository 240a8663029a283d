#include "generator/encoding.h"

#include "generator/prediction.h"
#include "support/documents.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace Generator {

namespace {

std::string ascii85(std::string_view data) {
    std::string text;
    for (; !data.empty(); data.remove_prefix(std::min<std::size_t>(4, data.size()))) {
        const std::size_t count = std::min<std::size_t>(4, data.size());
        std::uint32_t word = 0;
        for (std::size_t place = 0; place < 4; ++place)
            word = word << 8 | (place < count ? static_cast<std::uint8_t>(data[place]) : 0);
        std::string group(5, '!');
        for (std::size_t place = 5; place-- > 0; word /= 85)
            group[place] = static_cast<char>('!' + word % 85);
        text += count == 4 && group == "!!!!!" ? "z" : group.substr(0, count + 1);
    }
    return text + "~>";
}

std::string runLengths(std::string_view data) {
    std::string text;
    while (!data.empty()) {
        const std::size_t end = std::min(data.find_first_not_of(data[0]), data.size());
        const std::size_t same = std::min<std::size_t>(end, 128);
        if (same > 1) {
            text += {static_cast<char>(257 - same), data[0]};
        } else {
            text += {'\0', data[0]};
        }
        data.remove_prefix(same);
    }
    return text + '\x80';
}

/// LZW of nine bits: the table is cleared before a code would need ten.
std::string lzw(std::string_view data) {
    std::string text;
    std::uint32_t bits = 0;
    unsigned count = 0;
    const auto put = [&](unsigned code) {
        bits = bits << 9 | code;
        for (count += 9; count >= 8; count -= 8)
            text += static_cast<char>(bits >> (count - 8));
    };
    for (std::size_t index = 0; index < data.size(); ++index) {
        if (index % 200 == 0) put(256);
        put(static_cast<std::uint8_t>(data[index]));
    }
    put(257);
    return text + static_cast<char>(bits << (8 - count));
}

} // namespace

std::string hexadecimal(std::string_view data) {
    std::string text;
    for (const char byte : data) {
        text += "0123456789abcdef"[static_cast<std::uint8_t>(byte) >> 4];
        text += "0123456789ABCDEF"[static_cast<std::uint8_t>(byte) & 15];
    }
    return text + ">";
}

Encoded deflatedRows(std::string_view data, std::size_t rowSize, Random& random) {
    if (rowSize == 0) return {Support::deflated(data), {"/FlateDecode"}, {"null"}};
    std::vector<std::size_t> pixels = {1};
    for (const std::size_t colors : {2U, 3U, 4U}) {
        if (rowSize % colors == 0) pixels.push_back(colors);
    }
    const std::size_t colors = random.oneOf(pixels);
    const bool isTiff = random.chance(25);
    const auto kind = random.below(6);
    std::string parms = "<</Predictor " + std::to_string(isTiff ? 2 : 10 + kind);
    parms += " /Columns " + std::to_string(rowSize / colors);
    if (colors != 1) parms += " /Colors " + std::to_string(colors);
    if (random.chance(20)) parms += " /BitsPerComponent 8";
    const Prediction prediction(colors, 8, rowSize / colors);
    const auto kindOf = [&](std::size_t) { return kind < 5 ? kind : random.below(5); };
    const std::string rows = isTiff ? prediction.tiff(data) : prediction.png(data, kindOf);
    return {Support::deflated(rows), {"/FlateDecode"}, {parms + ">>"}};
}

Encoded encodedAnyhow(std::string_view data, Random& random) {
    Encoded encoded{std::string(data), {}, {}};
    const std::size_t stages = random.chance(15) ? 0 : random.chance(20) ? 2 : 1;
    for (std::size_t stage = 0; stage < stages; ++stage) {
        const std::pair<const char*, std::string (*)(std::string_view)> filters[] = {
            {"/FlateDecode", Support::deflated}, {"/FlateDecode", Support::deflated},
            {"/FlateDecode", Support::deflated}, {"/ASCIIHexDecode", hexadecimal},
            {"/ASCII85Decode", ascii85},         {"/LZWDecode", lzw},
            {"/RunLengthDecode", runLengths}};
        const auto& [name, encode] = filters[random.below(std::size(filters))];
        encoded.data = encode(encoded.data);
        encoded.filters.insert(encoded.filters.begin(), name);
        encoded.parms.insert(encoded.parms.begin(), "null");
    }
    return encoded;
}

} // namespace Generator
