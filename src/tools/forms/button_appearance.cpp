#include "tools/failure.h"
#include "tools/forms/field_appearance.h"
#include "tools/forms/form_text.h"
#include "tools/references.h"

#include <algorithm>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr std::string_view off = "Off";

Ref<Value> normalLooks(const Document& document, const Dictionary& widget) {
    const auto all = Host::cast<Dictionary>(followEntry(document, widget, "AP"));
    return all ? followEntry(document, *all, "N") : nullptr;
}

/// Some producers name their states and leave the looks to viewers: an empty dictionary is none.
bool hasStream(const Document& document, const Ref<Dictionary>& states, std::string_view state) {
    return states && Host::cast<Stream>(followEntry(document, *states, state));
}

std::string captionOf(const FieldEntries& widget) {
    const auto looks = Host::cast<Dictionary>(widget.find("MK"));
    return looks ? textOf(followEntry(widget.document(), *looks, "CA")) : std::string();
}

/// Whether a push button shows no text beside its icon (ISO 32000-1, table 189: TP).
bool isIconOnly(const FieldEntries& widget) {
    const auto looks = Host::cast<Dictionary>(widget.find("MK"));
    const auto place =
        looks ? Host::cast<Number>(followEntry(widget.document(), *looks, "TP")) : nullptr;
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

Filled FieldAppearances::showStates(const FieldEntries& widget, std::string_view state,
                                    bool whole) {
    const auto states = Host::cast<Dictionary>(normalLooks(document_, *widget.own()));
    const bool hasOff = hasStream(document_, states, off);
    if (hasStream(document_, states, state) && (hasOff || !whole)) return Filled::Shown;
    const WidgetFrame frame(document_, *widget.own());
    const std::string style = captionOf(widget);
    if (!shared_.draw(state.size() + style.size())) return Filled::Failed;
    const ButtonDrawing drawing(widget, frame, style, shared_.style(widget).colour);
    const Ref<Dictionary> none = orThrow(Dictionary::create());
    if (state != off) {
        const Ref<Value> shown = stream(frame, drawing.shown, none);
        if (!shown || !setState(widget.own(), states, state, shown)) return Filled::Failed;
    }
    if (hasOff || drawing.hidden.empty()) return Filled::Shown;
    const auto made = Host::cast<Dictionary>(normalLooks(document_, *widget.own()));
    const Ref<Value> hidden = stream(frame, drawing.hidden, none);
    return hidden && setState(widget.own(), made, off, hidden) ? Filled::Shown : Filled::Failed;
}

/// A button without AS is in the state of its field's value, if that is one of its own.
Filled FieldAppearances::showOwnState(const FieldEntries& widget, bool whole) {
    const Ref<Value> looks = normalLooks(document_, *widget.own());
    if (Host::cast<Stream>(looks)) return Filled::Shown;
    const auto states = Host::cast<Dictionary>(looks);
    const auto shown = Host::cast<Name>(widget.find("AS"));
    const auto value = shown ? shown : Host::cast<Name>(widget.find("V"));
    std::string name(value ? value->name()->utf8() : off);
    const std::string_view first = firstState(states);
    if (name != off && !first.empty() && !entryOf(document_, *states, name)) name = off;
    // Whose author drew no "Off" shows nothing then, unless viewers are to draw all anew.
    const bool isDrawn = !whole && name == off && hasStream(document_, states, first);
    if (!isDrawn && showStates(widget, name, whole) != Filled::Shown) return Filled::Failed;
    return changes_.set(widget.own(), "AS", orThrow(Name::create(name))) ? Filled::Shown
                                                                         : Filled::Failed;
}

Filled FieldAppearances::showCaption(const FieldEntries& widget) {
    const WidgetFrame frame(document_, *widget.own());
    const bool hasText = widget.kind() == Field::Kind::Button && !isIconOnly(widget);
    const std::string caption = hasText ? captionOf(widget) : std::string();
    const std::string around = frame.rectangle();
    if (!frame.hasArea() || (caption.empty() && around.empty())) return Filled::Shown;
    if (!shared_.draw(caption.size())) return Filled::Failed;
    if (caption.empty()) {
        const Ref<Value> looks = stream(frame, around, orThrow(Dictionary::create()));
        return looks && setNormal(widget.own(), looks) ? Filled::Shown : Filled::Failed;
    }
    const TextStyle& style = shared_.style(widget);
    const auto font = fonts_.find(widget, style.fontName);
    auto codes = encoded(font, caption);
    if (!codes) return Filled::ViewerNeeded;
    const TextPlace place{textArea(frame, false), frame.height(), style.size, Quadding::Centered};
    const TextBlock block = TextLayout(font->font, place).single(std::move(*codes));
    return show(widget, frame, {}, block, style, *font);
}

/// What several widgets share is set for all of them: where nothing was.
bool FieldAppearances::setState(const Ref<Dictionary>& widget, const Ref<Dictionary>& states,
                                std::string_view state, const Ref<Value>& looks) {
    if (states) return changes_.set(states, state, looks);
    const Ref<Dictionary> made = orThrow(Dictionary::create());
    if (!made->set(state, looks)) throw std::bad_alloc();
    return setNormal(widget, made);
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
