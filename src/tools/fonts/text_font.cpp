#include "tools/fonts/text_font.h"

#include "spelling/digits.h"
#include "tools/fonts/standard_font.h"
#include "tools/geometry.h"
#include "tools/new_values.h"
#include "tools/references.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

namespace {

using Characters = TextFont::Characters;
using Widths = TextFont::Widths;

constexpr std::pair<std::string_view, LatinEncoding> encodings[] = {
    {"WinAnsiEncoding", LatinEncoding::WinAnsi},
    {"MacRomanEncoding", LatinEncoding::MacRoman},
    {"StandardEncoding", LatinEncoding::Standard},
    {"PDFDocEncoding", LatinEncoding::PdfDoc},
};

/// Glyph names stand for one character, and some for a second one that looks the same.
constexpr std::pair<char32_t, char32_t> twins[] = {
    {0x00A0, ' '},    {0x00AD, '-'},    {0x02C9, 0x00AF},
    {0x03BC, 0x00B5}, {0x2215, 0x2044}, {0x2219, 0x00B7},
};

/// The one of characters with the same glyph that fonts are known by here.
char32_t shared(char32_t character) noexcept {
    for (const auto& [twin, first] : twins) {
        if (character == twin) return first;
    }
    return character;
}

/// Nothing is as wide in earnest; what is, or less than nothing, counts as not there.
double plausible(double width) noexcept {
    constexpr double most = 10000;
    return width > 0 && width <= most ? width : 0;
}

std::optional<double> numberIn(const Document& document, const Ref<Dictionary>& dictionary,
                               std::string_view key) {
    return valueOf(followEntry(document, dictionary, key));
}

Characters charactersOf(LatinEncoding encoding) noexcept {
    Characters characters = {};
    for (const LatinGlyph& glyph : latinGlyphs()) {
        const unsigned char code = glyph.codes[static_cast<std::size_t>(encoding)];
        if (code != 0) characters[code] = glyph.character;
    }
    return characters;
}

/// "uni20AC", "u20AC", "u1F600"; 0 for anything else.
char32_t characterSpelled(std::string_view name) noexcept {
    constexpr char32_t last = 0x10FFFF;
    const bool four = name.starts_with("uni");
    if (!name.starts_with('u')) return 0;
    name.remove_prefix(four ? 3 : 1);
    if (name.size() < 4 || name.size() > (four ? 4 : 6)) return 0;
    if (name.find_first_not_of(Spelling::hexDigits) != name.npos) return 0;
    std::uint32_t character = 0;
    std::from_chars(name.data(), name.data() + name.size(), character, 16);
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    return surrogate || character > last ? 0 : shared(character);
}

char32_t characterOf(const Name& glyphName) noexcept {
    const Ref<Host::String> text = glyphName.name();
    const std::string_view name = text ? text->narrow() : std::string_view();
    const LatinGlyph* const glyph = latinGlyph(name);
    return glyph != nullptr ? glyph->character : characterSpelled(name);
}

/// A name that is not known here hides what the code showed: nobody can say what it shows now. Many
/// fonts may share a list: what is longer than a number and a name for each code, twice over, says
/// nothing sensible.
void applyDifferences(const Document& document, const Array& differences, Characters& characters) {
    constexpr std::uint64_t most = 1024;
    std::uint64_t code = 0;
    for (std::uint64_t index = 0; index < std::min(differences.size(), most); ++index) {
        const Ref<Value> element = follow(document, differences.get(index));
        const Ref<Name> name = Host::cast<Name>(element);
        if (const Ref<Number> number = Host::cast<Number>(element)) {
            code = static_cast<std::uint64_t>(number->integer()); // negative: behind the last
        } else if (name && code < characters.size()) {
            characters[code++] = characterOf(*name);
        }
    }
}

Characters encodingOf(const Ref<Value>& value, bool standardOtherwise) {
    for (const auto& [name, encoding] : encodings) {
        if (isName(value, name)) return charactersOf(encoding);
    }
    // Under an encoding of another name the same codes show other glyphs.
    if (!standardOtherwise || Host::cast<Name>(value)) return {};
    return charactersOf(LatinEncoding::Standard);
}

/// `standardOtherwise` tells whether the font's own encoding is known to be that.
Characters charactersOf(const Document& document, const Ref<Dictionary>& font,
                        bool standardOtherwise) {
    const Ref<Value> encoding = followEntry(document, font, "Encoding");
    const Ref<Dictionary> dictionary = Host::cast<Dictionary>(encoding);
    if (!dictionary) return encodingOf(encoding, standardOtherwise);
    Characters characters =
        encodingOf(followEntry(document, dictionary, "BaseEncoding"), standardOtherwise);
    const auto differences = followEntry<Array>(document, dictionary, "Differences");
    if (differences) applyDifferences(document, *differences, characters);
    return characters;
}

/// Nothing where the font does not say. LastChar tells no more than the length of Widths.
std::optional<Widths> widthsOf(const Document& document, const Ref<Dictionary>& font,
                               double missing) {
    const auto listed = followEntry<Array>(document, font, "Widths");
    const auto first = followEntry<Number>(document, font, "FirstChar");
    Widths widths;
    widths.fill(missing);
    const auto end = static_cast<std::int64_t>(widths.size());
    if (!listed || !first || first->integer() < 0 || first->integer() >= end) return std::nullopt;
    auto code = static_cast<std::size_t>(first->integer());
    for (std::uint64_t index = 0; index < listed->size() && code < widths.size(); ++index)
        widths[code++] = plausible(valueOf(follow(document, listed->get(index))).value_or(0));
    return widths;
}

Widths widthsOf(const StandardFont& font, const Characters& characters) noexcept {
    Widths widths = {};
    for (std::size_t code = 0; code < widths.size(); ++code) {
        const LatinGlyph* const glyph = latinGlyph(characters[code]);
        if (glyph != nullptr) widths[code] = font.widthOf(*glyph);
    }
    return widths;
}

bool isSymbolic(const Document& document, const Ref<Dictionary>& descriptor) {
    constexpr unsigned symbolic = 4;
    const double flags = numberIn(document, descriptor, "Flags").value_or(0);
    return flags > 0 && flags <= UINT32_MAX && (static_cast<std::uint32_t>(flags) & symbolic) != 0;
}

bool isEmbedded(const Document& document, const Ref<Dictionary>& descriptor) {
    constexpr std::string_view programs[] = {"FontFile", "FontFile2", "FontFile3"};
    return std::ranges::any_of(programs, [&](std::string_view key) {
        return entryOf(document, descriptor, key) != nullptr;
    });
}

bool isSimple(const Document& document, const Ref<Dictionary>& font) {
    const Ref<Value> kind = followEntry(document, font, "Subtype");
    return isName(kind, "Type1") || isName(kind, "TrueType") || isName(kind, "MMType1");
}

} // namespace

TextFont::TextFont(const Characters& characters, const Widths& widths) noexcept
    : characters_(characters), widths_(widths) {
    // The glyphs that a subset leaves out often have no width, or 0: then it shows as much.
    for (std::size_t code = 0; code < characters_.size(); ++code) {
        if (widths_[code] == 0) characters_[code] = 0;
    }
}

/// Producers mean all kinds of things by these entries. Where Ascent leaves the accents of capitals
/// out they are added, and nothing is larger than the box of all glyphs.
void TextFont::readReach(const Document& document, const Ref<Dictionary>& descriptor) {
    constexpr double most = 2000, accents = 215, capitals = 718; // in a usual font
    const double ascent = numberIn(document, descriptor, "Ascent").value_or(0);
    const double descent = std::abs(numberIn(document, descriptor, "Descent").value_or(0));
    const double height = numberIn(document, descriptor, "CapHeight").value_or(0);
    const bool isHeight = height >= 400 && height <= 900;
    const bool isAscent = ascent > 0 && ascent <= most;
    if (isAscent || isHeight) {
        ascent_ = accents + (isHeight ? height : std::min(ascent, capitals));
        if (isAscent) ascent_ = std::max(ascent_, ascent);
    }
    if (descent > 0 && descent <= most) descent_ = -descent;
    const auto box = rectangleOf(document, followEntry(document, descriptor, "FontBBox"));
    if (!box || box->top < 400 || box->bottom > 0) return;
    ascent_ = std::min(ascent_, box->top);
    descent_ = std::max(descent_, box->bottom);
}

std::optional<TextFont> TextFont::read(const Document& document, const Ref<Dictionary>& font) {
    const auto baseFont = followEntry<Name>(document, font, "BaseFont");
    const Ref<Host::String> text = baseFont ? baseFont->name() : nullptr;
    const FontName name = FontName::read(text ? text->narrow() : std::string_view());
    if (!isSimple(document, font) || name.pictures) return std::nullopt;

    const auto descriptor = followEntry<Dictionary>(document, font, "FontDescriptor");
    const bool embedded = name.subset || isEmbedded(document, descriptor);
    const bool readersOwn = name.standard && !embedded;
    const Characters characters =
        charactersOf(document, font, readersOwn || !isSymbolic(document, descriptor));
    // What an embedded font has no width for it hardly has a glyph for.
    const auto missing = embedded ? std::nullopt : numberIn(document, descriptor, "MissingWidth");
    std::optional<Widths> widths = widthsOf(document, font, plausible(missing.value_or(0)));
    if (!widths && name.standard) widths = widthsOf(*name.standard, characters);
    if (!widths) return std::nullopt;

    TextFont result(characters, *widths);
    if (name.standard) {
        result.ascent_ = name.standard->ascent;
        result.descent_ = name.standard->descent;
    }
    if (!readersOwn) result.readReach(document, descriptor);
    return result;
}

TextFont TextFont::helvetica() {
    const StandardFont font = FontName::read("Helvetica").standard.value();
    const Characters characters = charactersOf(LatinEncoding::WinAnsi);
    TextFont result(characters, widthsOf(font, characters));
    result.ascent_ = font.ascent;
    result.descent_ = font.descent;
    return result;
}

Ref<Dictionary> TextFont::helveticaDictionary() {
    return newDictionary({{"Type", newName("Font")},
                          {"Subtype", newName("Type1")},
                          {"BaseFont", newName("Helvetica")},
                          {"Encoding", newName("WinAnsiEncoding")}});
}

std::optional<unsigned char> TextFont::codeOf(char32_t character) const noexcept {
    constexpr std::size_t first = 32;
    const char32_t wanted = shared(character);
    for (std::size_t place = 0; wanted != 0 && place < characters_.size(); ++place) {
        const std::size_t code = (first + place) % characters_.size();
        if (characters_[code] == wanted) return static_cast<unsigned char>(code);
    }
    return std::nullopt;
}

} // namespace Libraries::Files::PDF::Tools
