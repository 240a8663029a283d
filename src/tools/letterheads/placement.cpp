#include "tools/letterheads/placement.h"

#include "tools/pages/page_view.h"

#include <algorithm>
#include <cmath>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Points by which one size of paper is told differently: 841.89 and 842.
constexpr double rounding = 1;

/// From the upright form into the middle of the upright page; as it is where the two are one size.
Matrix centred(const Rectangle& form, const Rectangle& page) noexcept {
    if (std::abs(form.width() - page.width()) < rounding &&
        std::abs(form.height() - page.height()) < rounding) {
        return {1, 0, 0, 1, page.left - form.left, page.bottom - form.bottom};
    }
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
    return {visibleBox(document, page), uprightTurn(page)};
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
