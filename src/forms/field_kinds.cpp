#include "forms/field_kinds.h"

#include "host/guard.h"
#include "values/failure.h"

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

ButtonObj::ButtonObj(FieldPlace place) : FieldObj(std::move(place)) {
    readEntries(*dict, {{"DV"_str, checking<Name>()},
                        {"AS"_str, checking<Name>()},
                        {"Opt"_str, checking<Array>()}});
}

bool ButtonObj::setValue(Ref<Name> value) noexcept {
    return setEntry("V"_str, std::move(value));
}

Ref<Name> ButtonObj::value() const noexcept {
    return dict->findAsName("V"_str, true);
}

Ref<Name> ButtonObj::defaultValue() const noexcept {
    return dict->findAsName("DV"_str, true);
}

bool ButtonObj::setState(Ref<Name> state) noexcept {
    return setEntry("AS"_str, std::move(state));
}

Ref<Name> ButtonObj::state() const noexcept {
    return dict->findAsName("AS"_str, true);
}

Ref<Array> ButtonObj::options() const noexcept {
    return dict->findAsArray("Opt"_str, true);
}

bool ButtonObj::setEntry(const Ref<Host::String>& key, Ref<Name> name) noexcept {
    if (!name) return dict->set(key, nullptr);
    if ((flags() & FieldFlags::pushButton) != 0) return fail(ButtonHasNoValue);
    if (const Ref<Host::String> text = name->name(); !text || text->empty()) {
        return fail(InvalidArgument);
    }
    return dict->set(key, std::move(name));
}

std::vector<Ref<Name>> ButtonObj::states() const noexcept {
    return Host::guarded([&] {
        const Ref<Array> opt = options();
        return opt ? statesOfOptions(*opt) : statesOfAppearance();
    });
}

namespace {

/// An option as the name of a state: a name, or the text of a string. Null for anything else.
Ref<Name> asState(const Ref<Value>& option) noexcept {
    if (Name* name = ofKind<Name>(option)) return Ref<Name>(name);
    const String* string = ofKind<String>(option);
    const Ref<Host::String> text = string != nullptr ? string->asText() : nullptr;
    return text ? Name::create(text) : nullptr;
}

} // namespace

std::vector<Ref<Name>> ButtonObj::statesOfOptions(const Array& options) const {
    std::vector<Ref<Name>> names;
    for (std::uint64_t index = 0; index < options.size(); ++index) {
        Ref<Name> name = asState(options.get(index));
        if (!name) {
            return failField(StepFailed, "Failed to convert Opt entry ", index,
                             " to Name for field ", fullName());
        }
        names.push_back(std::move(name));
    }
    if (names.empty()) warnOfField("No entries in Opt array for field ", fullName());
    return names;
}

std::vector<Ref<Name>> ButtonObj::statesOfAppearance() const {
    if (!appearances()) {
        warnOfField("No AP dictionary for field ", fullName());
        return {};
    }
    const Dictionary* normal = ofKind<Dictionary>(normalAppearance());
    if (normal == nullptr) {
        warnOfField("No N dictionary in AP dictionary for field ", fullName());
        return {};
    }
    const auto keys = orThrow(normal->keys());
    if (keys->empty()) {
        warnOfField("Empty N dictionary in AP dictionary for field ", fullName());
    }
    std::vector<Ref<Name>> names;
    names.reserve(keys->size());
    for (const Ref<Host::String>& key : *keys)
        names.emplace_back(makeOrThrow<NameObj>(key));
    return names;
}

namespace {

/// Whether the value is a string of at most `limit` characters. Bytes count as a byte-order mark
/// and UTF-16 code units, even if they begin with no such mark.
bool fits(const String& value, std::uint64_t limit) noexcept {
    if (const Ref<Host::String> text = value.text()) return text->length() <= limit;
    const auto bytes = value.bytes();
    if (!bytes) return false;
    const std::uint64_t units = bytes->size() / 2;
    return units - std::min<std::uint64_t>(units, 1) <= limit;
}

} // namespace

TextObj::TextObj(FieldPlace place) : FieldObj(std::move(place)) {
    readEntries(*dict, {{"MaxLen"_str, checking<Number>()}});
}

std::uint64_t TextObj::maxLen() const noexcept {
    const Ref<Number> number = dict->findAsNumber("MaxLen"_str, true);
    return number ? static_cast<std::uint64_t>(number->integer()) : 0;
}

bool TextObj::setValue(Ref<String> value) noexcept {
    if (value) {
        const std::uint64_t limit = maxLen();
        if (limit != 0 && !fits(*value, limit)) return fail(InvalidArgument);
    }
    return dict->set("V"_str, std::move(value));
}

Ref<String> TextObj::value() const noexcept {
    return dict->findAsString("V"_str, true);
}

Ref<String> TextObj::defaultValue() const noexcept {
    return dict->findAsString("DV"_str, true);
}

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
