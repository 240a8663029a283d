#include "tools/forms/field_entries.h"

#include "tools/forms/form_text.h"
#include "tools/references.h"

#include <algorithm>
#include <array>

namespace Libraries::Files::PDF::Tools {

Ref<Dictionary> catalogEntries(const Document& document) {
    return followEntry<Dictionary>(document, document.trailer(), "Root");
}

Ref<Dictionary> formEntries(const Document& document) {
    return followEntry<Dictionary>(document, catalogEntries(document), "AcroForm");
}

Field::Kind kindOf(const Ref<Value>& fieldType) {
    constexpr std::string_view names[] = {"Btn", "Tx", "Ch", "Sig"};
    const auto* const name = std::ranges::find_if(
        names, [&](std::string_view known) { return isName(fieldType, known); });
    if (name == std::end(names)) return Field::Kind::Plain;
    return static_cast<Field::Kind>(name - names + static_cast<int>(Field::Kind::Button));
}

FieldEntries::FieldEntries(const Document& document, const Field& field) : FieldEntries(document) {
    chain_.push_back(field.dictionary());
    for (Ref<Field> above = field.parent(); above && chain_.size() < longestInheritance;
         above = above->parent()) {
        chain_.push_back(above->dictionary());
    }
    std::erase(chain_, nullptr);
}

FieldEntries::FieldEntries(const Document& document, const Ref<Dictionary>& widget)
    : FieldEntries(document) {
    for (Ref<Dictionary> entries = widget; entries && chain_.size() < longestInheritance;
         entries = followEntry<Dictionary>(document, entries, "Parent")) {
        chain_.push_back(entries);
    }
}

FieldEntries FieldEntries::of(const Ref<Dictionary>& widget) const {
    FieldEntries entries = *this;
    if (widget != own()) entries.chain_.insert(entries.chain_.begin(), widget);
    return entries;
}

const Ref<Dictionary>& FieldEntries::form() const {
    if (!form_) form_ = formEntries(document_);
    return *form_;
}

std::string FieldEntries::path() const {
    std::string path;
    for (auto entries = chain_.rbegin(); entries != chain_.rend(); ++entries) {
        const std::string name = textOf(followEntry(document_, *entries, "T"));
        if (!name.empty()) path.append(path.empty() ? "" : ".").append(name);
    }
    return path;
}

Ref<Value> FieldEntries::find(std::string_view key) const {
    for (const Ref<Dictionary>& entries : chain_) {
        if (Ref<Value> value = followEntry(document_, entries, key)) return value;
    }
    constexpr std::array<std::string_view, 3> defaults = {"DA", "DR", "Q"};
    const bool isDefault = std::ranges::find(defaults, key) != defaults.end();
    return isDefault ? followEntry(document_, form(), key) : nullptr;
}

std::string FieldEntries::text(std::string_view key) const {
    return textOf(find(key));
}

std::int64_t FieldEntries::number(std::string_view key) const {
    const Ref<Number> number = Host::cast<Number>(find(key));
    return number ? number->integer() : 0;
}

} // namespace Libraries::Files::PDF::Tools
