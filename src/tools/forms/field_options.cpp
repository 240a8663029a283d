#include "tools/forms/field_options.h"

#include "tools/failure.h"
#include "tools/forms/form_text.h"
#include "tools/new_values.h"
#include "tools/references.h"

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

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

} // namespace

std::vector<ChoiceOption> optionsOf(const FieldEntries& field) {
    const Document& document = field.document();
    std::vector<ChoiceOption> options;
    Texts texts;
    for (const Ref<Value>& element : elementsOf(Host::cast<Array>(field.find("Opt")))) {
        const Ref<Value> option = follow(document, element);
        const Ref<Array> pair = Host::cast<Array>(option);
        Ref<Value> exported = pair ? follow(document, pair->get(0)) : option;
        std::string value = texts.of(exported);
        std::string text =
            pair && pair->size() > 1 ? texts.of(follow(document, pair->get(1))) : value;
        options.push_back({std::move(exported), std::move(value), std::move(text)});
    }
    return options;
}

Ref<Dictionary> stateLooks(const Document& document, const Ref<Dictionary>& widget) {
    return followEntry<Dictionary>(document, followEntry<Dictionary>(document, widget, "AP"), "N");
}

std::vector<FieldOption> statesOf(const FieldEntries& field,
                                  const std::vector<Ref<Dictionary>>& widgets) {
    const auto options = optionsOf(field);
    std::vector<FieldOption> states;
    std::unordered_set<std::string> known = {std::string(off)};
    std::unordered_set<const Dictionary*> seen; // widgets may share what has many states
    for (std::size_t index = 0; index < widgets.size(); ++index) {
        const Ref<Dictionary> looks = stateLooks(field.document(), widgets[index]);
        if (!looks || !seen.insert(looks.get()).second) continue;
        const auto keys = orThrow(looks->keys());
        for (const Ref<Host::String>& key : keys) {
            std::string state = key->utf8();
            if (!known.insert(state).second) continue;
            std::string text =
                index < options.size() ? options[index].text : textOf(*newName(state));
            states.push_back({std::move(state), std::move(text)});
        }
    }
    return states;
}

std::vector<std::string> selectionOf(const FieldEntries& field) {
    const Ref<Value> value = field.find("V");
    const Ref<Array> list = Host::cast<Array>(value);
    std::vector<std::string> selection;
    Texts texts;
    for (const Ref<Value>& element : list ? elementsOf(list) : std::vector{value}) {
        const auto text = followTo<String>(field.document(), element);
        if (text) selection.push_back(texts.of(text));
    }
    return selection;
}

ChoiceOptions::ChoiceOptions(const FieldEntries& field) : list_(optionsOf(field)) {
    byText_.reserve(list_.size());
    for (std::size_t place = 0; place < list_.size(); ++place) {
        const ChoiceOption& option = list_[place];
        if (!Host::cast<String>(option.exported)) continue;
        byText_.try_emplace(option.text, place);
        if (option.value != option.text) byValue_.try_emplace(option.value, place);
    }
}

std::optional<std::size_t> ChoiceOptions::at(std::string_view text) const {
    for (const auto* const places : {&byText_, &byValue_}) {
        if (const auto found = places->find(text); found != places->end()) return found->second;
    }
    return std::nullopt;
}

std::optional<std::size_t> ChoiceOptions::firstOf(const Selection& selection) const {
    std::optional<std::size_t> first;
    for (const std::string& text : selection.texts) {
        if (const auto place = at(text); place && list_[*place].value == text) {
            first = std::min(first.value_or(*place), *place);
        }
        // Another option may show what this one exports.
        if (const auto found = byValue_.find(text); found != byValue_.end()) {
            first = std::min(first.value_or(found->second), found->second);
        }
    }
    return first;
}

} // namespace Libraries::Files::PDF::Tools
