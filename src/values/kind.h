#pragma once

#include "host/guard.h"

#include <pdf/values.h>

#include <type_traits>
#include <typeinfo>

namespace Libraries::Files::PDF {

using Host::makeOrThrow;
using Host::orThrow;

/// What the implementations of values share.
template <class Interface, Value::Type kind>
class ValueObj : public Interface {
public:
    [[nodiscard]] Value::Type type() const noexcept final { return kind; }
    [[nodiscard]] bool changed() const noexcept override { return false; }
};

/// Which class implements an interface, and under which kind number.
template <class Interface>
struct Kind;

template <class Class, Value::Type type>
struct KindOf {
    using Implementation = Class;
    static constexpr Value::Type number = type;
};

template <>
struct Kind<Stream> : KindOf<StreamObj, Value::Type::Stream> {};

// Three ways down from a value. All give null where the value is something else, and borrow what
// they give; messages about it are the caller's.

/// The value under the interface of a kind, whatever kind it claims to be: for code that has looked
/// at the kind and has another thing to say of a value that lies.
///
/// Nearly every value is of the library's own class: one comparison then does what a dynamic cast
/// takes fifty for.
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

/// The value where it is of a kind, by its number and its class.
template <class Interface>
[[nodiscard]] Interface* ofKind(const Ref<Value>& value) noexcept {
    if (!value || value->type() != Kind<Interface>::number) return nullptr;
    return as<Interface>(value.get());
}

/// The value, or whatever else is counted, where it is of the library's very own class: for what no
/// interface offers.
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
