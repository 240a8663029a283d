#include "tools/failure.h"
#include "tools/forms/field_appearance.h"
#include "tools/forms/form_field.h"
#include "tools/forms/form_text.h"
#include "tools/names.h"
#include "tools/references.h"

#include <pdf/tools/editing.h>
#include <pdf/tools/filling.h>

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr std::string_view off = "Off";

constexpr std::uint64_t leastWidget = 64; ///< bytes that one takes in a file

/// Sets one field; the caller keeps the changes.
class Filling {
public:
    Filling(Document& document, Form& form, Changes& changes, Ref<Field> field)
        : document_(document),
          form_(form),
          changes_(changes),
          field_(std::move(field)),
          entries_(document, *field_),
          widgets_(widgetsOf(document, *field_)),
          appearances_(document, changes) {}

    [[nodiscard]] Filled set(std::string_view text);
    [[nodiscard]] Filled choose(std::span<const std::string_view> texts);

private:
    struct Choice {
        std::vector<std::size_t> places;
        std::vector<Ref<Value>> values;
        std::string shown; ///< by a field that shows one
    };

    [[nodiscard]] bool isField() const;
    [[nodiscard]] Filled setText(std::string_view text);
    [[nodiscard]] Filled setButton(std::string_view text);
    [[nodiscard]] bool findChoice(std::span<const std::string_view> texts, Choice& choice) const;
    [[nodiscard]] bool storeChoice(const Choice& choice);
    [[nodiscard]] bool scrollTo(const Selection& selection);
    [[nodiscard]] std::optional<std::string> findState(const std::vector<FieldOption>& known,
                                                       std::string_view text) const;
    [[nodiscard]] bool showState(const Ref<Dictionary>& widget, std::string_view state, bool bare);
    template <class Kind, class Held>
    [[nodiscard]] bool store(const Ref<Held>& value);
    [[nodiscard]] bool dropStale();
    template <class Show>
    [[nodiscard]] Filled showAll(Show show);
    [[nodiscard]] bool areViewersAsked() const;
    [[nodiscard]] bool askViewers();
    [[nodiscard]] std::string name() const;

    Document& document_;
    Form& form_;
    Changes& changes_;
    Ref<Field> field_;
    FieldEntries entries_;
    std::vector<Ref<Dictionary>> widgets_;
    FieldAppearances appearances_;
};

std::string Filling::name() const {
    const Ref<Host::String> name = field_->fullName();
    return name ? name->utf8() : std::string();
}

/// Whether there is a value to set, and no group, nor what has none.
bool Filling::isField() const {
    if (!field_->dictionary()) return fail(NotSupported);
    const Field::Kind kind = entries_.kind();
    const bool known = kind != Field::Kind::Plain && kind != Field::Kind::Signature;
    if (known && !widgets_.empty()) return true;
    return fail(NotSupported, "Field is a group, a signature or of no kind: ", name());
}

/// By the operation of the kind; a field that inherits its kind has none.
template <class Kind, class Held>
bool Filling::store(const Ref<Held>& value) {
    const Ref<Kind> typed = Host::cast<Kind>(field_);
    if (!typed) return changes_.set(entries_.own(), "V", value);
    changes_.remember(entries_.own(), "V");
    return typed->setValue(value);
}

/// What the former value left. Widgets have no value of their own, and a form in another language
/// beside this one (ISO 32000-1, 12.7.8) would hide what this one says.
bool Filling::dropStale() {
    const Ref<Dictionary>& form = entries_.form();
    if (form && !changes_.drop(form, "XFA")) return false;
    if (!changes_.drop(entries_.own(), "RV")) return false;
    return std::ranges::all_of(widgets_, [&](const Ref<Dictionary>& widget) {
        if (widget == entries_.own()) return true;
        return changes_.drop(widget, "V") && changes_.drop(widget, "RV") &&
               changes_.drop(widget, "I");
    });
}

/// Shows the value in all widgets; those that cannot are left to viewers.
template <class Show>
Filled Filling::showAll(Show show) {
    Filled result = Filled::Shown;
    for (const Ref<Dictionary>& widget : widgets_) {
        appearances_.shared().read(leastWidget);
        const Filled shown = show(entries_.of(widget));
        if (shown == Filled::Failed) return Filled::Failed;
        if (shown == Filled::Shown) continue;
        if (!appearances_.clear(widget)) return Filled::Failed;
        result = Filled::ViewerNeeded;
    }
    return result == Filled::Shown || askViewers() ? result : Filled::Failed;
}

bool Filling::areViewersAsked() const {
    const Ref<Dictionary>& form = entries_.form();
    const auto asked =
        form ? Host::cast<Boolean>(followEntry(document_, *form, "NeedAppearances")) : nullptr;
    return asked && asked->value();
}

bool Filling::askViewers() {
    const Ref<Dictionary>& form = entries_.form();
    if (!form) return fail(FormNotFound);
    if (!appearances_.provideFor(entries_)) return false;
    changes_.remember(form, "NeedAppearances");
    return form_.setNeedAppearances(true);
}

Filled Filling::set(std::string_view text) {
    if (!isField()) return Filled::Failed;
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
    const Ref<String> value = text.empty() ? nullptr : orThrow(textString(text));
    const auto most =
        static_cast<std::uint64_t>(std::max<std::int64_t>(entries_.number("MaxLen"), 0));
    const std::uint64_t length = !value          ? 0
                                 : value->text() ? value->text()->length()
                                                 : value->bytes()->size() / 2 - 1;
    if (most != 0 && length > most) {
        return fail(InvalidArgument, "Text is longer than ", most, " for field ", name());
    }
    if (!store<Fields::Text>(value) || !dropStale()) return Filled::Failed;
    appearances_.shared().read(text.size());
    return showAll([&](const FieldEntries& widget) { return appearances_.showText(widget, text); });
}

Filled Filling::choose(std::span<const std::string_view> texts) {
    if (!isField()) return Filled::Failed;
    if (entries_.kind() != Field::Kind::Choice) {
        return fail(NotSupported, "Field has no options to choose: ", name());
    }
    Choice choice;
    if (!findChoice(texts, choice) || !storeChoice(choice) || !dropStale()) return Filled::Failed;
    appearances_.shared().read(choice.shown.size());
    const bool list = !entries_.has(FieldFlags::combo);
    const Selection selected(entries_);
    if (list && !scrollTo(selected)) return Filled::Failed;
    return showAll([&](const FieldEntries& widget) {
        return list ? appearances_.showList(widget, selected)
                    : appearances_.showText(widget, choice.shown);
    });
}

bool Filling::findChoice(std::span<const std::string_view> texts, Choice& choice) const {
    const ChoiceOptions options(entries_);
    const bool free = entries_.has(FieldFlags::combo | FieldFlags::edit);
    for (const std::string_view text : texts) {
        if (const auto place = options.at(text)) {
            choice.places.push_back(*place);
        } else if (free && texts.size() == 1) {
            choice.values.emplace_back(orThrow(textString(text)));
            choice.shown = text;
        } else {
            return fail(InvalidArgument, "Field ", name(), " has no option ", text);
        }
    }
    std::ranges::sort(choice.places);
    choice.places.erase(std::unique(choice.places.begin(), choice.places.end()),
                        choice.places.end());
    for (const std::size_t place : choice.places)
        choice.values.push_back(options.list()[place].exported);
    if (!choice.places.empty()) choice.shown = options.list()[choice.places.front()].text;
    return true;
}

bool Filling::storeChoice(const Choice& choice) {
    const bool several = entries_.has(FieldFlags::multiSelect);
    Ref<Value> value;
    if (choice.values.size() == 1) value = choice.values.front();
    if (choice.values.size() > 1) value = orThrow(Array::create(choice.values));
    if (choice.values.size() > 1 && !several) {
        return fail(InvalidArgument, "Field takes one option only: ", name());
    }
    // Where the field inherits that it takes several, the operation of its kind does not see it.
    const bool own = (field_->flags() & FieldFlags::multiSelect) != 0;
    const bool stored =
        several && !own ? changes_.set(entries_.own(), "V", value) : store<Fields::Choice>(value);
    if (!stored) return false;
    if (choice.places.empty() || (!several && !entries_.find("I"))) {
        return changes_.drop(entries_.own(), "I");
    }
    std::vector<Ref<Value>> places;
    for (const std::size_t place : choice.places)
        places.emplace_back(orThrow(Number::create(static_cast<std::int64_t>(place))));
    return changes_.set(entries_.own(), "I", orThrow(Array::create(places)));
}

/// Has viewers begin a list with an option from which the selection is seen.
bool Filling::scrollTo(const Selection& selection) {
    const auto top =
        static_cast<std::int64_t>(appearances_.listTop(entries_.of(widgets_.front()), selection));
    return top == entries_.number("TI") ||
           changes_.set(entries_.own(), "TI", orThrow(Number::create(top)));
}

Filled Filling::setButton(std::string_view text) {
    if (entries_.has(FieldFlags::pushButton)) {
        return fail(ButtonHasNoValue, "A push button has no value: ", name());
    }
    const auto known = statesOf(entries_, widgets_);
    const auto state = findState(known, text);
    if (!state) return fail(InvalidArgument, "Field ", name(), " has no state ", text);
    if (!store<Fields::Button>(orThrow(Name::create(*state))) || !dropStale()) {
        return Filled::Failed;
    }
    appearances_.shared().read(state->size());
    for (const Ref<Dictionary>& widget : widgets_) {
        if (!showState(widget, *state, known.empty())) return Filled::Failed;
    }
    if (areViewersAsked() && !appearances_.provideFor(entries_)) return Filled::Failed;
    return Filled::Shown;
}

/// The name of the state that a text means, as it stands in the document.
std::optional<std::string> Filling::findState(const std::vector<FieldOption>& known,
                                              std::string_view text) const {
    if (text.empty() || text == off) return std::string(off);
    for (const auto part : {&FieldOption::value, &FieldOption::text}) {
        const auto found = std::ranges::find(known, text, part);
        if (found != known.end()) return found->value;
    }
    // A check box that has no looks takes any state; of several radio buttons nobody knows which.
    const bool several = widgets_.size() > 1 && entries_.has(FieldFlags::radio);
    if (!known.empty() || several) return std::nullopt;
    return spelledName(text);
}

/// Shows the state in a widget that names it, or in one of those of which none names any.
bool Filling::showState(const Ref<Dictionary>& widget, std::string_view state, bool bare) {
    const Ref<Dictionary> looks = stateLooks(document_, *widget);
    const std::string_view first = appearances_.firstState(looks);
    const bool own = looks && quietly([&] { return looks->find(state); });
    const bool on = state != off && (own || bare);
    const std::string_view drawn = on ? state : first.empty() ? off : first;
    if (!first.empty() || bare) {
        const FieldEntries entries = entries_.of(widget);
        if (appearances_.showStates(entries, drawn, areViewersAsked()) != Filled::Shown)
            return false;
    }
    if (!appearances_.shared().draw(state.size())) return false;
    return changes_.set(widget, "AS", orThrow(Name::create(on ? state : off)));
}

/// The field at a path, or the one whose widget is there.
Ref<Field> fieldAt(const Document& document, const Form& form, std::string_view path) {
    Ref<Field> field = form.fieldByPath(orThrow(Host::String::create(path)));
    if (!field || !field->dictionary()) return field;
    const Ref<Field> above = fieldOfWidget(document, *field);
    return above ? above : field;
}

template <class Set>
Filled filled(Document& document, Form& form, std::string_view path, Set set) noexcept {
    if (document.homeOf(form) == Home::Elsewhere) {
        return fail(InvalidArgument, "The form is that of another document");
    }
    const std::uint32_t code = Host::Error::get();
    return guarded([&]() -> Filled {
        const Ref<Field> field = fieldAt(document, form, path);
        if (!field) return Filled::Failed;
        Changes changes(document);
        Filling filling(document, form, changes, field);
        const Filled result = set(filling);
        if (result == Filled::Failed) return result;
        changes.keep();
        Host::Error::set(code);
        return result;
    });
}

} // namespace

Filled fillField(Document& document, Form& form, std::string_view path,
                 std::string_view text) noexcept {
    return filled(document, form, path, [&](Filling& filling) { return filling.set(text); });
}

Filled chooseOptions(Document& document, Form& form, std::string_view path,
                     std::span<const std::string_view> options) noexcept {
    return filled(document, form, path, [&](Filling& filling) { return filling.choose(options); });
}

} // namespace Libraries::Files::PDF::Tools
