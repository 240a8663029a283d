#pragma once

#include "host/guard.h"

#include <pdf/values.h>

#include <type_traits>
#include <typeinfo>

namespace Libraries::Files::PDF {

using Host::makeOrThrow;
using Host::orThrow;

/// Base of the implementations of values.
template <class Interface, Value::Type kind>
class ValueObj : public Interface {
public:
    [[nodiscard]] Value::Type type() const noexcept final { return kind; }
    [[nodiscard]] bool changed() const noexcept override { return false; }
};

/// The class that implements an interface, and the number of its kind.
template <class Interface>
struct Kind;

template <class Class, Value::Type type>
struct KindOf {
    using Implementation = Class;
    static constexpr Value::Type number = type;
};

template <>
struct Kind<Stream> : KindOf<StreamObj, Value::Type::Stream> {};

// Three conversions of a value to its kind. They give null if the value is something else, take no
// reference, and log nothing.

/// The value under the interface of a kind. It does not ask for the number of the kind: callers
/// have looked at that, and log another message for a value whose class does not fit its number.
///
/// Nearly every value is of the library's own class. One comparison then saves the dynamic cast,
/// which takes fifty times as long.
template <class Interface>
[[nodiscard]] Interface* as(Value* value) noexcept {
    using Implementation = typename Kind<Interface>::Implementation;
    if (value == nullptr) return nullptr;
    if (typeid(*value) == typeid(Implementation)) return static_cast<Implementation*>(value);
    return dynamic_cast<Interface*>(value);
}

template <class Interface>
[[nodiscard]] Interface* as(const Ref<Value>& value) noexcept {
    return as<Interface>(value.get());
}

/// The value if both its number and its class are those of a kind.
template <class Interface>
[[nodiscard]] Interface* ofKind(const Ref<Value>& value) noexcept {
    if (!value || value->type() != Kind<Interface>::number) return nullptr;
    return as<Interface>(value.get());
}

/// An object, value or not, if it is of a class of the library's own. For members that no interface
/// has.
template <class Class, class Base>
[[nodiscard]] Class* own(Base* object) noexcept {
    static_assert(std::is_final_v<Class>);
    if (object == nullptr || typeid(*object) != typeid(Class)) return nullptr;
    return static_cast<Class*>(object);
}

template <class Class, class Base>
[[nodiscard]] Class* own(const Ref<Base>& object) noexcept {
    return own<Class>(object.get());
}

} // namespace Libraries::Files::PDF
