#pragma once

#include "packed/packed_store.h"
#include "packed/packed_value.h"
#include "values/home.h"

#include <pdf/values.h>

#include <cstdint>
#include <utility>

namespace Libraries::Files::PDF {

/// Of which document's object the value is known to be one, by its containers.
[[nodiscard]] HomeNumber homeOf(const Value& value) noexcept;
/// Notes it, unless the value is that of another object already.
void settle(const Ref<Value>& value, HomeNumber home) noexcept;
/// Forgets it, where that is the value's home.
void unsettle(const Ref<Value>& value, HomeNumber home) noexcept;

/// An object, whose value is made at the first call for it and then kept: from then on it is the
/// value, and the packed spelling is not looked at again.
class ObjectObj final : public Object {
public:
    ObjectObj(std::uint32_t id, std::uint16_t generation, Ref<Value> value) noexcept
        : id_(id), generation_(generation), value_(std::move(value)) {}
    ObjectObj(std::uint32_t id, std::uint16_t generation, const PackedValue& packed,
              Ref<PackedStore> store) noexcept
        : id_(id), generation_(generation), store_(std::move(store)), packed_(packed) {}

    [[nodiscard]] std::uint32_t id() const noexcept override { return id_; }
    [[nodiscard]] std::uint16_t generation() const noexcept override { return generation_; }
    [[nodiscard]] Ref<Value> value() const noexcept override;
    [[nodiscard]] Value::Type valueType() const noexcept override;

    /// Whether there is a value, or never was a packed one.
    [[nodiscard]] bool touched() const noexcept { return !store_; }

private:
    const std::uint32_t id_;
    const std::uint16_t generation_;
    mutable Ref<Value> value_;
    /// Null once the value is there.
    mutable Ref<PackedStore> store_;
    const PackedValue packed_;
};

} // namespace Libraries::Files::PDF
