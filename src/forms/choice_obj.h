#pragma once

#include "forms/field_obj.h"

namespace Libraries::Files::PDF {

class ChoiceObj final : public FieldObj<Fields::Choice> {
public:
    explicit ChoiceObj(FieldPlace place);

    bool setValue(Ref<Value> value) noexcept override;
    [[nodiscard]] Ref<Value> value() const noexcept override;
    [[nodiscard]] Ref<Value> defaultValue() const noexcept override;
    [[nodiscard]] Ref<Array> options() const noexcept override;
    [[nodiscard]] Ref<Array> selectedIndices() const noexcept override;

private:
    /// Whether a multi-select field takes the value, which becomes what is to be stored.
    [[nodiscard]] bool acceptSeveral(Ref<Value>& value) const noexcept;
};

} // namespace Libraries::Files::PDF
