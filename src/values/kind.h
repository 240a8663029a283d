#pragma once

#include <pdf/values.h>

#include <new>
#include <typeinfo>
#include <utility>

namespace Libraries::Files::PDF {

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

/// The value under another interface, or null where it has it not, whatever kind it claims.
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

/// As `as`, with a reference taken.
template <class Interface>
[[nodiscard]] Ref<Interface> castTo(const Ref<Value>& value) noexcept {
    return Ref<Interface>(as<Interface>(value.get()));
}

/// The value as one kind: null where its number or its class says otherwise.
template <class Interface>
[[nodiscard]] Interface* ofKind(const Ref<Value>& value) noexcept {
    if (!value || value->type() != Kind<Interface>::number) return nullptr;
    return as<Interface>(value.get());
}

/// A new value, for code that runs under a guard: throws `std::bad_alloc`.
template <class Implementation, class... Arguments>
[[nodiscard]] Ref<Implementation> newValue(Arguments&&... arguments) {
    return Ref<Implementation>(new Implementation(std::forward<Arguments>(arguments)...));
}

/// Passes a handle on, for code that runs under a guard: null can only mean exhausted memory.
template <class T>
[[nodiscard]] Ref<T> made(Ref<T> object) {
    if (!object) throw std::bad_alloc();
    return object;
}

} // namespace Libraries::Files::PDF
