#pragma once

#include <pdf/document.h>

#include <cmath>
#include <compare>
#include <optional>
#include <string>

namespace Libraries::Files::PDF::Tools {

/// A number as it was meant: as it stood in its file, where its two parts do not say that.
[[nodiscard]] double valueOf(const Number& number);
/// The same of a value; nothing where it is no number.
[[nodiscard]] std::optional<double> valueOf(const Ref<Value>& value);

/// A rectangle (ISO 32000-1, 7.9.5), its sides in order.
struct Rectangle {
    double left = 0, bottom = 0, right = 0, top = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): of what the compiler makes of it
    [[nodiscard]] auto operator<=>(const Rectangle&) const = default;
    [[nodiscard]] double width() const noexcept { return right - left; }
    [[nodiscard]] double height() const noexcept { return top - bottom; }
};

/// Nothing where the value is no array of four numbers. Throws `std::bad_alloc`.
[[nodiscard]] std::optional<Rectangle> rectangleOf(const Document& document,
                                                   const Ref<Value>& value);

/// A transformation matrix (ISO 32000-1, 8.3.3).
struct Matrix {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): of what the compiler makes of it
    [[nodiscard]] auto operator<=>(const Matrix&) const = default;
    /// This one first, and then `next`.
    [[nodiscard]] Matrix then(const Matrix& next) const noexcept;
    /// What undoes it; nothing where it flattens the plane.
    [[nodiscard]] std::optional<Matrix> inverse() const noexcept;
    /// The smallest upright rectangle around what becomes of `rectangle`.
    [[nodiscard]] Rectangle bounds(const Rectangle& rectangle) const noexcept;
};

/// Nothing where the value is no array of six numbers. Throws `std::bad_alloc`.
[[nodiscard]] std::optional<Matrix> matrixOf(const Document& document, const Ref<Value>& value);

/// A number below 2^63 with up to five digits behind the point. Throws `std::bad_alloc`.
[[nodiscard]] std::string fixedPoint(double number);
/// The same for a content stream, of any number. Throws `std::bad_alloc`.
[[nodiscard]] std::string spelled(double number);
/// The six numbers of a matrix, for a content stream. Throws `std::bad_alloc`.
[[nodiscard]] std::string spelled(const Matrix& matrix);

/// The nearest number that is written as what it is, whichever way the document spells numbers:
/// at most 0.05 off. `number` is not negative. Throws `std::bad_alloc`.
[[nodiscard]] Ref<Number> numberOf(double number);

} // namespace Libraries::Files::PDF::Tools
