#include "tools/forms/form_opening.h"

#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/forms/field_entries.h"
#include "tools/forms/radio_groups.h"
#include "tools/new_values.h"
#include "tools/references.h"

#include <host/held_log.h>

#include <unordered_set>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Puts the arrays of a form's tree where a `Form` looks for them: directly into their fields.
void bringInArrays(Changes& changes) {
    const Document& document = changes.document();
    std::unordered_set<const Value*> seen;
    std::vector<std::pair<Ref<Dictionary>, std::string_view>> waiting;
    waiting.emplace_back(formEntries(document), "Fields");
    while (!waiting.empty()) {
        const auto [from, key] = std::move(waiting.back());
        waiting.pop_back();
        const Ref<Value> entry = entryOf(document, from, key);
        const Ref<Array> kids = followTo<Array>(document, entry);
        // An array belongs to one field: many copies of a long one would be more than the file
        // holds.
        if (!kids || !seen.insert(kids.get()).second) continue;
        const auto elements = elementsOf(kids);
        for (const Ref<Value>& element : elements) {
            auto kid = followTo<Dictionary>(document, element);
            if (kid && seen.insert(kid.get()).second) waiting.emplace_back(std::move(kid), "Kids");
        }
        if (entry->type() == Value::Type::ObjectRef) changes.set(from, key, newArray(elements));
    }
}

/// Whether the form was built before its buttons were joined: it shows what they were.
bool hasFormerFields(const Form& form, const RadioGroups& groups) {
    for (std::uint64_t index = 0; index < form.fieldCount(); ++index) {
        if (groups.hasJoined(form.field(index)->dictionary())) return true;
    }
    return false;
}

/// The form as it is built, without a word about kids that inherit what kind of field they are.
OpenedForm builtForm(Document& document) {
    Host::HeldLog log;
    Host::Error::set(Host::NoError);
    OpenedForm built{document.form(), {}};
    if (!built.form) log.letOut(); // to who holds it back, and tells why
    orFail(built.form);
    if (Host::Error::get() == FormIncomplete)
        built.incomplete.emplace(FormIncomplete, log.errors());
    return built;
}

} // namespace

OpenedForm openForm(Document& document) {
    Changes changes(document);
    bringInArrays(changes);
    RadioGroups groups(changes);
    groups.join(formEntries(document));
    // The form is built once, and shows what was brought in: nothing may fail from here on.
    OpenedForm opened = builtForm(document);
    if (!hasFormerFields(*opened.form, groups)) changes.keep();
    return opened;
}

} // namespace Libraries::Files::PDF::Tools
