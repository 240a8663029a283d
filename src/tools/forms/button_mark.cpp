#include "tools/forms/field_appearance.h"

#include <algorithm>
#include <array>
#include <span>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Points of a path in a square from -1 to 1.
struct Point {
    double x, y;
};

constexpr Point check[] = {{-.70, -.05}, {-.50, .15}, {-.20, -.25},
                           {.45, .65},   {.70, .50},  {-.15, -.70}};
constexpr Point cross[] = {{-.65, -.45}, {-.45, -.65}, {0, -.20},   {.45, -.65},
                           {.65, -.45},  {.20, 0},     {.65, .45},  {.45, .65},
                           {0, .20},     {-.45, .65},  {-.65, .45}, {-.20, 0}};
constexpr Point diamond[] = {{-.70, 0}, {0, -.70}, {.70, 0}, {0, .70}};
constexpr Point square[] = {{-.60, -.60}, {.60, -.60}, {.60, .60}, {-.60, .60}};
constexpr Point star[] = {{0, .75},  {-.17, .24}, {-.71, .23}, {-.28, -.09}, {-.44, -.61},
                          {0, -.30}, {.44, -.61}, {.28, -.09}, {.71, .23},   {.17, .24}};

std::span<const Point> shapeOf(char style) noexcept {
    switch (style) {
    case '8':
        return cross;
    case 'u':
        return diamond;
    case 'n':
        return square;
    case 'H':
        return star;
    default:
        return check;
    }
}

} // namespace

std::string buttonMark(char style, const Rectangle& area) {
    const double x = (area.left + area.right) / 2;
    const double y = (area.bottom + area.top) / 2;
    const double half = std::min(area.width(), area.height()) / 2;
    constexpr double dot = 0.5; // of a radio button
    if (style == 'l') return circlePath(x, y, half * dot) + "f\n";
    std::string path;
    for (const Point& point : shapeOf(style)) {
        path += spelled(x + point.x * half) + " " + spelled(y + point.y * half) +
                (path.empty() ? " m " : " l ");
    }
    return path + "f\n";
}

} // namespace Libraries::Files::PDF::Tools
