#pragma once

#include "forms/field_obj.h"

#include <vector>

namespace Libraries::Files::PDF {

class ButtonObj final : public FieldObj<Fields::Button> {
public:
    explicit ButtonObj(FieldPlace place);

    bool setValue(Ref<Name> value) noexcept override;
    [[nodiscard]] Ref<Name> value() const noexcept override;
    [[nodiscard]] Ref<Name> defaultValue() const noexcept override;
    bool setState(Ref<Name> state) noexcept override;
    [[nodiscard]] Ref<Name> state() const noexcept override;
    [[nodiscard]] Ref<Array> options() const noexcept override;
    [[nodiscard]] std::vector<Ref<Name>> states() const noexcept override;

private:
    bool setEntry(const Ref<Host::String>& key, Ref<Name> name) noexcept;
    [[nodiscard]] std::vector<Ref<Name>> statesOfOptions(const Array& options) const;
    [[nodiscard]] std::vector<Ref<Name>> statesOfAppearance() const;
};

} // namespace Libraries::Files::PDF
