#include "tools/page_view.h"

#include "tools/failure.h"
#include "tools/page_tree.h"

#include <array>

namespace Libraries::Files::PDF::Tools {

namespace {

/// A side of a box: the number as it stands, and what it means.
struct Side {
    Ref<Number> number;
    double value = 0;
};

Side smaller(Side one, Side other) {
    return other.value < one.value ? other : one;
}

Side larger(Side one, Side other) {
    return other.value > one.value ? other : one;
}

/// Left, bottom, right, top.
using Sides = std::array<Side, 4>;

Sides letterPaper() {
    Sides sides;
    constexpr std::int64_t points[] = {0, 0, 612, 792};
    for (std::size_t index = 0; index < sides.size(); ++index)
        sides[index] = {orThrow(Number::create(points[index])), double(points[index])};
    return sides;
}

bool isArea(const Sides& sides) noexcept {
    return sides[0].value < sides[2].value && sides[1].value < sides[3].value;
}

/// The sides of a box; `otherwise` where there is none, or none that encloses anything.
Sides sidesOf(const Document& document, const Ref<Array>& box, const Sides& otherwise) {
    const Ref<Array> numbers = directBox(document, box);
    if (!numbers) return otherwise;
    Sides given;
    for (std::size_t index = 0; index < given.size(); ++index) {
        given[index].number = Host::cast<Number>(numbers->get(index));
        given[index].value = valueOf(*given[index].number);
    }
    const auto& [x0, y0, x1, y1] = given;
    const Sides sides = {smaller(x0, x1), smaller(y0, y1), larger(x1, x0), larger(y1, y0)};
    return isArea(sides) ? sides : otherwise;
}

} // namespace

Ref<Array> visibleBox(const Document& document, const Page& page) {
    const Sides media = sidesOf(document, page.mediaBox, letterPaper());
    const Sides crop = sidesOf(document, page.cropBox, media);
    const Sides common = {larger(media[0], crop[0]), larger(media[1], crop[1]),
                          smaller(media[2], crop[2]), smaller(media[3], crop[3])};
    std::vector<Ref<Value>> numbers;
    for (const Side& side : isArea(common) ? common : media)
        numbers.emplace_back(side.number);
    return orThrow(Array::create(numbers));
}

Matrix uprightTurn(const Page& page) noexcept {
    constexpr std::int64_t full = 360;
    if (!page.rotate) return {};
    switch ((page.rotate->integer() % full + full) % full) {
    case 90:
        return {0, -1, 1, 0, 0, 0};
    case 180:
        return {-1, 0, 0, -1, 0, 0};
    case 270:
        return {0, 1, -1, 0, 0, 0};
    default:
        return {};
    }
}

} // namespace Libraries::Files::PDF::Tools
