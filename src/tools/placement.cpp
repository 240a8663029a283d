#include "tools/placement.h"

#include "tools/page_view.h"

#include <algorithm>

namespace Libraries::Files::PDF::Tools {

namespace {

/// From the upright form into the middle of the upright page.
Matrix centred(const Rectangle& form, const Rectangle& page) noexcept {
    const double scale = std::min(page.width() / form.width(), page.height() / form.height());
    return {scale,
            0,
            0,
            scale,
            (page.left + page.right - scale * (form.left + form.right)) / 2,
            (page.bottom + page.top - scale * (form.bottom + form.top)) / 2};
}

/// What undoes a turn, which can always be undone.
Matrix back(const Matrix& turn) noexcept {
    return turn.inverse().value_or(Matrix());
}

} // namespace

View viewOf(const Document& document, const Page& page) {
    const Ref<Array> box = visibleBox(document, page);
    return {rectangleOf(document, box).value_or(Rectangle()), uprightTurn(page)};
}

std::string placed(std::string_view name, const View& form, const View& page, bool asIs) {
    const Matrix matrix =
        asIs
            ? back(form.turn)
            : centred(form.turn.bounds(form.box), page.turn.bounds(page.box)).then(back(page.turn));
    // Readers of tagged documents pass over an artifact (ISO 32000-1, 14.8.2.2).
    return "/Artifact BMC\nq\n" + spelled(matrix) + " cm\n/" + std::string(name) + " Do\nQ\nEMC\n";
}

} // namespace Libraries::Files::PDF::Tools
