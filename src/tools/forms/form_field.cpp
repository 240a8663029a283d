#include "tools/forms/form_field.h"

#include "tools/failure.h"
#include "tools/forms/form_text.h"
#include "tools/references.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr std::size_t deepest = 32;

bool isNamed(const Dictionary& field) {
    return quietly([&] { return field.find("T"); }) != nullptr;
}

/// Gives the texts of values. References let a file list a long one more often than it has bytes
/// for.
class Texts {
public:
    /// Empty for what is no text, and for a long one that was given often before.
    std::string of(const Ref<Value>& value) {
        const Ref<String> string = Host::cast<String>(value);
        if (!string) return {};
        constexpr std::uint64_t longText = 256;
        constexpr unsigned often = 4;
        const auto text = string->text();
        const auto bytes = string->bytes();
        const std::uint64_t size = text ? text->length() : bytes ? bytes->size() : 0;
        if (size > longText && ++given_[string.get()] > often) return {};
        return textOf(*string);
    }

private:
    std::unordered_map<const String*, unsigned> given_;
};

/// What a list of texts, or a single one, holds.
template <class Take>
void eachElement(const Document& document, const Ref<Value>& value, Take take) {
    const Ref<Array> list = Host::cast<Array>(value);
    if (!list && value) take(value);
    for (std::uint64_t index = 0; list && index < list->size(); ++index)
        take(follow(document, list->get(index)));
}

} // namespace

Ref<Dictionary> catalogEntries(const Document& document) {
    const Ref<Dictionary> trailer = document.trailer();
    return trailer ? Host::cast<Dictionary>(followEntry(document, *trailer, "Root")) : nullptr;
}

Ref<Dictionary> formEntries(const Document& document) {
    const Ref<Dictionary> catalog = catalogEntries(document);
    if (!catalog) return nullptr;
    return Host::cast<Dictionary>(followEntry(document, *catalog, "AcroForm"));
}

FieldEntries::FieldEntries(const Document& document, const Field& field) : FieldEntries(document) {
    chain_.push_back(field.dictionary());
    for (Ref<Field> above = field.parent(); above && chain_.size() < deepest;
         above = above->parent()) {
        chain_.push_back(above->dictionary());
    }
    std::erase(chain_, nullptr);
}

FieldEntries::FieldEntries(const Document& document, const Ref<Dictionary>& widget)
    : FieldEntries(document) {
    for (Ref<Dictionary> entries = widget; entries && chain_.size() < deepest;) {
        chain_.push_back(entries);
        entries = Host::cast<Dictionary>(followEntry(document, *entries, "Parent"));
    }
}

FieldEntries FieldEntries::of(const Ref<Dictionary>& widget) const {
    FieldEntries entries = *this;
    if (widget != own()) entries.chain_.insert(entries.chain_.begin(), widget);
    return entries;
}

Ref<Value> FieldEntries::find(std::string_view key) const {
    for (const Ref<Dictionary>& entries : chain_) {
        if (Ref<Value> value = followEntry(document_, *entries, key)) return value;
    }
    constexpr std::array<std::string_view, 3> defaults = {"DA", "DR", "Q"};
    if (!form_ || std::ranges::find(defaults, key) == defaults.end()) return nullptr;
    return followEntry(document_, *form_, key);
}

std::string FieldEntries::text(std::string_view key) const {
    return textOf(find(key));
}

std::int64_t FieldEntries::number(std::string_view key, std::int64_t otherwise) const {
    const Ref<Number> number = Host::cast<Number>(find(key));
    return number ? number->integer() : otherwise;
}

bool FieldEntries::has(std::uint32_t flags) const {
    return (static_cast<std::uint32_t>(number("Ff")) & flags) == flags;
}

Field::Kind FieldEntries::kind() const {
    constexpr std::string_view names[] = {"Btn", "Tx", "Ch", "Sig"};
    const Ref<Value> type = find("FT");
    const auto* const name =
        std::ranges::find_if(names, [&](std::string_view known) { return isName(type, known); });
    if (name == std::end(names)) return Field::Kind::Plain;
    return static_cast<Field::Kind>(name - names + static_cast<int>(Field::Kind::Button));
}

Ref<Field> fieldOfWidget(const Document& document, const Field& widget) {
    Ref<Field> found;
    for (std::size_t level = 0; level < deepest; ++level) {
        const Field& kid = found ? *found : widget;
        const Ref<Dictionary> own = kid.dictionary();
        const Ref<Field> above = own && !isNamed(*own) ? kid.parent() : nullptr;
        if (!above || FieldEntries(document, *above).kind() == Field::Kind::Plain) return found;
        found = above;
    }
    return found;
}

std::vector<Ref<Dictionary>> widgetsOf(const Document& document, const Field& field) {
    std::vector<Ref<Dictionary>> widgets;
    for (std::uint64_t index = 0; index < field.childCount(); ++index) {
        const Ref<Field> kid = field.child(index);
        const Ref<Dictionary> entries = kid ? kid->dictionary() : nullptr;
        if (entries && !isNamed(*entries)) widgets.push_back(entries);
    }
    const Ref<Dictionary> own = field.dictionary();
    if (field.childCount() == 0 || (own && followEntry(document, *own, "Rect"))) {
        widgets.push_back(own);
    }
    std::erase(widgets, nullptr);
    return widgets;
}

std::vector<ChoiceOption> optionsOf(const FieldEntries& field) {
    const Document& document = field.document();
    std::vector<ChoiceOption> options;
    Texts texts;
    const Ref<Array> list = Host::cast<Array>(field.find("Opt"));
    for (std::uint64_t index = 0; list && index < list->size(); ++index) {
        const Ref<Value> option = follow(document, list->get(index));
        const Ref<Array> pair = Host::cast<Array>(option);
        const bool both = pair && pair->size() >= 2;
        const auto element = [&](std::uint64_t place) {
            return pair ? follow(document, pair->get(place)) : option;
        };
        const Ref<Value> exported = element(0);
        std::string value = texts.of(exported);
        std::string text = both ? texts.of(element(1)) : value;
        options.push_back({exported, std::move(value), std::move(text)});
    }
    return options;
}

Ref<Dictionary> stateLooks(const Document& document, const Dictionary& widget) {
    const auto looks = Host::cast<Dictionary>(followEntry(document, widget, "AP"));
    return looks ? Host::cast<Dictionary>(followEntry(document, *looks, "N")) : nullptr;
}

std::vector<FieldOption> statesOf(const FieldEntries& field,
                                  const std::vector<Ref<Dictionary>>& widgets) {
    const auto options = optionsOf(field);
    std::vector<FieldOption> states;
    std::unordered_set<std::string> known = {"Off"};
    std::unordered_set<const Dictionary*> seen; // widgets may share what has many states
    for (std::size_t index = 0; index < widgets.size(); ++index) {
        const Ref<Dictionary> looks = stateLooks(field.document(), *widgets[index]);
        if (!looks || !seen.insert(looks.get()).second) continue;
        const auto keys = orThrow(looks->keys());
        for (const Ref<Host::String>& key : keys) {
            std::string state = key->utf8();
            if (!known.insert(state).second) continue;
            std::string text = index < options.size() ? options[index].text
                                                      : textOf(*orThrow(Name::create(state)));
            states.push_back({std::move(state), std::move(text)});
        }
    }
    return states;
}

std::vector<std::string> selectionOf(const FieldEntries& field) {
    std::vector<std::string> selection;
    Texts texts;
    eachElement(field.document(), field.find("V"), [&](const Ref<Value>& element) {
        if (Host::cast<String>(element)) selection.push_back(texts.of(element));
    });
    return selection;
}

} // namespace Libraries::Files::PDF::Tools
