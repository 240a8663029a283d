#pragma once

#include "packed/packed_store.h"
#include "packed/packed_value.h"
#include "values/home.h"

#include <pdf/values.h>

#include <cstdint>
#include <utility>

namespace Libraries::Files::PDF {

/// The document of which a value is known to be an object's value; only containers know it.
[[nodiscard]] HomeNumber homeOf(const Value& value) noexcept;
/// Notes the home, unless the value belongs to another object already.
void settle(const Ref<Value>& value, HomeNumber home) noexcept;
/// Forgets the home, if it is the value's.
void unsettle(const Ref<Value>& value, HomeNumber home) noexcept;

/// An object. The first call for its value unpacks and keeps it. From then on that value counts,
/// and nobody looks at the packed spelling again.
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

    /// Whether the value has been unpacked, or never was packed.
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
