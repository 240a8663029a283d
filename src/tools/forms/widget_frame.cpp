#include "tools/forms/widget_frame.h"

#include "tools/new_values.h"
#include "tools/references.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

double numberAt(const Document& document, const Array& array, std::uint64_t index,
                double otherwise) {
    return valueOf(follow(document, array.get(index))).value_or(otherwise);
}

/// A colour of 1, 3 or 4 components with the operator for it; empty where there is none.
std::string colourOf(const Document& document, const Ref<Value>& value,
                     const std::array<const char*, 3>& operators) {
    const Ref<Array> components = Host::cast<Array>(value);
    const std::uint64_t count = components ? components->size() : 0;
    if (count != 1 && count != 3 && count != 4) return {};
    std::string text;
    for (std::uint64_t index = 0; index < count; ++index)
        text += spelled(numberAt(document, *components, index, 0)) + " ";
    return text + operators[count == 1 ? 0 : count - 2] + "\n";
}

std::string rectanglePath(const Rectangle& box) {
    return spelled(box.left) + " " + spelled(box.bottom) + " " + spelled(box.width()) + " " +
           spelled(box.height()) + " re ";
}

std::string dashesOf(const Document& document, const Ref<Array>& pattern) {
    std::string text;
    for (std::uint64_t index = 0; pattern && index < pattern->size() && index < 8; ++index)
        text += (index == 0 ? "" : " ") + spelled(numberAt(document, *pattern, index, 3));
    return "[" + (text.empty() ? "3" : text) + "] 0 d\n";
}

} // namespace

WidgetFrame::WidgetFrame(const Document& document, const Ref<Dictionary>& widget) {
    const Rectangle area =
        rectangleOf(document, followEntry(document, widget, "Rect")).value_or(Rectangle());
    width_ = area.width();
    height_ = area.height();
    const auto looks = followEntry<Dictionary>(document, widget, "MK");
    background_ = colourOf(document, followEntry(document, looks, "BG"), {"g", "rg", "k"});
    border_ = colourOf(document, followEntry(document, looks, "BC"), {"G", "RG", "K"});
    const auto turn = followEntry<Number>(document, looks, "R");
    if (turn && turn->integer() % 90 == 0) turn_ = (turn->integer() % 360 + 360) % 360;
    if (turn_ % 180 != 0) std::swap(width_, height_);
    readBorder(document, widget);
}

void WidgetFrame::readBorder(const Document& document, const Ref<Dictionary>& widget) {
    double width = 1;
    Ref<Array> pattern;
    if (const auto style = followEntry<Dictionary>(document, widget, "BS")) {
        width = valueOf(followEntry(document, style, "W")).value_or(width);
        const auto name = followEntry<Name>(document, style, "S");
        const std::string_view text = name && name->name() ? name->name()->narrow() : "S";
        if (text.size() == 1) style_ = text.front();
        pattern = followEntry<Array>(document, style, "D");
    } else if (const auto border = followEntry<Array>(document, widget, "Border")) {
        width = numberAt(document, *border, 2, width);
        pattern = followTo<Array>(document, border->get(3));
        if (pattern && pattern->size() != 0) style_ = 'D';
    }
    // A border that fills the widget leaves no room for a text.
    borderWidth_ = std::clamp(width, 0.0, std::min(width_, height_) / 4);
    if (style_ == 'D') dashes_ = dashesOf(document, pattern);
}

bool WidgetFrame::hasArea() const noexcept {
    return width_ > 0 && height_ > 0;
}

Rectangle WidgetFrame::inside() const noexcept {
    const bool raised = style_ == 'B' || style_ == 'I';
    const double inset = borderWidth_ * (raised ? 2 : 1);
    return {inset, inset, width_ - inset, height_ - inset};
}

std::string WidgetFrame::rectangle() const {
    std::string text;
    if (!background_.empty()) text += background_ + rectanglePath({0, 0, width_, height_}) + "f\n";
    if (border_.empty() || borderWidth_ == 0) return text;
    text += edges() + border_ + dashes_ + spelled(borderWidth_) + " w\n";
    const double half = borderWidth_ / 2;
    if (style_ == 'U') {
        return text + "0 " + spelled(half) + " m " + spelled(width_) + " " + spelled(half) +
               " l S\n";
    }
    return text + rectanglePath({half, half, width_ - half, height_ - half}) + "S\n";
}

/// The light and the dark side of a border that looks raised or sunk.
std::string WidgetFrame::edges() const {
    if (style_ != 'B' && style_ != 'I') return {};
    const double outer = borderWidth_;
    const double inner = 2 * borderWidth_;
    const auto point = [](double x, double y) { return spelled(x) + " " + spelled(y); };
    const std::string from = point(outer, outer) + " m ";
    const std::string to = point(width_ - outer, height_ - outer) + " l " +
                           point(width_ - inner, height_ - inner) + " l ";
    const std::string end = " l " + point(inner, inner) + " l f\n";
    const std::string topLeft =
        from + point(outer, height_ - outer) + " l " + to + point(inner, height_ - inner) + end;
    const std::string bottomRight =
        from + point(width_ - outer, outer) + " l " + to + point(width_ - inner, inner) + end;
    const bool sunk = style_ == 'I';
    return (sunk ? "0.5 g\n" : "1 g\n") + topLeft + (sunk ? "0.75 g\n" : "0.5 g\n") + bottomRight;
}

std::string WidgetFrame::circle() const {
    const double x = width_ / 2;
    const double y = height_ / 2;
    const double radius = std::min(x, y) - borderWidth_ / 2;
    const std::string path = circlePath(x, y, radius);
    std::string text;
    if (!background_.empty()) text += background_ + path + "f\n";
    if (border_.empty() || borderWidth_ == 0) return text;
    return text + border_ + dashes_ + spelled(borderWidth_) + " w\n" + path + "s\n";
}

std::string circlePath(double x, double y, double radius) {
    const double handle = radius * 0.5522847498; // of the Bézier curve nearest to a quarter
    const auto curve = [&](double x1, double y1, double x2, double y2, double x3, double y3) {
        std::string text;
        for (const double number : {x + x1, y + y1, x + x2, y + y2, x + x3, y + y3})
            text += spelled(number) + " ";
        return text + "c\n";
    };
    return spelled(x + radius) + " " + spelled(y) + " m\n" +
           curve(radius, handle, handle, radius, 0, radius) +
           curve(-handle, radius, -radius, handle, -radius, 0) +
           curve(-radius, -handle, -handle, -radius, 0, -radius) +
           curve(handle, -radius, radius, -handle, radius, 0);
}

void WidgetFrame::describe(const Ref<Dictionary>& entries) const {
    const auto number = [](std::int64_t integer) -> Ref<Value> {
        return newNumber(static_cast<std::uint64_t>(integer));
    };
    put(entries, "Type", newName("XObject"));
    put(entries, "Subtype", newName("Form"));
    put(entries, "BBox", newArray({number(0), number(0), numberOf(width_), numberOf(height_)}));
    if (turn_ == 0) return;
    const std::int64_t sine = turn_ == 90 ? 1 : turn_ == 270 ? -1 : 0;
    const std::int64_t cosine = turn_ == 180 ? -1 : 0;
    put(entries, "Matrix",
        newArray(
            {number(cosine), number(sine), number(-sine), number(cosine), number(0), number(0)}));
}

} // namespace Libraries::Files::PDF::Tools
