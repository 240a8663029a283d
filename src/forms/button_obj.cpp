#include "forms/button_obj.h"

#include "host/guard.h"
#include "values/failure.h"

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

/// An option as the name of a state: a name itself, or a string by its text. Null for anything
/// else.
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

} // namespace Libraries::Files::PDF
