#include "tools/forms/text_layout.h"

#include "tools/forms/form_text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr unsigned char newline = '\n';
constexpr unsigned char space = ' ';
constexpr double smallest = 4; // below that nobody reads
constexpr double usual = 12;   // of several lines, where the field does not say
constexpr double step = 0.5;
constexpr std::size_t longest = 65536; // codes that any field has room for
constexpr double accents = 200;        // what those of capitals take, in thousandths of the size

/// Whether a character has more than a capital letter above it.
bool isHigh(char32_t character) noexcept {
    constexpr std::u32string_view plain = U"ÆÇÐ×ØÞßŁłŒœšžı";
    const bool capital = character >= 0xC0 && character <= 0xDE;
    const bool other = character >= 0x100 && character < 0x2000;
    return (capital || other) && plain.find(character) == plain.npos;
}

/// Whether it reaches below the baseline.
bool isDeep(char32_t character) noexcept {
    constexpr std::u32string_view deep = U"gjpqyQ,;()[]{}|$@_/\\§¶ƒçÇþýÿµ¸‚„¦";
    constexpr std::u32string_view flat = U"ŁłŒœŠšŽžŸı";
    const bool other = character >= 0x100 && character < 0x2000;
    return deep.find(character) != deep.npos || (other && flat.find(character) == flat.npos);
}

/// The code for a character of a line. A code that is a line feed would end a line where the text
/// does not.
std::optional<unsigned char> codeInLine(const TextFont& font, char32_t character) noexcept {
    const auto code = font.codeOf(character == '\t' ? U' ' : character);
    return code == newline ? std::nullopt : code;
}

std::string lacks(char32_t character) {
    char text[32];
    std::snprintf(text, sizeof text, "its font lacks U+%04X", static_cast<unsigned>(character));
    return text;
}

} // namespace

double TextLayout::listSize(double size) noexcept {
    return size > 0 ? size : usual;
}

double TextLayout::leading(double size) noexcept {
    constexpr double factor = 1.15;
    return size * factor;
}

Result<Codes, std::string> TextLayout::encoded(const TextFont& font, std::string_view utf8) {
    using No = Unexpected<std::string>;
    Codes codes;
    char32_t before = 0;
    for (char32_t character : charactersOf(utf8)) {
        const bool secondOfTwo = before == '\r' && character == '\n';
        before = character;
        if (secondOfTwo) continue;
        if (character == '\r' || character == '\n') {
            codes.push_back(newline);
            continue;
        }
        const auto code = codeInLine(font, character);
        if (!code) return No(lacks(character));
        if (codes.size() == longest) return No("it is too long");
        codes.push_back(*code);
    }
    return codes;
}

double TextLayout::widthOf(const Codes& codes, double size) const noexcept {
    double width = 0;
    for (const unsigned char code : codes)
        width += font_.widthOf(code);
    return width * size / 1000;
}

double TextLayout::startOf(const Codes& codes, double size) const noexcept {
    const double rest = place_.area.width() - widthOf(codes, size);
    // What is too long begins where its reader begins.
    if (rest < 0 || place_.quadding == Quadding::Left || place_.quadding == Quadding::NotSet) {
        return place_.area.left;
    }
    return place_.area.left + (place_.quadding == Quadding::Centered ? rest / 2 : rest);
}

double TextLayout::middleBaseline(const Codes& codes, double size) const noexcept {
    const double below = (place_.area.height() - font_.lineHeight(size)) / 2;
    const double middle = place_.area.bottom + below - font_.descent() * size / 1000;
    if (font_.lineHeight(size) <= place_.height) return middle;
    const auto some = [&](auto is) {
        return std::ranges::any_of(codes, [&](auto code) { return is(font_.characterOf(code)); });
    };
    const double deep = some(isDeep) ? font_.descent() : 0;
    const double high = font_.ascent() - (some(isHigh) ? 0 : accents);
    const double lowest = -deep * size / 1000;
    const double highest = place_.height - high * size / 1000;
    if (lowest > highest) return (lowest + highest) / 2;
    return std::clamp(middle, lowest, highest);
}

TextBlock TextLayout::single(Codes codes) const {
    std::ranges::replace(codes, newline, space);
    double size = place_.size;
    if (size <= 0) {
        const double wide = widthOf(codes, 1);
        size = place_.area.height() / font_.lineHeight(1);
        if (wide > 0) size = std::min(size, place_.area.width() / wide);
        size = std::max(std::floor(size * 100) / 100, smallest);
    }
    TextBlock block{size, {}};
    if (codes.empty()) return block;
    const double x = startOf(codes, size);
    const double y = middleBaseline(codes, size);
    block.lines.push_back({x, y, std::move(codes)});
    return block;
}

TextBlock TextLayout::wrapped(const Codes& codes) const {
    if (place_.size > 0) return stacked(broken(codes, place_.size), place_.size);
    for (double size = usual; size > smallest; size -= step) {
        auto lines = broken(codes, size);
        const double more = lines.empty() ? 0 : static_cast<double>(lines.size() - 1);
        const double height = font_.lineHeight(size) + leading(size) * more;
        if (height <= place_.area.height()) return stacked(std::move(lines), size);
    }
    return stacked(broken(codes, smallest), smallest);
}

/// Lines that are looked at: more than are seen, so that those who count them find them too many.
std::size_t TextLayout::mostLines(double size) const noexcept {
    constexpr double most = 65536;
    constexpr double unseen = 4;
    const double seen = std::max(place_.area.height(), 0.0) / leading(size);
    return static_cast<std::size_t>(std::min(seen, most) + unseen);
}

std::vector<Codes> TextLayout::broken(const Codes& codes, double size) const {
    std::vector<Codes> lines;
    for (auto from = codes.begin(); from != codes.end() && lines.size() < mostLines(size);) {
        const auto to = std::find(from, codes.end(), newline);
        breakParagraph(Codes(from, to), size, lines);
        from = to == codes.end() ? to : to + 1;
    }
    return lines;
}

/// Breaks behind spaces, which may stand out, or within a word that is too long for a line.
void TextLayout::breakParagraph(const Codes& paragraph, double size,
                                std::vector<Codes>& lines) const {
    const double room = place_.area.width() * 1000 / size;
    std::size_t start = 0;
    std::size_t afterSpace = 0;
    double width = 0;
    for (std::size_t at = 0; at < paragraph.size(); ++at) {
        width += font_.widthOf(paragraph[at]);
        if (paragraph[at] == space) {
            afterSpace = at + 1;
        } else if (width > room && at > start) {
            if (lines.size() >= mostLines(size)) return;
            const std::size_t end = afterSpace > start ? afterSpace : at;
            lines.emplace_back(paragraph.begin() + static_cast<std::ptrdiff_t>(start),
                               paragraph.begin() + static_cast<std::ptrdiff_t>(end));
            start = end;
            width = 0;
            for (std::size_t index = start; index <= at; ++index)
                width += font_.widthOf(paragraph[index]);
        }
    }
    lines.emplace_back(paragraph.begin() + static_cast<std::ptrdiff_t>(start), paragraph.end());
}

TextBlock TextLayout::stacked(std::vector<Codes> lines, double size) const {
    TextBlock block{size, {}};
    const bool fits = font_.lineHeight(size) <= place_.area.height();
    double y = place_.area.top - font_.ascent() * size / 1000;
    if (!fits && !lines.empty()) y = middleBaseline(lines.front(), size);
    for (Codes& line : lines) {
        if (y + size < place_.area.bottom) break; // nobody sees it
        while (!line.empty() && line.back() == space)
            line.pop_back();
        const double x = startOf(line, size);
        if (!line.empty()) block.lines.push_back({x, y, std::move(line)});
        y -= leading(size);
    }
    return block;
}

TextBlock TextLayout::list(std::vector<Codes> lines) const {
    for (Codes& line : lines)
        std::ranges::replace(line, newline, space);
    return stacked(std::move(lines), listSize(place_.size));
}

TextBlock TextLayout::comb(const Codes& codes, std::uint64_t cells) const {
    const double cell = place_.area.width() / static_cast<double>(cells);
    double size = place_.size;
    if (size <= 0)
        size = std::max(std::min(place_.area.height() / font_.lineHeight(1), cell), smallest);
    TextBlock block{size, {}};
    const double y = middleBaseline(codes, size);
    const std::uint64_t used = std::min<std::uint64_t>(codes.size(), cells);
    const std::uint64_t rest = cells - used;
    const std::uint64_t first = place_.quadding == Quadding::Right      ? rest
                                : place_.quadding == Quadding::Centered ? rest / 2
                                                                        : 0;
    for (std::uint64_t index = 0; index < used; ++index) {
        const Codes code(1, codes[index] == newline ? space : codes[index]);
        const double middle = place_.area.left + cell * (static_cast<double>(first + index) + 0.5);
        block.lines.push_back({middle - widthOf(code, size) / 2, y, code});
    }
    return block;
}

} // namespace Libraries::Files::PDF::Tools
