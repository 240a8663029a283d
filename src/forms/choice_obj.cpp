#include "forms/choice_obj.h"

#include "values/failure.h"

#include <utility>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

ChoiceObj::ChoiceObj(FieldPlace place) : FieldObj(std::move(place)) {
    readEntries(*dict, {{"Opt"_str, checking<Array>()}});
}

bool ChoiceObj::setValue(Ref<Value> value) noexcept {
    const bool single = !value || ofKind<String>(value) != nullptr;
    if (!single && (flags() & FieldFlags::multiSelect) == 0) {
        return failField(
            InvalidArgument,
            "Non-string value not supported for single entry choice field: ", fullName());
    }
    if (!single && !acceptSeveral(value)) return false;
    return dict->set("V"_str, std::move(value));
}

bool ChoiceObj::acceptSeveral(Ref<Value>& value) const noexcept {
    if (value->type() != Value::Type::Array) {
        return failField(
            InvalidArgument,
            "Multi-select field requires either an Array or String value: ", fullName());
    }
    const Array* array = as<Array>(value);
    if (array == nullptr) {
        return failField(InvalidArgument, "Failed to cast value to array for field: ", fullName());
    }
    const std::uint64_t count = array->size();
    for (std::uint64_t index = 0; index < count; ++index) {
        if (ofKind<String>(array->get(index)) == nullptr) {
            return failField(InvalidArgument, "Element ", index,
                             " of new value is not a String for ", fullName());
        }
    }
    if (count == 0) {
        warnOfField("Assuming unset value for empty array for field: ", fullName());
        value = nullptr;
    } else if (count == 1) {
        warnOfField("Keeping only single value of array for field: ", fullName());
        value = array->get(0);
    }
    return true;
}

Ref<Value> ChoiceObj::value() const noexcept {
    return dict->find("V"_str);
}

Ref<Value> ChoiceObj::defaultValue() const noexcept {
    return dict->find("DV"_str);
}

Ref<Array> ChoiceObj::options() const noexcept {
    return dict->findAsArray("Opt"_str, true);
}

Ref<Array> ChoiceObj::selectedIndices() const noexcept {
    return dict->findAsArray("I"_str, true);
}

} // namespace Libraries::Files::PDF
