#pragma once

#include "forms/failure.h"
#include "values/array.h"
#include "values/dictionary.h"
#include "values/kind.h"
#include "values/scalars.h"

#include <pdf/document.h>
#include <pdf/form.h>

#include <functional>
#include <initializer_list>

namespace Libraries::Files::PDF {

/// Takes the value of one entry: checks its kind and stores it, or says what is wrong with it.
using EntryHandler = std::function<void(const Ref<Value>& value, const Ref<Host::String>& key)>;

struct EntryReader {
    const Ref<Host::String>& key;
    EntryHandler handle;
};

/// Hands each entry that the dictionary has to its handler.
void readEntries(const Dictionary& dict, std::initializer_list<EntryReader> readers);

/// Throws `std::bad_alloc` where it was exhausted memory that made the last step fail: what comes
/// of building a form is kept for good, and must not depend on that.
void throwIfExhausted();

/// What a reference leads to, anything else as it is; null where a reference leads nowhere.
[[nodiscard]] Ref<Value> followed(const Ref<Document>& document, const Ref<Value>& value) noexcept;

template <class Interface>
inline constexpr const char* castMessage = nullptr;
template <>
inline constexpr const char* castMessage<Number> = "Failed to cast value to Number: ";
template <>
inline constexpr const char* castMessage<String> = "Failed to cast value to String: ";
template <>
inline constexpr const char* castMessage<Dictionary> = "Failed to cast value to Dictionary: ";
template <>
inline constexpr const char* castMessage<Array> = "Failed to cast value to Array: ";
template <>
inline constexpr const char* castMessage<Boolean> = "Failed to cast value to Boolean: ";
template <>
inline constexpr const char* castMessage<Name> = "Failed to cast value to Name: ";

/// The value of an entry as the one kind that is right there.
template <class Interface>
[[nodiscard]] Ref<Interface> expectEntry(const Ref<Value>& value,
                                         const Ref<Host::String>& key) noexcept {
    constexpr Value::Type expected = Kind<Interface>::number;
    if (value->type() != expected) {
        return refuseField("Unexpected type for value ", key, "; expected = ", expected,
                           ", got = ", value->type());
    }
    Ref<Interface> typed(as<Interface>(value));
    if (!typed) return refuseField(castMessage<Interface>, key);
    return typed;
}

/// Stores the value in `place`, which must outlive the handler.
template <class Interface>
[[nodiscard]] EntryHandler storing(Ref<Interface>& place) {
    return [&place](const Ref<Value>& value, const Ref<Host::String>& key) {
        place = expectEntry<Interface>(value, key);
    };
}

/// For an entry that is read anew whenever it is asked for: a wrong kind is reported once.
template <class Interface>
[[nodiscard]] EntryHandler checking() {
    return [](const Ref<Value>& value, const Ref<Host::String>& key) {
        static_cast<void>(expectEntry<Interface>(value, key));
    };
}

/// Stores the dictionary that the value is or refers to.
[[nodiscard]] EntryHandler following(const Ref<Document>& document, Ref<Dictionary>& place);

[[nodiscard]] EntryHandler storingQuadding(Quadding& place);

} // namespace Libraries::Files::PDF
