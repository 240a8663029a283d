#pragma once

#include "tools/fonts/text_font.h"
#include "tools/geometry.h"

#include <pdf/form.h>
#include <pdf/tools/result.h>

#include <string>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Text in the codes of a font.
using Codes = std::vector<unsigned char>;

/// One line of text, and where it begins: on the baseline.
struct TextLine {
    double x = 0, y = 0;
    Codes codes;
};

/// A text that has its place in an area.
struct TextBlock {
    double size = 0; ///< of the font, in points
    std::vector<TextLine> lines;
};

/// How a text is placed.
struct TextPlace {
    Rectangle area;
    double height = 0; ///< of the field: nothing is seen below 0 and above that
    double size = 0;   ///< of the font; 0: as large as fits
    Quadding quadding = Quadding::Left;
};

/// Places texts that are set in one font. Everything throws `std::bad_alloc`.
class TextLayout {
public:
    TextLayout(const TextFont& font, const TextPlace& place) noexcept
        : font_(font), place_(place) {}

    /// The codes for a text, line ends as line feeds; or why there are none: the font lacks a
    /// character, or they are more than 65,536.
    [[nodiscard]] static Result<Codes, std::string> encoded(const TextFont& font,
                                                            std::string_view utf8);

    /// One line, in the middle of the height. Where it is higher than the field it stands where
    /// most of what this text draws is seen.
    [[nodiscard]] TextBlock single(Codes codes) const;
    /// Lines from the top on, broken where they become too long. A line that is higher than the
    /// area stands in its middle, here and in lists.
    [[nodiscard]] TextBlock wrapped(const Codes& codes) const;
    /// Each code in the middle of one of `cells` of equal width.
    [[nodiscard]] TextBlock comb(const Codes& codes, std::uint64_t cells) const;
    /// Lines of a list from the top on, each as it is.
    [[nodiscard]] TextBlock list(std::vector<Codes> lines) const;
    /// The size of a list's text, where 0 says none.
    [[nodiscard]] static double listSize(double size) noexcept;
    /// The distance of two lines for a font size.
    [[nodiscard]] static double leading(double size) noexcept;

private:
    [[nodiscard]] double widthOf(const Codes& codes, double size) const noexcept;
    [[nodiscard]] double middleBaseline(const Codes& codes, double size) const noexcept;
    [[nodiscard]] double startOf(const Codes& codes, double size) const noexcept;
    [[nodiscard]] std::size_t mostLines(double size) const noexcept;
    [[nodiscard]] std::vector<Codes> broken(const Codes& codes, double size) const;
    void breakParagraph(const Codes& paragraph, double size, std::vector<Codes>& lines) const;
    [[nodiscard]] TextBlock stacked(std::vector<Codes> lines, double size) const;

    const TextFont& font_;
    TextPlace place_;
};

} // namespace Libraries::Files::PDF::Tools
