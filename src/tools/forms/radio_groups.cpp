#include "tools/forms/radio_groups.h"

#include "tools/failure.h"
#include "tools/forms/form_field.h"
#include "tools/forms/form_text.h"
#include "tools/references.h"

#include <host/held_log.h>
#include <pdf/tools/editing.h>
#include <pdf/tools/pages.h>

#include <unordered_set>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr std::string_view ofTheField[] = {"FT", "Ff", "T", "TM", "V", "DV"};

/// Whether this is a radio button that is a field of its own, at the top of the form.
bool isLoneRadio(const Document& document, const Dictionary& button) {
    const auto has = [&](std::string_view key) {
        return entryOf(document, button, key) != nullptr;
    };
    const auto flags = Host::cast<Number>(followEntry(document, button, "Ff"));
    return flags && (static_cast<std::uint32_t>(flags->integer()) & FieldFlags::radio) != 0 &&
           isName(followEntry(document, button, "FT"), "Btn") && has("T") && has("Rect") &&
           !has("Kids") && !has("Parent") && !has("Opt");
}

/// The pages, without a word about a tree that is damaged.
Ref<Host::TVector<Page>> pagesOf(const Document& document) {
    const Host::HeldLog log;
    return quietly([&] { return allPages(document); });
}

} // namespace

/// Those of a form make groups, those of pages join them.
void RadioGroups::collect(const Array& elements, bool isForm) {
    for (std::uint64_t index = 0; index < elements.size(); ++index) {
        const Ref<Value> element = elements.get(index);
        const auto button = Host::cast<Dictionary>(follow(document_, element));
        if (!button || !Host::cast<ObjectRef>(element) || !isLoneRadio(document_, *button))
            continue;
        const std::string name = textOf(followEntry(document_, *button, "T"));
        if (!isForm && !groups_.contains(name)) continue;
        Group& group = groups_[name];
        if (!joined_.emplace(button.get(), &group).second) continue;
        group.references.push_back(element);
        group.buttons.push_back(button);
    }
}

void RadioGroups::collectFromPages() {
    const auto pages = pagesOf(document_);
    if (!pages) return;
    std::unordered_set<const Value*> seen;
    for (const Page& page : pages) {
        const auto list = Host::cast<Array>(followEntry(document_, *page.dictionary, "Annots"));
        if (list && seen.insert(list.get()).second) collect(*list, false);
    }
}

bool RadioGroups::join(const Ref<Dictionary>& form) {
    const auto fields = form ? Host::cast<Array>(followEntry(document_, *form, "Fields")) : nullptr;
    if (fields) collect(*fields, true);
    if (groups_.empty()) return true;
    collectFromPages();
    std::erase_if(joined_, [](const auto& entry) { return entry.second->buttons.size() == 1; });
    for (auto& [name, group] : groups_) {
        if (group.buttons.size() > 1 && !join(group)) return false;
    }
    return joined_.empty() || replace(form, *fields);
}

bool RadioGroups::join(Group& group) {
    group.field = made(group);
    if (!group.field) return false;
    for (const Ref<Dictionary>& button : group.buttons) {
        for (const std::string_view key : ofTheField) {
            if (!changes_.drop(button, key)) return false;
        }
        if (!changes_.set(button, "Parent", group.field)) return false;
    }
    return true;
}

/// The field that they become, with the value of one that has any.
Ref<Value> RadioGroups::made(const Group& group) {
    const Ref<Dictionary> field =
        orThrow(Dictionary::create({{"Kids", orThrow(Array::create(group.references))}}));
    for (const std::string_view key : ofTheField) {
        for (const Ref<Dictionary>& button : group.buttons) {
            const Ref<Value> value = entryOf(document_, *button, key);
            if (!value || (key == "V" && isName(follow(document_, value), "Off"))) continue;
            if (!field->set(key, value)) throw std::bad_alloc();
            break;
        }
    }
    const Ref<Object> object = changes_.add(field);
    return object ? Ref<Value>(orThrow(referenceTo(object))) : nullptr;
}

/// Each group stands where its first button stood.
bool RadioGroups::replace(const Ref<Dictionary>& form, const Array& fields) {
    std::vector<Ref<Value>> elements;
    for (std::uint64_t index = 0; index < fields.size(); ++index) {
        const Ref<Value> element = fields.get(index);
        const Ref<Value> field = follow(document_, element);
        const auto found = joined_.find(field.get());
        if (found == joined_.end()) {
            elements.push_back(element);
        } else if (element == found->second->references.front()) {
            elements.push_back(found->second->field);
        }
    }
    return changes_.set(form, "Fields", orThrow(Array::create(elements)));
}

bool RadioGroups::hasJoined(const Ref<Dictionary>& field) const {
    return joined_.contains(field.get());
}

} // namespace Libraries::Files::PDF::Tools
