#pragma once

#include "forms/field_obj.h"

#include <cstdint>

namespace Libraries::Files::PDF {

class TextObj final : public FieldObj<Fields::Text> {
public:
    explicit TextObj(FieldPlace place);

    [[nodiscard]] std::uint64_t maxLen() const noexcept override;
    bool setValue(Ref<String> value) noexcept override;
    [[nodiscard]] Ref<String> value() const noexcept override;
    [[nodiscard]] Ref<String> defaultValue() const noexcept override;
};

} // namespace Libraries::Files::PDF
