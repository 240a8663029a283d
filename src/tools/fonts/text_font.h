#pragma once

#include <pdf/document.h>

#include <array>
#include <optional>

namespace Libraries::Files::PDF::Tools {

/// A simple font (ISO 32000-1, 9.6) as far as Latin text is set in it: which code shows a
/// character, and how much room that takes. Font programs are not looked into.
class TextFont {
public:
    /// What each code shows, 0 for nothing, and how wide that is.
    ///@{
    using Characters = std::array<char32_t, 256>;
    using Widths = std::array<double, 256>;
    ///@}

    /// The font of a dictionary; nothing where text cannot be set in it here: composite and Type 3
    /// fonts, Symbol and ZapfDingbats, a font without Widths that is none of the standard 14, null.
    /// Throws `std::bad_alloc`.
    [[nodiscard]] static std::optional<TextFont> read(const Document& document,
                                                      const Ref<Dictionary>& font);
    /// Helvetica in WinAnsiEncoding: what fields without a font get.
    [[nodiscard]] static TextFont helvetica();
    /// The dictionary for it, a new one. Throws `std::bad_alloc`.
    [[nodiscard]] static Ref<Dictionary> helveticaDictionary();

    /// The code that shows a character (a Unicode scalar value), the lowest from 32 on where there
    /// are several; nothing where the font has none. What looks the same shares a glyph: a no-break
    /// space is a space, a soft hyphen a hyphen.
    [[nodiscard]] std::optional<unsigned char> codeOf(char32_t character) const noexcept;
    /// What a code shows; 0 for nothing.
    [[nodiscard]] char32_t characterOf(unsigned char code) const noexcept {
        return characters_[code];
    }
    /// In thousandths of the font size; 0 where the font does not say.
    [[nodiscard]] double widthOf(unsigned char code) const noexcept { return widths_[code]; }
    /// How far glyphs reach above the baseline, capitals with accents too, in thousandths of the
    /// font size; positive.
    [[nodiscard]] double ascent() const noexcept { return ascent_; }
    /// How far they reach below it; negative or 0.
    [[nodiscard]] double descent() const noexcept { return descent_; }
    /// Both together, for a font size: the height of a line, in the unit of the size.
    [[nodiscard]] double lineHeight(double size) const noexcept {
        return (ascent_ - descent_) * size / 1000;
    }

private:
    TextFont(const Characters& characters, const Widths& widths) noexcept;
    /// Takes from a descriptor (ISO 32000-1, 9.8) what makes sense there.
    void readReach(const Document& document, const Ref<Dictionary>& descriptor);

    Characters characters_;
    Widths widths_;
    double ascent_ = 950, descent_ = -225; // wide enough for most
};

} // namespace Libraries::Files::PDF::Tools
