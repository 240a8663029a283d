#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

/// The encodings of Latin text (ISO 32000-1, D.2).
enum class LatinEncoding : std::uint8_t { Standard, MacRoman, WinAnsi, PdfDoc };

/// A glyph of the Latin character set (ISO 32000-1, D.2).
struct LatinGlyph {
    std::string_view name;
    char16_t character;
    /// In each of the encodings; 0 where that has none.
    std::array<std::uint8_t, 4> codes;
    /// In Helvetica, Helvetica-Bold, Times-Roman, Times-Bold, Times-Italic and Times-BoldItalic, in
    /// thousandths of the font size. Those of slanted Helvetica are the same.
    std::array<std::uint16_t, 6> widths;
};

using LatinGlyphs = std::array<LatinGlyph, 229>;

/// All of them, in ascending order of their names.
[[nodiscard]] const LatinGlyphs& latinGlyphs() noexcept;

/// Null where the character set has none of this name, or for this character.
///@{
[[nodiscard]] const LatinGlyph* latinGlyph(std::string_view name) noexcept;
[[nodiscard]] const LatinGlyph* latinGlyph(char32_t character) noexcept;
///@}

} // namespace Libraries::Files::PDF::Tools
