#include "tools/failure.h"
#include "tools/forms/field_options.h"
#include "tools/forms/filling.h"
#include "tools/forms/form_fields.h"
#include "tools/forms/form_opening.h"
#include "tools/forms/form_text.h"
#include "tools/references.h"

#include <pdf/tools/forms.h>

#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// The field at a path, or the one whose widget is there.
Ref<Field> fieldAt(const Document& document, const Form& form, std::string_view path) {
    const Ref<Host::String> text = orThrow(Host::String::create(path));
    Ref<Field> found = quietly([&] { return form.fieldByPath(text); });
    if (found) return fieldOf(document, std::move(found));
    if (path.empty()) fail(InvalidArgument, "The path of a field is empty");
    fail(Host::Error::get(), "There is no field ", path);
}

/// Looks at a field, or at the one whose widget it is.
template <class Look>
auto lookedAt(const Ref<Document>& document, const Ref<Field>& field, Look look) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        requireArgument(field, "field");
        if (document->homeOf(*field) == Home::Elsewhere)
            fail(InvalidArgument, "The field belongs to another document");
        return look(*fieldOf(*document, field));
    });
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

std::vector<std::string> valuesOf(const FieldEntries& entries) {
    const Ref<Name> state = Host::cast<Name>(entries.find("V"));
    return state ? std::vector<std::string>{textOf(*state)} : selectionOf(entries);
}

/// Sets the field at a path by `set(filling)`.
template <class Set>
Result<Filled> filled(const Ref<Document>& document, const Ref<Form>& form, std::string_view path,
                      Set set) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        Changes changes(*document);
        const Ref<Field> field = fieldAt(*document, *form, path);
        Filled result = at([&] { return "field " + std::string(path); },
                           [&] {
                               Filling filling(changes, *form, field);
                               return set(filling);
                           });
        changes.keep();
        return result;
    });
}

} // namespace

FormEditor::FormEditor(Ref<Document> document, Ref<Form> form, std::optional<Failure> incomplete)
    : document_(std::move(document)),
      form_(std::move(form)),
      fields_(fieldsOf(*document_, *form_)),
      incomplete_(std::move(incomplete)) {}

Result<FormEditor> FormEditor::of(const Ref<Document>& document) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        OpenedForm opened = openForm(*document);
        return FormEditor(document, std::move(opened.form), std::move(opened.incomplete));
    });
}

Result<Ref<Field>> FormEditor::field(std::string_view path) const noexcept {
    return guarded([&] {
        requireArgument(document_, "document");
        return fieldAt(*document_, *form_, path);
    });
}

Result<Field::Kind> FormEditor::kind(const Ref<Field>& field) const noexcept {
    return lookedAt(document_, field,
                    [&](const Field& held) { return FieldEntries(*document_, held).kind(); });
}

Result<std::uint32_t> FormEditor::flags(const Ref<Field>& field) const noexcept {
    return lookedAt(document_, field,
                    [&](const Field& held) { return FieldEntries(*document_, held).flags(); });
}

Result<std::vector<FieldOption>> FormEditor::options(const Ref<Field>& field) const noexcept {
    return lookedAt(document_, field,
                    [&](const Field& held) { return optionsFor(*document_, held); });
}

Result<std::vector<std::string>> FormEditor::values(const Ref<Field>& field) const noexcept {
    return lookedAt(document_, field,
                    [&](const Field& held) { return valuesOf(FieldEntries(*document_, held)); });
}

Result<Filled> FormEditor::fill(std::string_view path, std::string_view text) noexcept {
    return filled(document_, form_, path, [&](Filling& filling) { return filling.set(text); });
}

Result<Filled> FormEditor::choose(std::string_view path,
                                  std::span<const std::string_view> options) noexcept {
    return filled(document_, form_, path,
                  [&](Filling& filling) { return filling.choose(options); });
}

} // namespace Libraries::Files::PDF::Tools
