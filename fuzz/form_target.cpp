// The interactive form of a document: build it, look at all of it, find fields by name and path,
// set values, fill it in by the tools, flatten it, write.

#include "target.h"

#include <host/string.h>
#include <pdf/document.h>
#include <pdf/form.h>
#include <pdf/tools/forms.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace Libraries::Files::PDF;
using namespace Host::Literals;
using Fuzzing::claim;

namespace {

void set(Fields::Button& button) {
    static_cast<void>(button.value());
    static_cast<void>(button.defaultValue());
    static_cast<void>(button.state());
    static_cast<void>(button.options());
    for (const Ref<Name>& state : button.states()) {
        claim(state != nullptr, "a state has a name");
        static_cast<void>(button.setValue(state));
        static_cast<void>(button.setState(state));
    }
    static_cast<void>(button.setState(nullptr));
}

void set(Fields::Text& text) {
    static_cast<void>(text.maxLen());
    static_cast<void>(text.defaultValue());
    const Ref<String> value = String::create("value"_str);
    if (text.setValue(value)) claim(value->equal(text.value()), "a text field holds what was set");
    static_cast<void>(text.setValue(text.defaultValue()));
}

void set(Fields::Choice& choice) {
    static_cast<void>(choice.defaultValue());
    static_cast<void>(choice.options());
    static_cast<void>(choice.selectedIndices());
    const Ref<Value> one = String::create("one"_str);
    static_cast<void>(choice.setValue(Array::create({one})));
    static_cast<void>(choice.setValue(choice.options()));
    if (choice.setValue(one)) claim(one->equal(choice.value()), "a choice holds what was set");
}

void lookAt(const Field& field) {
    static_cast<void>(field.fieldType());
    static_cast<void>(field.flags());
    static_cast<void>(field.alternateName());
    static_cast<void>(field.mappingName());
    static_cast<void>(field.appearances());
    static_cast<void>(field.normalAppearance());
    static_cast<void>(field.defaultResources());
    static_cast<void>(field.defaultAppearance());
    static_cast<void>(field.quadding());
    const Ref<String> name = field.partialName();
    const Ref<Host::String> text = name ? name->asText() : nullptr;
    const Ref<Field> parent = field.parent();
    if (parent && text && !text->empty()) {
        claim(parent->fieldByName(text) != nullptr, "a kid is found by its name");
    }
}

void walk(const Form& form, Field& field) {
    lookAt(field);
    if (auto* button = dynamic_cast<Fields::Button*>(&field)) set(*button);
    if (auto* text = dynamic_cast<Fields::Text*>(&field)) set(*text);
    if (auto* choice = dynamic_cast<Fields::Choice*>(&field)) set(*choice);
    const Ref<Host::String> path = field.fullName();
    if (path && !path->empty()) static_cast<void>(form.fieldByPath(path));
    for (std::uint64_t index = 0; index < field.childCount(); ++index) {
        const Ref<Field> child = field.child(index);
        claim(child && child->parent().get() == &field, "a kid knows its parent");
        walk(form, *child);
    }
}

/// Looks at one field of an editor, and at its widgets.
void look(const Tools::FormEditor& form, const Ref<Field>& field) {
    const auto kind = form.kind(field);
    claim(kind && *kind != Field::Kind::Plain, "a field is of some kind");
    claim(form.flags(field) && form.values(field), "a field can be looked at");
    for (std::uint64_t index = 0; index < field->childCount(); ++index)
        claim(form.options(field->child(index)).has_value(), "what can be chosen is told");
}

/// Fills in one field in several ways. What fails changes nothing.
void fill(Tools::FormEditor& form, const std::string& path, std::string_view text) {
    const auto field = form.field(path);
    if (!field) return; // a name with a dot in it
    std::vector<std::string> texts = {std::string(text), "", "Off"};
    auto options = form.options(*field);
    claim(options.has_value(), "what can be chosen is told");
    for (Tools::FieldOption& option : *options)
        texts.push_back(std::move(option.text));
    texts.resize(std::min<std::size_t>(texts.size(), 6));
    for (const std::string& value : texts) {
        const auto before = Fuzzing::write(*form.document());
        if (!form.fill(path, value)) {
            claim(Fuzzing::write(*form.document()).bytes == before.bytes,
                  "what fails changes nothing");
        }
    }
    const std::vector<std::string_view> several(texts.begin(), texts.end());
    static_cast<void>(form.choose(path, several));
    static_cast<void>(form.values(*field));
}

void useTools(std::span<const std::uint8_t> data) {
    const Ref<Document> document = Document::create(Fuzzing::stripeOf(data));
    const std::size_t tail = std::min<std::size_t>(data.size(), 40);
    const std::string text(data.end() - static_cast<std::ptrdiff_t>(tail), data.end());
    Host::Error::set(InvalidArgument);
    auto form = Tools::FormEditor::of(document);
    claim(Host::Error::get() == InvalidArgument, "tools set no code");
    if (form) {
        for (const Ref<Field>& field : *form)
            look(*form, field);
        constexpr std::size_t most = 8; // each is followed by a rewrite
        for (const Ref<Field>& field : std::span(form->begin(), std::min(form->size(), most))) {
            const Ref<Host::String> path = field->fullName();
            if (path && !path->empty()) fill(*form, path->utf8(), text);
        }
    }
    const auto before = Fuzzing::write(*document);
    Host::Error::set(InvalidArgument);
    const auto flattened = Tools::flattenForm(document);
    claim(Host::Error::get() == InvalidArgument, "tools set no code");
    if (!flattened) {
        claim(Fuzzing::write(*document).bytes == before.bytes, "what fails changes nothing");
    }
    static_cast<void>(Fuzzing::write(*document));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzzing::silenceLog();
    Ref<Document> document = Document::create(Fuzzing::stripeOf({data, size}));
    if (!document) return 0;
    useTools({data, size});
    const Ref<Form> form = document->form();
    if (!form) return 0;

    claim(document->form() == form, "the form is built once");
    static_cast<void>(form->needAppearances());
    static_cast<void>(form->quadding());
    static_cast<void>(form->defaultAppearance());
    static_cast<void>(form->defaultResources());
    static_cast<void>(form->calculationOrder());
    for (std::uint64_t index = 0; index < form->fieldCount(); ++index)
        walk(*form, *form->field(index));
    static_cast<void>(Fuzzing::write(*document));

    // The form outlives its document and has nothing left to look into.
    document = nullptr;
    if (form->fieldCount() != 0) static_cast<void>(form->field(0)->fullName());
    return 0;
}
