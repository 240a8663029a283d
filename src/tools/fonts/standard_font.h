#pragma once

#include "tools/fonts/latin_glyphs.h"

#include <optional>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

/// One of the standard 14 fonts (ISO 32000-1, 9.6.2.2) that show Latin text. Readers have it, so
/// that documents need not say how wide its glyphs are.
struct StandardFont {
    /// How far capitals with accents reach up, and letters below the baseline down, whatever the
    /// weight and in what readers show instead; in thousandths of the font size.
    double ascent = 0, descent = 0;
    /// Where its widths stand in a glyph's; nothing where all glyphs have one width.
    std::optional<std::size_t> column;

    /// In thousandths of the font size.
    [[nodiscard]] double widthOf(const LatinGlyph& glyph) const noexcept;
};

/// What a BaseFont says.
struct FontName {
    bool subset = false;   ///< of a font that is embedded (ISO 32000-1, 9.6.4)
    bool pictures = false; ///< whatever its encoding is called, the font shows no Latin text
    std::optional<StandardFont> standard;

    /// Takes the names by which the standard fonts often go besides: Arial,Bold, CourierNewPSMT.
    [[nodiscard]] static FontName read(std::string_view baseFont) noexcept;
};

} // namespace Libraries::Files::PDF::Tools
