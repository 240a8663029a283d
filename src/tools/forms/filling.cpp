#include "tools/forms/filling.h"

#include "tools/failure.h"
#include "tools/forms/form_fields.h"
#include "tools/new_values.h"
#include "tools/references.h"

#include <algorithm>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Characters, as MaxLen counts them: halves of UTF-16 behind a byte-order mark, where it has one.
std::uint64_t lengthOf(const String& string) {
    const Ref<Host::String> text = string.text();
    return text ? text->length() : string.bytes()->size() / 2 - 1;
}

} // namespace

Filling::Filling(Changes& changes, Form& form, const Ref<Field>& field)
    : changes_(changes),
      form_(form),
      field_(field),
      entries_(changes.document(), *field),
      widgets_(widgetsOf(changes.document(), *field)),
      appearances_(changes) {
    const Field::Kind kind = entries_.kind();
    const bool known = kind != Field::Kind::Plain && kind != Field::Kind::Signature;
    if (!field->dictionary() || !known || widgets_.empty())
        fail(NotSupported,
             "no value can be set for a group of fields, a signature or what is of no kind");
}

/// By the operation of the kind; a field that inherits its kind has none.
template <class Kind, class Held>
void Filling::store(const Ref<Held>& value) {
    const Ref<Kind> typed = Host::cast<Kind>(field_);
    if (!typed) return changes_.set(entries_.own(), "V", value);
    changes_.remember(entries_.own(), "V");
    orFail(typed->setValue(value));
}

/// What the former value left. Widgets have no value of their own, and a form in another language
/// beside this one (ISO 32000-1, 12.7.8) would hide what this one says.
void Filling::dropStale() {
    changes_.drop(entries_.form(), "XFA");
    changes_.drop(entries_.own(), "RV");
    for (const Ref<Dictionary>& widget : widgets_) {
        if (widget == entries_.own()) continue;
        for (const std::string_view key : {"V", "RV", "I"})
            changes_.drop(widget, key);
    }
}

/// Shows the value in all widgets; those that cannot are left to viewers.
template <class Show>
Filled Filling::showAll(Show show) {
    Filled all;
    for (const Ref<Dictionary>& widget : widgets_) {
        appearances_.shared().readWidget();
        Filled shown = show(entries_.of(widget));
        if (!shown.viewerNeeded) continue;
        changes_.drop(widget, "AP");
        all = std::move(shown);
    }
    if (all.viewerNeeded) askViewers();
    return all;
}

bool Filling::areViewersAsked() const {
    const auto asked =
        followEntry<Boolean>(changes_.document(), entries_.form(), "NeedAppearances");
    return asked && asked->value();
}

void Filling::askViewers() {
    if (!entries_.form()) fail(FormNotFound);
    appearances_.provideFor(entries_);
    changes_.remember(entries_.form(), "NeedAppearances");
    orFail(form_.setNeedAppearances(true));
}

Filled Filling::set(std::string_view text) {
    switch (entries_.kind()) {
    case Field::Kind::Text:
        return setText(text);
    case Field::Kind::Button:
        return setButton(text);
    default:
        return text.empty() ? choose({}) : choose({&text, 1});
    }
}

Filled Filling::setText(std::string_view text) {
    const Ref<String> value = text.empty() ? nullptr : newText(text);
    const std::int64_t most = entries_.number("MaxLen");
    if (value && most > 0 && lengthOf(*value) > static_cast<std::uint64_t>(most))
        fail(InvalidArgument, "the text has more than ", static_cast<std::uint64_t>(most),
             " characters");
    store<Fields::Text>(value);
    dropStale();
    appearances_.shared().read(text.size());
    return showAll([&](const FieldEntries& widget) { return appearances_.showText(widget, text); });
}

Filled Filling::choose(std::span<const std::string_view> texts) {
    if (entries_.kind() != Field::Kind::Choice) fail(NotSupported, "it has no options to choose");
    const Choice choice = findChoice(texts);
    storeChoice(choice);
    dropStale();
    appearances_.shared().read(choice.shown.size());
    const bool list = !entries_.has(FieldFlags::combo);
    const Selection selected(entries_);
    if (list) scrollTo(selected);
    return showAll([&](const FieldEntries& widget) {
        return list ? appearances_.showList(widget, selected)
                    : appearances_.showText(widget, choice.shown);
    });
}

Filling::Choice Filling::findChoice(std::span<const std::string_view> texts) const {
    const ChoiceOptions options(entries_);
    const bool free = entries_.has(FieldFlags::combo | FieldFlags::edit);
    Choice choice;
    for (const std::string_view text : texts) {
        if (const auto place = options.at(text)) {
            choice.places.push_back(*place);
        } else if (free && texts.size() == 1) {
            choice.values.emplace_back(newText(text));
            choice.shown = text;
        } else {
            fail(InvalidArgument, "it has no option ", text);
        }
    }
    std::ranges::sort(choice.places);
    choice.places.erase(std::unique(choice.places.begin(), choice.places.end()),
                        choice.places.end());
    for (const std::size_t place : choice.places)
        choice.values.push_back(options.list()[place].exported);
    if (!choice.places.empty()) choice.shown = options.list()[choice.places.front()].text;
    return choice;
}

void Filling::storeChoice(const Choice& choice) {
    const bool several = entries_.has(FieldFlags::multiSelect);
    Ref<Value> value;
    if (choice.values.size() == 1) value = choice.values.front();
    if (choice.values.size() > 1) value = newArray(choice.values);
    if (choice.values.size() > 1 && !several) fail(InvalidArgument, "it takes one option only");
    // Where the field inherits that it takes several, the operation of its kind does not see it.
    const bool own = (field_->flags() & FieldFlags::multiSelect) != 0;
    if (several && !own) {
        changes_.set(entries_.own(), "V", value);
    } else {
        store<Fields::Choice>(value);
    }
    if (choice.places.empty() || (!several && !entries_.find("I"))) {
        changes_.drop(entries_.own(), "I");
        return;
    }
    std::vector<Ref<Value>> places;
    for (const std::size_t place : choice.places)
        places.emplace_back(newNumber(place));
    changes_.set(entries_.own(), "I", newArray(places));
}

/// Has viewers begin a list with an option from which the selection is seen.
void Filling::scrollTo(const Selection& selection) {
    const std::uint64_t top = appearances_.listTop(entries_.of(widgets_.front()), selection);
    if (entries_.number("TI") != static_cast<std::int64_t>(top))
        changes_.set(entries_.own(), "TI", newNumber(top));
}

Filled Filling::setButton(std::string_view text) {
    if (entries_.has(FieldFlags::pushButton)) fail(ButtonHasNoValue, "a push button has no value");
    const auto known = statesOf(entries_, widgets_);
    const std::string state = findState(known, text);
    store<Fields::Button>(newName(state));
    dropStale();
    appearances_.shared().read(state.size());
    for (const Ref<Dictionary>& widget : widgets_)
        showState(widget, state, known.empty());
    if (areViewersAsked()) appearances_.provideFor(entries_);
    return {};
}

/// The name of the state that a text means, as it stands in the document.
std::string Filling::findState(const std::vector<FieldOption>& known, std::string_view text) const {
    if (text.empty() || text == off) return std::string(off);
    for (const auto part : {&FieldOption::value, &FieldOption::text}) {
        const auto found = std::ranges::find(known, text, part);
        if (found != known.end()) return found->value;
    }
    // A check box that has no looks takes any state; of several radio buttons nobody knows which.
    const bool several = widgets_.size() > 1 && entries_.has(FieldFlags::radio);
    if (!known.empty() || several) fail(InvalidArgument, "it has no state ", text);
    return spelledName(text);
}

/// Shows the state in a widget that names it, or in one of those of which none names any.
void Filling::showState(const Ref<Dictionary>& widget, std::string_view state, bool bare) {
    const Ref<Dictionary> looks = stateLooks(changes_.document(), widget);
    const std::string_view first = appearances_.firstState(looks);
    const bool on = state != off && (bare || findEntry(looks, state));
    const std::string_view drawn = on ? state : first.empty() ? off : first;
    if (!first.empty() || bare)
        appearances_.showStates(entries_.of(widget), drawn, areViewersAsked());
    appearances_.shared().draw(state.size());
    changes_.set(widget, "AS", newName(on ? state : off));
}

} // namespace Libraries::Files::PDF::Tools
