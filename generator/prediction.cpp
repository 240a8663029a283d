#include "generator/prediction.h"

#include <cstdlib>

namespace Generator {

std::string Prediction::tiff(std::string_view rows) const {
    std::string result(rows);
    for (std::size_t row = 0; row < rows.size(); row += rowSize()) {
        for (std::size_t index = colors_ * columns_ - 1; index >= colors_; --index)
            set(result, row, index, get(rows, row, index) - get(rows, row, index - colors_));
    }
    return result;
}

std::string Prediction::png(std::string_view rows,
                            const std::function<unsigned(std::size_t)>& kindOf) const {
    std::string result;
    for (std::size_t row = 0; row * rowSize() < rows.size(); ++row) {
        const unsigned kind = kindOf(row);
        result += static_cast<char>(kind);
        for (std::size_t place = 0; place < rowSize(); ++place)
            result += static_cast<char>(at(rows, row, place) - guess(rows, row, place, kind));
    }
    return result;
}

unsigned Prediction::get(std::string_view rows, std::size_t row, std::size_t index) const {
    unsigned value = 0;
    for (std::size_t bit = index * bits_; bit < (index + 1) * bits_; ++bit)
        value =
            value << 1 | (static_cast<unsigned char>(rows[row + bit / 8]) >> (7 - bit % 8) & 1U);
    return value;
}

void Prediction::set(std::string& rows, std::size_t row, std::size_t index, unsigned value) const {
    for (std::size_t bit = 0; bit < bits_; ++bit) {
        const std::size_t place = (index + 1) * bits_ - 1 - bit;
        char& byte = rows[row + place / 8];
        const auto mask = static_cast<unsigned char>(0x80U >> place % 8);
        byte = static_cast<char>((value >> bit & 1U) != 0 ? byte | mask : byte & ~mask);
    }
}

int Prediction::at(std::string_view rows, std::size_t row, std::size_t place) const {
    return static_cast<unsigned char>(rows[row * rowSize() + place]);
}

int Prediction::guess(std::string_view rows, std::size_t row, std::size_t place,
                      unsigned kind) const {
    const std::size_t pixel = (colors_ * bits_ + 7) / 8;
    const int a = place < pixel ? 0 : at(rows, row, place - pixel);
    const int b = row == 0 ? 0 : at(rows, row - 1, place);
    const int c = row == 0 || place < pixel ? 0 : at(rows, row - 1, place - pixel);
    const int p = a + b - c;
    const int pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
    const int paeth = pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
    const int guesses[] = {0, a, b, (a + b) / 2, paeth};
    return guesses[kind];
}

} // namespace Generator
