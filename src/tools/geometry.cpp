#include "tools/geometry.h"

#include "tools/failure.h"
#include "tools/references.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace Libraries::Files::PDF::Tools {

namespace {

/// The elements of an array of so many numbers; nothing where it is none.
template <std::size_t count>
std::optional<std::array<double, count>> numbersOf(const Document& document,
                                                   const Ref<Value>& value) {
    const Ref<Array> array = followTo<Array>(document, value);
    if (!array || array->size() != count) return std::nullopt;
    std::array<double, count> numbers;
    for (std::size_t index = 0; index < count; ++index) {
        const auto number = valueOf(follow(document, array->get(index)));
        if (!number) return std::nullopt;
        numbers[index] = *number;
    }
    return numbers;
}

/// Decimal places that a content stream needs at most.
constexpr int places = 5;

} // namespace

double valueOf(const Number& number) {
    const Ref<Host::String> spelling = number.spelling();
    const std::string text =
        spelling ? spelling->utf8()
                 : std::to_string(number.integer()) + "." + std::to_string(number.fraction());
    const char* const begin = text.data() + (text.starts_with('+') ? 1 : 0);
    double value = 0;
    std::from_chars(begin, text.data() + text.size(), value);
    return value;
}

std::optional<double> valueOf(const Ref<Value>& value) {
    const Ref<Number> number = Host::cast<Number>(value);
    return number ? std::optional(valueOf(*number)) : std::nullopt;
}

std::optional<Rectangle> rectangleOf(const Document& document, const Ref<Value>& value) {
    const auto sides = numbersOf<4>(document, value);
    if (!sides) return std::nullopt;
    const auto& [x0, y0, x1, y1] = *sides;
    return Rectangle{std::min(x0, x1), std::min(y0, y1), std::max(x0, x1), std::max(y0, y1)};
}

std::optional<Matrix> matrixOf(const Document& document, const Ref<Value>& value) {
    const auto cells = numbersOf<6>(document, value);
    if (!cells) return std::nullopt;
    const auto& [a, b, c, d, e, f] = *cells;
    return Matrix{a, b, c, d, e, f};
}

Matrix Matrix::then(const Matrix& next) const noexcept {
    return {a * next.a + b * next.c,          a * next.b + b * next.d,
            c * next.a + d * next.c,          c * next.b + d * next.d,
            e * next.a + f * next.c + next.e, e * next.b + f * next.d + next.f};
}

std::optional<Matrix> Matrix::inverse() const noexcept {
    const double scale = a * d - b * c;
    if (scale == 0 || !std::isfinite(1 / scale)) return std::nullopt;
    return Matrix{d / scale,
                  -b / scale,
                  -c / scale,
                  a / scale,
                  (c * f - d * e) / scale,
                  (b * e - a * f) / scale};
}

Rectangle Matrix::bounds(const Rectangle& rectangle) const noexcept {
    const double x[] = {rectangle.left * a, rectangle.right * a, rectangle.bottom * c,
                        rectangle.top * c};
    const double y[] = {rectangle.left * b, rectangle.right * b, rectangle.bottom * d,
                        rectangle.top * d};
    return {std::min(x[0], x[1]) + std::min(x[2], x[3]) + e,
            std::min(y[0], y[1]) + std::min(y[2], y[3]) + f,
            std::max(x[0], x[1]) + std::max(x[2], x[3]) + e,
            std::max(y[0], y[1]) + std::max(y[2], y[3]) + f};
}

std::string fixedPoint(double number) {
    constexpr std::size_t longest = 32; // 19 digits, a sign, a point, the places
    std::array<char, longest> text;
    char* end = std::to_chars(text.data(), text.data() + text.size(), number,
                              std::chars_format::fixed, places)
                    .ptr;
    while (end[-1] == '0')
        --end;
    if (end[-1] == '.') --end;
    const std::string result(text.data(), end);
    return result == "-0" ? "0" : result;
}

std::string spelled(double number) {
    // No number of a page is as large; what is gets a number that every reader takes.
    constexpr double most = 1e9;
    return fixedPoint(std::isfinite(number) ? std::clamp(number, -most, most) : 0);
}

std::string spelled(const Matrix& matrix) {
    std::string text;
    for (const double cell : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f})
        text += (text.empty() ? "" : " ") + spelled(cell);
    return text;
}

Ref<Number> numberOf(double number) {
    constexpr double most = 1e9;
    const auto hundredths = std::lround(std::clamp(number, 0.0, most) * 100);
    const auto whole = hundredths / 100;
    const auto fraction = hundredths % 100;
    // The digits behind the point count as a whole number, which has no zeros in front.
    if (fraction >= 10) {
        const bool tenths = fraction % 10 == 0;
        return orThrow(
            Number::create(whole, static_cast<std::uint64_t>(tenths ? fraction / 10 : fraction)));
    }
    return orThrow(Number::create(whole, fraction < 5 ? 0 : 1));
}

} // namespace Libraries::Files::PDF::Tools
