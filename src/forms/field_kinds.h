#pragma once

/// @file
/// The kinds of fields that have values.

#include "forms/field_obj.h"

#include <pdf/form.h>

#include <cstdint>
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

class TextObj final : public FieldObj<Fields::Text> {
public:
    explicit TextObj(FieldPlace place);

    [[nodiscard]] std::uint64_t maxLen() const noexcept override;
    bool setValue(Ref<String> value) noexcept override;
    [[nodiscard]] Ref<String> value() const noexcept override;
    [[nodiscard]] Ref<String> defaultValue() const noexcept override;
};

class ChoiceObj final : public FieldObj<Fields::Choice> {
public:
    explicit ChoiceObj(FieldPlace place);

    bool setValue(Ref<Value> value) noexcept override;
    [[nodiscard]] Ref<Value> value() const noexcept override;
    [[nodiscard]] Ref<Value> defaultValue() const noexcept override;
    [[nodiscard]] Ref<Array> options() const noexcept override;
    [[nodiscard]] Ref<Array> selectedIndices() const noexcept override;

private:
    /// Whether a multi-select field takes the value. Changes `value` to the one to store.
    [[nodiscard]] bool acceptSeveral(Ref<Value>& value) const noexcept;
};

} // namespace Libraries::Files::PDF
