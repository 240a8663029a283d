#include "tools/fonts/standard_font.h"

#include <algorithm>

namespace Libraries::Files::PDF::Tools {

namespace {

using namespace std::string_view_literals;

constexpr StandardFont helvetica = {950, -225, 0};
constexpr StandardFont times = {935, -220, 2};
constexpr StandardFont courier = {840, -220, std::nullopt};

constexpr std::pair<std::string_view, StandardFont> families[] = {
    {"Arial", helvetica},     {"Helvetica", helvetica}, {"Times", times},
    {"TimesNewRoman", times}, {"Courier", courier},     {"CourierNew", courier},
};
constexpr std::string_view pictorial[] = {"Symbol", "Webdings", "Wingdings", "ZapfDingbats"};

struct Style {
    std::string_view name;
    bool bold, slanted;
};
constexpr Style styles[] = {
    {"", false, false},         {"Roman", false, false},     {"Regular", false, false},
    {"Bold", true, false},      {"Italic", false, true},     {"Oblique", false, true},
    {"BoldItalic", true, true}, {"BoldOblique", true, true},
};

void dropEnd(std::string_view& text, std::string_view end) {
    if (text.ends_with(end)) text.remove_suffix(end.size());
}

bool hasSubsetTag(std::string_view baseFont) {
    constexpr std::size_t length = 6;
    const auto isCapital = [](char letter) { return letter >= 'A' && letter <= 'Z'; };
    return baseFont.size() > length && baseFont[length] == '+' &&
           std::ranges::all_of(baseFont.substr(0, length), isCapital);
}

std::optional<StandardFont> standardFont(std::string_view family, std::string_view style) {
    const auto* const font =
        std::ranges::find(families, family, [](auto& row) { return row.first; });
    const auto* const look = std::ranges::find(styles, style, &Style::name);
    if (font == std::end(families) || look == std::end(styles)) return std::nullopt;
    StandardFont found = font->second;
    if (!found.column) return found;
    const bool slantHasWidths = *found.column == *times.column;
    *found.column += (look->bold ? 1U : 0U) + (look->slanted && slantHasWidths ? 2U : 0U);
    return found;
}

} // namespace

double StandardFont::widthOf(const LatinGlyph& glyph) const noexcept {
    constexpr double fixed = 600;
    return column ? glyph.widths[*column] : fixed;
}

FontName FontName::read(std::string_view baseFont) noexcept {
    FontName name;
    name.subset = hasSubsetTag(baseFont);
    if (name.subset) baseFont.remove_prefix(baseFont.find('+') + 1);
    const std::size_t end = std::min(baseFont.find_first_of(",-"), baseFont.size());
    std::string_view family = baseFont.substr(0, end);
    std::string_view style = baseFont.substr(std::min(end + 1, baseFont.size()));
    dropEnd(family, "MT");
    dropEnd(family, "PS");
    dropEnd(style, "MT");
    name.pictures = std::ranges::find(pictorial, family) != std::end(pictorial);
    name.standard = standardFont(family, style);
    return name;
}

} // namespace Libraries::Files::PDF::Tools
