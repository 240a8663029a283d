#include "tools/failure.h"
#include "tools/forms/field_appearance.h"
#include "tools/forms/form_text.h"
#include "tools/new_values.h"
#include "tools/references.h"

#include <algorithm>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Some producers name their states and leave the looks to viewers: an empty dictionary is none.
bool hasStream(const Document& document, const Ref<Dictionary>& states, std::string_view state) {
    return followEntry<Stream>(document, states, state) != nullptr;
}

/// An entry of MK (ISO 32000-1, table 189).
Ref<Value> characteristic(const FieldEntries& widget, std::string_view key) {
    return followEntry(widget.document(), Host::cast<Dictionary>(widget.find("MK")), key);
}

std::string captionOf(const FieldEntries& widget) {
    return textOf(characteristic(widget, "CA"));
}

/// Whether a push button shows no text beside its icon.
bool isIconOnly(const FieldEntries& widget) {
    const auto place = Host::cast<Number>(characteristic(widget, "TP"));
    return place && place->integer() == 1;
}

/// What a check box or radio button looks like.
struct ButtonDrawing {
    ButtonDrawing(const FieldEntries& widget, const WidgetFrame& frame, const std::string& style,
                  const std::string& colour) {
        const bool radio = widget.has(FieldFlags::radio);
        const char mark = style.size() == 1 ? style.front() : radio ? 'l' : '4';
        hidden = radio && mark == 'l' ? frame.circle() : frame.rectangle();
        shown = hidden + colour + buttonMark(mark, frame.inside());
    }

    std::string hidden, shown;
};

} // namespace

void FieldAppearances::showStates(const FieldEntries& widget, std::string_view state, bool whole) {
    const Ref<Dictionary> states = stateLooks(document(), widget.own());
    const bool hasOff = hasStream(document(), states, off);
    if (hasStream(document(), states, state) && (hasOff || !whole)) return;
    const WidgetFrame frame(document(), widget.own());
    const std::string style = captionOf(widget);
    shared_.draw(state.size() + style.size());
    const ButtonDrawing drawing(widget, frame, style, shared_.style(widget).colour);
    const Ref<Dictionary> none = newDictionary();
    if (state != off) setState(widget.own(), states, state, stream(frame, drawing.shown, none));
    if (hasOff || drawing.hidden.empty()) return;
    setState(widget.own(), stateLooks(document(), widget.own()), off,
             stream(frame, drawing.hidden, none));
}

/// A button without AS is in the state of its field's value, if that is one of its own.
void FieldAppearances::showOwnState(const FieldEntries& widget, bool whole) {
    const auto all = followEntry<Dictionary>(document(), widget.own(), "AP");
    if (followEntry<Stream>(document(), all, "N")) return;
    const Ref<Dictionary> states = stateLooks(document(), widget.own());
    const auto shown = Host::cast<Name>(widget.find("AS"));
    const auto value = shown ? shown : Host::cast<Name>(widget.find("V"));
    std::string name(value ? value->name()->utf8() : off);
    const std::string_view first = firstState(states);
    if (name != off && !first.empty() && !entryOf(document(), states, name)) name = off;
    // Whose author drew no "Off" shows nothing then, unless viewers are to draw all anew.
    const bool isDrawn = !whole && name == off && hasStream(document(), states, first);
    if (!isDrawn) showStates(widget, name, whole);
    changes_.set(widget.own(), "AS", newName(name));
}

Filled FieldAppearances::showCaption(const FieldEntries& widget) {
    const WidgetFrame frame(document(), widget.own());
    const bool hasText = widget.kind() == Field::Kind::Button && !isIconOnly(widget);
    const std::string caption = hasText ? captionOf(widget) : std::string();
    const std::string around = frame.rectangle();
    if (!frame.hasArea() || (caption.empty() && around.empty())) return {};
    shared_.draw(caption.size());
    if (caption.empty()) {
        setNormal(widget.own(), stream(frame, around, newDictionary()));
        return {};
    }
    const TextStyle& style = shared_.style(widget);
    const auto font = fonts_.find(widget, style.fontName);
    if (!font) return {true, font.error()};
    auto codes = TextLayout::encoded(font->font, caption);
    if (!codes) return {true, codes.error()};
    const TextPlace place{textArea(frame, false), frame.height(), style.size, Quadding::Centered};
    const TextBlock block = TextLayout(font->font, place).single(*std::move(codes));
    draw(widget, frame, {}, block, *font);
    return {};
}

/// What several widgets share is set for all of them: where nothing was.
void FieldAppearances::setState(const Ref<Dictionary>& widget, const Ref<Dictionary>& states,
                                std::string_view state, const Ref<Value>& looks) {
    if (states) return changes_.set(states, state, looks);
    setNormal(widget, newDictionary({{state, looks}}));
}

std::string_view FieldAppearances::firstState(const Ref<Dictionary>& states) {
    if (!states) return {};
    FirstState& first = firstStates_[states.get()];
    if (!first.name.empty()) return first.name;
    first.states = states;
    const auto keys = orThrow(states->keys());
    const auto other =
        std::ranges::find_if(keys, [](const auto& key) { return !key->equals(off); });
    if (other != keys.end()) first.name = (*other)->utf8();
    return first.name;
}

} // namespace Libraries::Files::PDF::Tools
