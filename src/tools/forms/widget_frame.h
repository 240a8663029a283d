#pragma once

#include "tools/geometry.h"

#include <pdf/document.h>

#include <string>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

/// What a widget looks like around its contents: area, background and border (ISO 32000-1,
/// 12.5.6.19). Its own coordinates begin at 0,0 in the lower left corner, as its reader sees it.
class WidgetFrame {
public:
    /// Throws `std::bad_alloc`, as does what follows.
    WidgetFrame(const Document& document, const Ref<Dictionary>& widget);

    /// Whether there is an area to draw in.
    [[nodiscard]] bool hasArea() const noexcept;
    [[nodiscard]] double width() const noexcept { return width_; }
    [[nodiscard]] double height() const noexcept { return height_; }
    /// What the border leaves.
    [[nodiscard]] Rectangle inside() const noexcept;
    [[nodiscard]] double borderWidth() const noexcept { return borderWidth_; }
    /// The operator that strokes in the border's colour; empty where there is no border.
    [[nodiscard]] const std::string& borderColour() const noexcept { return border_; }

    /// The operators that draw it, as a rectangle or as the circle within.
    ///@{
    [[nodiscard]] std::string rectangle() const;
    [[nodiscard]] std::string circle() const;
    ///@}
    /// Makes a stream that draws in it a form XObject (ISO 32000-1, 8.10).
    void describe(const Ref<Dictionary>& entries) const;

private:
    void readBorder(const Document& document, const Ref<Dictionary>& widget);
    [[nodiscard]] std::string edges() const;

    double width_ = 0, height_ = 0, borderWidth_ = 1;
    std::int64_t turn_ = 0; // in degrees, against the clock
    char style_ = 'S';
    std::string background_, border_, dashes_;
};

/// A circle around a point, as a closed path. Throws `std::bad_alloc`.
[[nodiscard]] std::string circlePath(double x, double y, double radius);

} // namespace Libraries::Files::PDF::Tools
