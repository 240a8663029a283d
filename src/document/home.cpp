#include "document/document_obj.h"
#include "forms/field_obj.h"
#include "forms/form_obj.h"

namespace Libraries::Files::PDF {

namespace {

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
