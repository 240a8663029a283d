#pragma once

#include "forms/entries.h"
#include "forms/kids.h"

#include <host/weak_ref.h>
#include <pdf/document.h>
#include <pdf/form.h>

#include <cstdint>
#include <utility>

namespace Libraries::Files::PDF {

/// The place of a field in the tree, and the dictionary that it is made from.
struct FieldPlace {
    Host::WeakRef<Document> document;
    /// The field above; null for a top-level field.
    Host::WeakRef<Field> parent;
    /// Zero-based index in the array that lists the field.
    std::uint64_t position = 0;
    Ref<Dictionary> dict;
};

/// The data of fields of all kinds. The entries are those of the time when the form was built.
class FieldData : public FieldPlace {
public:
    explicit FieldData(FieldPlace place);

    std::uint32_t flags = 0;
    Quadding quadding = Quadding::NotSet;
    Ref<String> partialName;
    Ref<String> alternateName;
    Ref<String> mappingName;
    Ref<String> defaultAppearance;
    Ref<Dictionary> defaultResources;
    Ref<Dictionary> appearances;
    Kids kids;

    [[nodiscard]] Ref<Field> liveParent() const noexcept;
    [[nodiscard]] Ref<Value> normalAppearance() const noexcept;
};

template <class Interface>
inline constexpr Field::Kind fieldKind = Field::Kind::Plain;
template <>
inline constexpr Field::Kind fieldKind<Fields::Button> = Field::Kind::Button;
template <>
inline constexpr Field::Kind fieldKind<Fields::Text> = Field::Kind::Text;
template <>
inline constexpr Field::Kind fieldKind<Fields::Choice> = Field::Kind::Choice;
template <>
inline constexpr Field::Kind fieldKind<Fields::Signature> = Field::Kind::Signature;

/// Implements the operations of `Field` under the interface of any kind. It is the whole of kinds
/// that add no operations.
template <class Interface>
class FieldObj : public Interface, public FieldData {
public:
    explicit FieldObj(FieldPlace place) : FieldData(std::move(place)) {}

    [[nodiscard]] Field::Kind fieldType() const noexcept final { return fieldKind<Interface>; }
    [[nodiscard]] std::uint32_t flags() const noexcept final { return FieldData::flags; }
    [[nodiscard]] Ref<Field> parent() const noexcept final { return liveParent(); }
    [[nodiscard]] std::uint64_t childCount() const noexcept final { return kids.size(); }
    [[nodiscard]] Ref<Field> child(std::uint64_t index) const noexcept final {
        return kids.get(index);
    }
    [[nodiscard]] Ref<String> partialName() const noexcept final { return FieldData::partialName; }
    [[nodiscard]] Ref<String> alternateName() const noexcept final {
        return FieldData::alternateName;
    }
    [[nodiscard]] Ref<String> mappingName() const noexcept final { return FieldData::mappingName; }
    [[nodiscard]] Ref<Dictionary> appearances() const noexcept final {
        return FieldData::appearances;
    }
    [[nodiscard]] Ref<Value> normalAppearance() const noexcept final {
        return FieldData::normalAppearance();
    }
    [[nodiscard]] Ref<Dictionary> defaultResources() const noexcept final {
        return FieldData::defaultResources;
    }
    [[nodiscard]] Ref<String> defaultAppearance() const noexcept final {
        return FieldData::defaultAppearance;
    }
    [[nodiscard]] Quadding quadding() const noexcept final { return FieldData::quadding; }
    [[nodiscard]] Ref<Field> fieldByName(const Ref<Host::String>& name) const noexcept final {
        return kids.find(name);
    }
    [[nodiscard]] std::uint64_t index() const noexcept final { return position; }
    [[nodiscard]] Ref<Dictionary> dictionary() const noexcept final { return dict; }
};

using PlainFieldObj = FieldObj<Field>;
using SignatureObj = FieldObj<Fields::Signature>;

} // namespace Libraries::Files::PDF
