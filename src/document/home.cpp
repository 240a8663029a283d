#include "forms/field_obj.h"
#include "forms/form_obj.h"
#include "state/own_document.h"
#include "values/kind.h"

namespace Libraries::Files::PDF {

namespace {

/// An application's own document may hand out what is another one's.
const DocumentState* stateOf(const Document& document) noexcept {
    const auto* const ours = dynamic_cast<const OwnDocument*>(&document);
    return ours != nullptr ? &ours->state() : nullptr;
}

Home among(bool here) noexcept {
    return here ? Home::Here : Home::Elsewhere;
}

} // namespace

Home Document::homeOf(const PDF::Object& object) const noexcept {
    const DocumentState* const state = stateOf(*this);
    if (state == nullptr || own<const ObjectObj>(&object) == nullptr) return Home::Unknown;
    const auto* const slot = state->objects.find(object.id(), object.generation());
    return among(slot != nullptr && slot->is(object));
}

Home Document::homeOf(const Value& value) const noexcept {
    const DocumentState* const state = stateOf(*this);
    const HomeNumber home = PDF::homeOf(value);
    if (state == nullptr || !home.isKnown()) return Home::Unknown;
    return among(state->objects.has(home));
}

Home Document::homeOf(const Form& form) const noexcept {
    const auto* const ours = own<const FormObj>(&form);
    if (ours == nullptr || stateOf(*this) == nullptr) return Home::Unknown;
    return among(ours->document().lock().get() == this);
}

Home Document::homeOf(const Field& field) const noexcept {
    const auto* const ours = dynamic_cast<const FieldData*>(&field);
    if (ours == nullptr || stateOf(*this) == nullptr) return Home::Unknown;
    return among(ours->document.lock().get() == this);
}

} // namespace Libraries::Files::PDF
