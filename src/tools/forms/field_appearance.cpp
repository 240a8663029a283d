#include "tools/forms/field_appearance.h"

#include "spelling/digits.h"
#include "tools/new_values.h"
#include "tools/references.h"

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Bytes that are worth the time and the entry that deflating takes.
constexpr std::size_t shortest = 512;

TextPlace textPlace(const FieldEntries& widget, const WidgetFrame& frame, const Rectangle& area,
                    double size) {
    const std::int64_t quadding = widget.number("Q");
    const bool known = quadding >= 0 && quadding <= 2;
    return {area, frame.height(), size,
            known ? static_cast<Quadding>(quadding + 1) : Quadding::Left};
}

std::string hexOf(const Codes& codes) {
    std::string text = "<";
    for (const unsigned char code : codes)
        Spelling::appendHex(text, code);
    return text + ">";
}

std::string textOperators(const TextBlock& block, const TextStyle& style) {
    std::string text =
        "BT\n" + style.colour + "/" + style.fontName + " " + spelled(block.size) + " Tf\n";
    for (const TextLine& line : block.lines) {
        text += spelled(Matrix{1, 0, 0, 1, line.x, line.y}) + " Tm " + hexOf(line.codes) + " Tj\n";
    }
    return text + "ET\n";
}

std::string rectangleOperands(const Rectangle& box) {
    return spelled(box.left) + " " + spelled(box.bottom) + " " + spelled(box.width()) + " " +
           spelled(box.height());
}

/// Where a text may be drawn: within the border, but over the whole height where its lines need
/// that.
Rectangle textClip(const WidgetFrame& frame, double lineHeight) {
    Rectangle area = frame.inside();
    if (lineHeight <= area.height()) return area;
    area.bottom = 0;
    area.top = frame.height();
    return area;
}

/// The ground of an option that is selected.
std::string marked(const Rectangle& area) {
    return "0.6 0.757 0.855 rg " + rectangleOperands(area) + " re f\n";
}

/// How many characters a comb has; 0 where the field is none.
std::uint64_t combCells(const FieldEntries& field) {
    if (field.kind() != Field::Kind::Text || !field.has(FieldFlags::comb)) return 0;
    const bool other = field.has(FieldFlags::multiline) || field.has(FieldFlags::password) ||
                       field.has(FieldFlags::fileSelect);
    const std::int64_t cells = field.number("MaxLen");
    constexpr std::int64_t most = 1000;
    return other || cells < 1 || cells > most ? 0 : static_cast<std::uint64_t>(cells);
}

/// The lines between the cells of a comb, where it has a border.
std::string combLines(const WidgetFrame& frame, std::uint64_t cells) {
    if (frame.borderColour().empty() || frame.borderWidth() == 0) return {};
    const Rectangle area = frame.inside();
    const std::string height = spelled(frame.height());
    std::string text = frame.borderColour() + spelled(frame.borderWidth()) + " w\n";
    for (std::uint64_t cell = 1; cell < cells; ++cell) {
        const double part = static_cast<double>(cell) / static_cast<double>(cells);
        const std::string x = spelled(area.left + area.width() * part);
        text.append(x).append(" 0 m ").append(x).append(" ").append(height).append(" l S\n");
    }
    return text;
}

TextBlock laidOut(const FieldEntries& widget, const WidgetFrame& frame, const TextFont& font,
                  Codes codes, double size) {
    if (const std::uint64_t cells = combCells(widget); cells != 0) {
        return TextLayout(font, textPlace(widget, frame, frame.inside(), size)).comb(codes, cells);
    }
    const bool multiline = widget.kind() == Field::Kind::Text && widget.has(FieldFlags::multiline);
    const TextLayout layout(font, textPlace(widget, frame, textArea(frame, multiline), size));
    return multiline ? layout.wrapped(codes) : layout.single(std::move(codes));
}

} // namespace

Rectangle textArea(const WidgetFrame& frame, bool stacked) {
    Rectangle area = frame.inside();
    const double rim =
        std::min({std::max(frame.borderWidth(), 1.0), area.width() / 4, area.height() / 4});
    area.left += rim;
    area.right -= rim;
    if (stacked) {
        area.bottom += rim;
        area.top -= rim;
    }
    return area;
}

Filled FieldAppearances::showText(const FieldEntries& widget, std::string_view text) {
    const WidgetFrame frame(document(), widget.own());
    if (!frame.hasArea()) return {};
    const TextStyle& style = shared_.style(widget);
    shared_.draw(text.size() + style.fontName.size());
    const auto font = fonts_.find(widget, style.fontName);
    if (!font) return {true, font.error()};
    auto codes = TextLayout::encoded(font->font, text);
    if (!codes) return {true, codes.error()};
    if (widget.kind() == Field::Kind::Text && widget.has(FieldFlags::password)) {
        const auto star = TextLayout::encoded(font->font, "*");
        if (!star) return {true, star.error()};
        std::ranges::fill(*codes, star->front());
    }
    const std::uint64_t cells = combCells(widget);
    const TextBlock block = laidOut(widget, frame, font->font, *std::move(codes), style.size);
    draw(widget, frame, cells == 0 ? "" : combLines(frame, cells), block, *font);
    return {};
}

Filled FieldAppearances::showList(const FieldEntries& widget, const Selection& selection) {
    const WidgetFrame frame(document(), widget.own());
    if (!frame.hasArea()) return {};
    const TextStyle& style = shared_.style(widget);
    const auto font = fonts_.find(widget, style.fontName);
    if (!font) return {true, font.error()};
    const Rectangle area = textArea(frame, true);
    const TextLayout layout(font->font, textPlace(widget, frame, area, style.size));
    const double line = TextLayout::leading(TextLayout::listSize(style.size));
    const auto& options = shared_.options(widget).list();
    std::vector<Codes> texts;
    std::string marks;
    double top = area.top;
    for (std::size_t index = listTop(widget, selection);
         index < options.size() && top > area.bottom; ++index) {
        constexpr std::size_t around = 64; // what is drawn for an option beside its text
        shared_.draw(options[index].text.size() + around);
        auto codes = TextLayout::encoded(font->font, options[index].text);
        if (!codes) return {true, codes.error()};
        texts.push_back(*std::move(codes));
        const Rectangle behind{frame.inside().left, top - line, frame.inside().right, top};
        if (selection.values.contains(options[index].value)) marks += marked(behind);
        top = behind.bottom;
    }
    draw(widget, frame, marks, layout.list(std::move(texts)), *font);
    return {};
}

std::size_t FieldAppearances::listTop(const FieldEntries& widget, const Selection& selection) {
    const ChoiceOptions& options = shared_.options(widget);
    const auto given = static_cast<std::uint64_t>(widget.number("TI")); // negative: beyond the last
    const std::size_t top = given < options.list().size() ? given : 0;
    const auto first = shared_.firstOf(options, selection);
    if (!first) return top;
    const double height = textArea(WidgetFrame(document(), widget.own()), true).height();
    const double line = TextLayout::leading(TextLayout::listSize(shared_.style(widget).size));
    const auto lines = static_cast<std::size_t>(std::clamp(height / line, 1.0, 1e6));
    if (*first < top) return *first;
    return std::max(top, *first + 1 - std::min(lines, *first + 1));
}

void FieldAppearances::draw(const FieldEntries& widget, const WidgetFrame& frame,
                            const std::string& ground, const TextBlock& block,
                            const FormFont& font) {
    const TextStyle& style = shared_.style(widget);
    const Rectangle area = textClip(frame, font.font.lineHeight(block.size));
    const std::string operators = ground + textOperators(block, style);
    shared_.draw(operators.size());
    const std::string content = frame.rectangle() + "/Tx BMC\nq\n" + rectangleOperands(area) +
                                " re W n\n" + operators + "Q\nEMC\n";
    const Ref<Dictionary> fonts = newDictionary({{style.fontName, font.entry}});
    setNormal(widget.own(), stream(frame, content, newDictionary({{"Font", fonts}})));
}

Ref<Value> FieldAppearances::stream(const WidgetFrame& frame, const std::string& content,
                                    const Ref<Dictionary>& resources) {
    const bool isLong = content.size() > shortest;
    const Ref<Stream> stream = newStream(content, isLong ? Storing::Deflated : Storing::Plain);
    frame.describe(stream->dict());
    put(stream->dict(), "Resources", resources);
    return changes_.add(stream);
}

/// Other looks of the widget, as for a pressed button, show the former value. What stands behind a
/// reference may be another widget's as well.
void FieldAppearances::setNormal(const Ref<Dictionary>& widget, const Ref<Value>& looks) {
    const auto own = Host::cast<Dictionary>(findEntry(widget, "AP"));
    if (!own) return changes_.set(widget, "AP", newDictionary({{"N", looks}}));
    changes_.set(own, "N", looks);
    changes_.drop(own, "D");
    changes_.drop(own, "R");
}

void FieldAppearances::provideFor(const FieldEntries& field) {
    fonts_.provideMarks(field);
    if (!field.find("DA")) changes_.set(field.form(), "DA", newText("/Helv 0 Tf 0 g"));
}

} // namespace Libraries::Files::PDF::Tools
