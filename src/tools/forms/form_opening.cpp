#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/forms/form_field.h"
#include "tools/forms/form_text.h"
#include "tools/forms/radio_groups.h"
#include "tools/references.h"

#include <host/held_log.h>
#include <pdf/tools/filling.h>

#include <unordered_set>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Puts the arrays of a form's tree where a `Form` looks for them: directly into their fields.
class ArraysBroughtIn {
public:
    ArraysBroughtIn(Document& document, Changes& changes) noexcept
        : document_(document), changes_(changes) {}

    [[nodiscard]] bool run() {
        const Ref<Dictionary> form = formEntries(document_);
        if (form && !bringIn(form, "Fields")) return false;
        while (!waiting_.empty()) {
            const Ref<Dictionary> field = std::move(waiting_.back());
            waiting_.pop_back();
            if (!bringIn(field, "Kids")) return false;
        }
        return true;
    }

private:
    [[nodiscard]] bool bringIn(const Ref<Dictionary>& from, std::string_view key);

    Document& document_;
    Changes& changes_;
    std::vector<Ref<Dictionary>> waiting_;
    std::unordered_set<const Value*> seen_;
};

bool ArraysBroughtIn::bringIn(const Ref<Dictionary>& from, std::string_view key) {
    const Ref<Value> entry = entryOf(document_, *from, key);
    const Ref<Array> kids = Host::cast<Array>(follow(document_, entry));
    // An array belongs to one field: many copies of a long one would be more than the file holds.
    if (!kids || !seen_.insert(kids.get()).second) return true;
    std::vector<Ref<Value>> elements;
    for (std::uint64_t index = 0; index < kids->size(); ++index) {
        elements.push_back(kids->get(index));
        Ref<Dictionary> kid = Host::cast<Dictionary>(follow(document_, elements.back()));
        if (kid && seen_.insert(kid.get()).second) waiting_.push_back(std::move(kid));
    }
    const bool direct = entry->type() != Value::Type::ObjectRef;
    return direct || changes_.set(from, key, orThrow(Array::create(elements)));
}

/// Whether the form was built before its buttons were joined: it shows what they were.
bool hasFormerFields(const Form& form, const RadioGroups& groups) {
    for (std::uint64_t index = 0; index < form.fieldCount(); ++index) {
        const Ref<Field> field = form.field(index);
        if (field && groups.hasJoined(field->dictionary())) return true;
    }
    return false;
}

/// The form as it is built, without a word about kids that inherit what kind of field they are.
Ref<Form> builtForm(Document& document) {
    const std::uint32_t former = Host::Error::get();
    Host::Error::set(Host::NoError);
    Host::HeldLog log;
    Ref<Form> form = document.form();
    if (form && Host::Error::get() == Host::NoError) {
        Host::Error::set(former);
    } else {
        log.letOut();
    }
    return form;
}

} // namespace

Ref<Form> openForm(Document& document) noexcept {
    return guarded([&]() -> Ref<Form> {
        Changes changes(document);
        if (!ArraysBroughtIn(document, changes).run()) return nullptr;
        RadioGroups groups(document, changes);
        if (!groups.join(formEntries(document))) return nullptr;
        Ref<Form> form = builtForm(document);
        if (form && !hasFormerFields(*form, groups)) changes.keep();
        return form;
    });
}

namespace {

/// What a look gives that reports no failure: nothing where memory is exhausted.
template <class Look>
auto lookedAt(const Document& document, const Field& field, Look look) noexcept {
    decltype(look(field)) found;
    if (document.homeOf(field) == Home::Elsewhere) {
        Host::Error::set(Host::InvalidArgument);
        return found;
    }
    const std::uint32_t code = Host::Error::get();
    try {
        const Ref<Field> above = fieldOfWidget(document, field);
        found = look(above ? *above : field);
    } catch (const std::exception&) {
    }
    Host::Error::set(code);
    return found;
}

std::vector<FieldOption> optionsFor(const Document& document, const Field& field) {
    const FieldEntries entries(document, field);
    std::vector<FieldOption> result;
    if (entries.kind() == Field::Kind::Button && !entries.has(FieldFlags::pushButton)) {
        result = statesOf(entries, widgetsOf(document, field));
    } else if (entries.kind() == Field::Kind::Choice) {
        for (ChoiceOption& option : optionsOf(entries))
            result.push_back({std::move(option.value), std::move(option.text)});
    }
    return result;
}

std::vector<std::string> valuesOf(const Document& document, const Field& field) {
    const FieldEntries entries(document, field);
    const Ref<Name> state = Host::cast<Name>(entries.find("V"));
    return state ? std::vector<std::string>{textOf(*state)} : selectionOf(entries);
}

} // namespace

std::vector<FieldOption> fieldOptions(const Document& document, const Field& field) noexcept {
    return lookedAt(document, field, [&](const Field& held) { return optionsFor(document, held); });
}

std::vector<std::string> fieldValues(const Document& document, const Field& field) noexcept {
    return lookedAt(document, field, [&](const Field& held) { return valuesOf(document, held); });
}

} // namespace Libraries::Files::PDF::Tools
