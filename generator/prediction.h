#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace Generator {

/// What a predictor makes of rows: written down for one component after the other, as the standards
/// say it, and not for speed.
class Prediction {
public:
    Prediction(std::size_t colors, std::size_t bits, std::size_t columns)
        : colors_(colors), bits_(bits), columns_(columns) {}

    [[nodiscard]] std::size_t rowSize() const { return (colors_ * bits_ * columns_ + 7) / 8; }
    /// By differences to the component of the pixel before (TIFF 6.0, section 14).
    [[nodiscard]] std::string tiff(std::string_view rows) const;
    /// Row by row, of the kind, 0 to 4, that `kindOf` gives for its number (PNG, section 9).
    [[nodiscard]] std::string png(std::string_view rows,
                                  const std::function<unsigned(std::size_t)>& kindOf) const;

private:
    [[nodiscard]] unsigned get(std::string_view rows, std::size_t row, std::size_t index) const;
    void set(std::string& rows, std::size_t row, std::size_t index, unsigned value) const;
    [[nodiscard]] int at(std::string_view rows, std::size_t row, std::size_t place) const;
    [[nodiscard]] int guess(std::string_view rows, std::size_t row, std::size_t place,
                            unsigned kind) const;

    std::size_t colors_, bits_, columns_;
};

} // namespace Generator
