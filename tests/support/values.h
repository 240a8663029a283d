#pragma once

#include "values/array.h"
#include "values/dictionary.h"
#include "values/scalars.h"

#include <initializer_list>
#include <string_view>
#include <vector>

namespace Support {

namespace PDF = Libraries::Files::PDF;
using AnyValue = Host::Ref<PDF::Value>;

/// The value under another interface, or null.
template <class Interface>
Host::Ref<Interface> castTo(const AnyValue& value) {
    return Host::cast<Interface>(value);
}

inline Host::Ref<Host::String> text(std::string_view utf8) {
    return Host::String::create(utf8);
}
inline AnyValue name(std::string_view utf8) {
    return Host::makeOrThrow<PDF::NameObj>(text(utf8));
}
inline AnyValue number(std::int64_t integer, std::uint64_t fraction = 0) {
    return Host::makeOrThrow<PDF::NumberObj>(integer, fraction);
}
inline AnyValue null() {
    return Host::makeOrThrow<PDF::NullObj>();
}
inline AnyValue boolean(bool value) {
    return Host::makeOrThrow<PDF::BooleanObj>(value);
}
inline AnyValue reference(std::uint32_t id, std::uint16_t generation) {
    return Host::makeOrThrow<PDF::ObjectRefObj>(id, generation);
}
inline AnyValue byteString(const std::vector<unsigned char>& bytes) {
    return PDF::String::create(Host::TConstArray<unsigned char>::create(bytes));
}
inline Host::Ref<PDF::Array> array(const std::vector<AnyValue>& elements) {
    return PDF::Array::create(elements);
}
/// Of entries in any order, as the scanner makes it: not modified.
inline Host::Ref<PDF::DictionaryObj>
dictionary(std::initializer_list<std::pair<std::string_view, AnyValue>> entries) {
    PDF::DictionaryObj::Entries made;
    for (const auto& [key, value] : entries)
        made.push_back({text(key), value});
    return Host::makeOrThrow<PDF::DictionaryObj>(std::move(made));
}
/// `depth` containers around `core`, arrays and dictionaries by turns.
inline AnyValue nested(unsigned depth, AnyValue core = null()) {
    for (unsigned level = 0; level < depth; ++level)
        core = level % 2 == 0 ? AnyValue(array({core})) : AnyValue(dictionary({{"K", core}}));
    return core;
}

/// A value of an application's own class, under the interface of its kind or of any value alone,
/// whatever kind it claims.
template <class Interface>
class Foreign : public Interface {
public:
    explicit Foreign(PDF::Value::Type type) : type_(type) {}
    [[nodiscard]] PDF::Value::Type type() const noexcept override { return type_; }
    [[nodiscard]] Host::Ref<Host::String> asText() const noexcept override { return text("?"); }
    [[nodiscard]] bool equal(AnyValue) const noexcept override { return true; }
    [[nodiscard]] bool changed() const noexcept override { return true; }

private:
    PDF::Value::Type type_;
};

inline AnyValue foreign(std::uint32_t type) {
    return Host::makeOrThrow<Foreign<PDF::Value>>(static_cast<PDF::Value::Type>(type));
}

} // namespace Support
