#pragma once

#include "values/kind.h"

#include <pdf/values.h>

#include <cstdint>

namespace Libraries::Files::PDF {

class NullObj final : public ValueObj<Null, Value::Type::Null> {
public:
    [[nodiscard]] Ref<Host::String> asText() const noexcept override;
    [[nodiscard]] bool equal(Ref<Value> other) const noexcept override;
};

class BooleanObj final : public ValueObj<Boolean, Value::Type::Boolean> {
public:
    explicit BooleanObj(bool value) noexcept : value_(value) {}

    [[nodiscard]] bool value() const noexcept override { return value_; }
    [[nodiscard]] Ref<Host::String> asText() const noexcept override;
    [[nodiscard]] bool equal(Ref<Value> other) const noexcept override;

private:
    bool value_;
};

class NumberObj : public ValueObj<Number, Value::Type::Number> {
public:
    NumberObj(std::int64_t integer, std::uint64_t fraction) noexcept
        : integer_(integer), fraction_(fraction) {}

    [[nodiscard]] std::int64_t integer() const noexcept override { return integer_; }
    [[nodiscard]] std::uint64_t fraction() const noexcept override { return fraction_; }
    [[nodiscard]] Ref<Host::String> asText() const noexcept override;
    [[nodiscard]] bool equal(Ref<Value> other) const noexcept override;

    /// For a stream's Length only, which re-encoding adjusts in place.
    virtual void integer(std::int64_t integer) noexcept { integer_ = integer; }

private:
    std::int64_t integer_;
    std::uint64_t fraction_;
};

/// A number that remembers how it was spelled. It is a class of its own because few numbers need
/// it.
class SpelledNumberObj final : public NumberObj {
public:
    SpelledNumberObj(std::int64_t integer, std::uint64_t fraction,
                     Ref<Host::String> spelling) noexcept
        : NumberObj(integer, fraction), spelling_(std::move(spelling)) {}

    using NumberObj::integer;
    void integer(std::int64_t integer) noexcept override {
        NumberObj::integer(integer);
        spelling_ = nullptr;
    }
    [[nodiscard]] Ref<Host::String> spelling() const noexcept override { return spelling_; }

private:
    Ref<Host::String> spelling_;
};

class StringObj final : public ValueObj<String, Value::Type::String> {
public:
    explicit StringObj(Ref<Host::String> text) noexcept : text_(std::move(text)) {}
    explicit StringObj(Ref<Host::TConstArray<unsigned char>> bytes) noexcept
        : bytes_(std::move(bytes)) {}

    [[nodiscard]] Ref<Host::String> text() const noexcept override { return text_; }
    [[nodiscard]] Ref<Host::TConstArray<unsigned char>> bytes() const noexcept override {
        return bytes_;
    }
    [[nodiscard]] Ref<Host::String> asText() const noexcept override;
    [[nodiscard]] bool equal(Ref<Value> other) const noexcept override;

private:
    Ref<Host::String> text_;
    Ref<Host::TConstArray<unsigned char>> bytes_;
};

class NameObj final : public ValueObj<Name, Value::Type::Name> {
public:
    explicit NameObj(Ref<Host::String> name) noexcept : name_(std::move(name)) {}

    [[nodiscard]] Ref<Host::String> name() const noexcept override { return name_; }
    [[nodiscard]] const Ref<Host::String>& text() const noexcept { return name_; }
    [[nodiscard]] Ref<Host::String> asText() const noexcept override { return name_; }
    [[nodiscard]] bool equal(Ref<Value> other) const noexcept override;

private:
    Ref<Host::String> name_;
};

class ObjectRefObj final : public ValueObj<ObjectRef, Value::Type::ObjectRef> {
public:
    ObjectRefObj(std::uint32_t id, std::uint16_t generation) noexcept
        : id_(id), generation_(generation) {}

    [[nodiscard]] std::uint32_t id() const noexcept override { return id_; }
    [[nodiscard]] std::uint16_t generation() const noexcept override { return generation_; }
    [[nodiscard]] Ref<Host::String> asText() const noexcept override;
    [[nodiscard]] bool equal(Ref<Value> other) const noexcept override;

private:
    std::uint32_t id_;
    std::uint16_t generation_;
};

template <>
struct Kind<Null> : KindOf<NullObj, Value::Type::Null> {};
template <>
struct Kind<Boolean> : KindOf<BooleanObj, Value::Type::Boolean> {};
template <>
struct Kind<Number> : KindOf<NumberObj, Value::Type::Number> {};
template <>
struct Kind<String> : KindOf<StringObj, Value::Type::String> {};
template <>
struct Kind<Name> : KindOf<NameObj, Value::Type::Name> {};
template <>
struct Kind<ObjectRef> : KindOf<ObjectRefObj, Value::Type::ObjectRef> {};

/// The text form that references and objects share: 12 (0).
[[nodiscard]] Ref<Host::String> identityText(std::uint32_t id, std::uint16_t generation) noexcept;

} // namespace Libraries::Files::PDF
