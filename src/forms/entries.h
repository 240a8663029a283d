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

/// Takes the value of one entry: checks its kind and stores it, or logs what is wrong with it.
using EntryHandler = std::function<void(const Ref<Value>& value, const Ref<Host::String>& key)>;

struct EntryReader {
    const Ref<Host::String>& key;
    EntryHandler handle;
};

/// Calls the handler of each entry that the dictionary has.
void readEntries(const Dictionary& dict, std::initializer_list<EntryReader> readers);

/// Throws `std::bad_alloc` if exhausted memory made the last step fail. The result of building a
/// form is kept for good, so that it must not depend on memory.
void throwIfExhausted();

/// Follows a reference and gives any other value as it is. Null for a reference to nothing.
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

/// The value of an entry as the kind that is right there.
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

/// For an entry that is read at each call. It logs a wrong kind once.
template <class Interface>
[[nodiscard]] EntryHandler checking() {
    return [](const Ref<Value>& value, const Ref<Host::String>& key) {
        static_cast<void>(expectEntry<Interface>(value, key));
    };
}

/// Stores the dictionary that is the value, or that the value refers to.
[[nodiscard]] EntryHandler following(const Ref<Document>& document, Ref<Dictionary>& place);

[[nodiscard]] EntryHandler storingQuadding(Quadding& place);

} // namespace Libraries::Files::PDF
