#pragma once

#include "values/home.h"
#include "values/kind.h"

#include <host/heap.h>
#include <pdf/values.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF {

class ArrayObj final : public ValueObj<Array, Value::Type::Array> {
public:
    using Elements = std::vector<Ref<Value>, Host::HeapAllocator<Ref<Value>>>;

    explicit ArrayObj(Elements elements = {}) noexcept : elements_(std::move(elements)) {}

    [[nodiscard]] std::uint64_t size() const noexcept override { return elements_.size(); }
    [[nodiscard]] Ref<Value> get(std::uint64_t index) const noexcept override;
    bool add(Ref<Value> value) noexcept override;
    [[nodiscard]] Ref<Host::String> asText() const noexcept override;
    [[nodiscard]] bool equal(Ref<Value> other) const noexcept override;

    HomeNumber home; // first, since there is unused room beside the count

private:
    Elements elements_;
};

template <>
struct Kind<Array> : KindOf<ArrayObj, Value::Type::Array> {};

} // namespace Libraries::Files::PDF
