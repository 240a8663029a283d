#pragma once

#include <pdf/values.h>

#include <cstdint>
#include <utility>

namespace Libraries::Files::PDF {

class ObjectObj final : public Object {
public:
    ObjectObj(std::uint32_t id, std::uint16_t generation, Ref<Value> value) noexcept
        : id_(id), generation_(generation), value_(std::move(value)) {}

    [[nodiscard]] std::uint32_t id() const noexcept override { return id_; }
    [[nodiscard]] std::uint16_t generation() const noexcept override { return generation_; }
    [[nodiscard]] Ref<Value> value() const noexcept override { return value_; }

private:
    std::uint32_t id_;
    std::uint16_t generation_;
    Ref<Value> value_;
};

} // namespace Libraries::Files::PDF
