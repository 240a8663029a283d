#include "tools/pages/page_view.h"

#include <algorithm>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr Rectangle letterPaper = {0, 0, 612, 792};

bool isArea(const Rectangle& box) noexcept {
    return box.left < box.right && box.bottom < box.top;
}

/// The box; `otherwise` where there is none, or none that encloses anything.
Rectangle boxOf(const Document& document, const Ref<Array>& box, const Rectangle& otherwise) {
    const Rectangle given = rectangleOf(document, box).value_or(otherwise);
    return isArea(given) ? given : otherwise;
}

} // namespace

Rectangle visibleBox(const Document& document, const Page& page) {
    const Rectangle media = boxOf(document, page.mediaBox, letterPaper);
    const Rectangle crop = boxOf(document, page.cropBox, media);
    const Rectangle common = {std::max(media.left, crop.left), std::max(media.bottom, crop.bottom),
                              std::min(media.right, crop.right), std::min(media.top, crop.top)};
    return isArea(common) ? common : media;
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
