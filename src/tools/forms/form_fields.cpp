#include "tools/forms/form_fields.h"

#include "tools/forms/field_entries.h"
#include "tools/references.h"

#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

bool isNamed(const Ref<Dictionary>& field) {
    return findEntry(field, "T") != nullptr;
}

/// A node that waits for its turn; the kind of the one above it, by an FT from so far up.
struct Waiting {
    Ref<Field> node;
    Field::Kind kind = Field::Kind::Plain;
    std::size_t distance = 0;
};

} // namespace

std::vector<Ref<Field>> fieldsOf(const Document& document, const Form& form) {
    constexpr Field::Kind none = Field::Kind::Plain;
    std::vector<Ref<Field>> fields;
    std::vector<Waiting> waiting;
    for (std::uint64_t index = form.fieldCount(); index-- > 0;)
        waiting.push_back({form.field(index)});
    while (!waiting.empty()) {
        auto [node, kindAbove, distanceAbove] = std::move(waiting.back());
        waiting.pop_back();
        const Ref<Dictionary> own = node->dictionary();
        const Ref<Value> type = followEntry(document, own, "FT");
        const std::size_t distance = type ? 0 : distanceAbove + 1;
        const Field::Kind inherited = distance < longestInheritance ? kindAbove : none;
        const Field::Kind kind = type ? kindOf(type) : inherited;
        const std::uint64_t kids = node->childCount();
        for (std::uint64_t index = kids; index-- > 0;)
            waiting.push_back({node->child(index), kind, distance});
        const bool isWidget = kindAbove != none && !isNamed(own);
        if (kind == none || isWidget) continue;
        if (kids == 0 || !widgetsOf(document, *node).empty()) fields.push_back(std::move(node));
    }
    return fields;
}

Ref<Field> fieldOf(const Document& document, Ref<Field> widget) {
    for (std::size_t level = 0; level < longestInheritance; ++level) {
        Ref<Field> above = isNamed(widget->dictionary()) ? nullptr : widget->parent();
        if (!above || FieldEntries(document, *above).kind() == Field::Kind::Plain) break;
        widget = std::move(above);
    }
    return widget;
}

std::vector<Ref<Dictionary>> widgetsOf(const Document& document, const Field& field) {
    std::vector<Ref<Dictionary>> widgets;
    for (std::uint64_t index = 0; index < field.childCount(); ++index) {
        Ref<Dictionary> kid = field.child(index)->dictionary();
        if (kid && !isNamed(kid)) widgets.push_back(std::move(kid));
    }
    Ref<Dictionary> own = field.dictionary();
    const bool isOne = field.childCount() == 0 || followEntry(document, own, "Rect");
    if (own && isOne) widgets.push_back(std::move(own));
    return widgets;
}

} // namespace Libraries::Files::PDF::Tools
