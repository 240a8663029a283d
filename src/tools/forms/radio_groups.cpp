#include "tools/forms/radio_groups.h"

#include "tools/failure.h"
#include "tools/forms/field_options.h"
#include "tools/forms/form_text.h"
#include "tools/new_values.h"
#include "tools/pages/page_tree.h"
#include "tools/references.h"

#include <host/held_log.h>

#include <unordered_set>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr std::string_view ofTheField[] = {"FT", "Ff", "T", "TM", "V", "DV"};

/// Whether this is a radio button that is a field of its own, at the top of the form.
bool isLoneRadio(const Document& document, const Ref<Dictionary>& button) {
    const auto has = [&](std::string_view key) {
        return entryOf(document, button, key) != nullptr;
    };
    const auto flags = followEntry<Number>(document, button, "Ff");
    return flags && (static_cast<std::uint32_t>(flags->integer()) & FieldFlags::radio) != 0 &&
           isName(followEntry(document, button, "FT"), "Btn") && has("T") && has("Rect") &&
           !has("Kids") && !has("Parent") && !has("Opt");
}

/// The pages; none, without a word, of a tree that is damaged.
std::vector<Page> pagesOfSoundTree(const Document& document) {
    const Host::HeldLog log;
    try {
        return pagesOf(document);
    } catch (const FailedStep&) {
        return {};
    }
}

} // namespace

/// Those of a form make groups, those of pages join them.
void RadioGroups::collect(const Ref<Array>& list, bool isForm) {
    const Document& document = changes_.document();
    for (const Ref<Value>& element : elementsOf(list)) {
        const auto button = followTo<Dictionary>(document, element);
        if (!Host::cast<ObjectRef>(element) || !isLoneRadio(document, button)) continue;
        const std::string name = textOf(followEntry(document, button, "T"));
        if (!isForm && !groups_.contains(name)) continue;
        Group& group = groups_[name];
        if (!joined_.emplace(button.get(), &group).second) continue;
        group.references.push_back(element);
        group.buttons.push_back(button);
    }
}

void RadioGroups::collectFromPages() {
    std::unordered_set<const Value*> seen;
    for (const Page& page : pagesOfSoundTree(changes_.document())) {
        const auto list = followEntry<Array>(changes_.document(), page.dictionary, "Annots");
        if (list && seen.insert(list.get()).second) collect(list, false);
    }
}

void RadioGroups::join(const Ref<Dictionary>& form) {
    const auto fields = followEntry<Array>(changes_.document(), form, "Fields");
    collect(fields, true);
    if (groups_.empty()) return;
    collectFromPages();
    std::erase_if(joined_, [](const auto& entry) { return entry.second->buttons.size() == 1; });
    for (auto& [name, group] : groups_) {
        if (group.buttons.size() > 1) join(group);
    }
    if (!joined_.empty()) replace(form, fields);
}

void RadioGroups::join(Group& group) {
    group.field = changes_.add(made(group));
    for (const Ref<Dictionary>& button : group.buttons) {
        for (const std::string_view key : ofTheField)
            changes_.drop(button, key);
        changes_.set(button, "Parent", group.field);
    }
}

/// The field that they become, with the value of one that has any.
Ref<Dictionary> RadioGroups::made(const Group& group) const {
    const Document& document = changes_.document();
    Ref<Dictionary> field = newDictionary({{"Kids", newArray(group.references)}});
    for (const std::string_view key : ofTheField) {
        for (const Ref<Dictionary>& button : group.buttons) {
            const Ref<Value> value = entryOf(document, button, key);
            if (!value || (key == "V" && isName(follow(document, value), off))) continue;
            put(field, key, value);
            break;
        }
    }
    return field;
}

/// Each group stands where its first button stood.
void RadioGroups::replace(const Ref<Dictionary>& form, const Ref<Array>& fields) {
    std::vector<Ref<Value>> elements;
    for (const Ref<Value>& element : elementsOf(fields)) {
        const Ref<Value> field = follow(changes_.document(), element);
        const auto found = joined_.find(field.get());
        if (found == joined_.end()) {
            elements.push_back(element);
        } else if (element == found->second->references.front()) {
            elements.push_back(found->second->field);
        }
    }
    changes_.set(form, "Fields", newArray(elements));
}

bool RadioGroups::hasJoined(const Ref<Dictionary>& field) const {
    return joined_.contains(field.get());
}

} // namespace Libraries::Files::PDF::Tools
