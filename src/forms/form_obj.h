#pragma once

#include "forms/entries.h"
#include "forms/kids.h"

#include <host/weak_ref.h>
#include <pdf/document.h>
#include <pdf/form.h>

#include <cstdint>
#include <utility>

namespace Libraries::Files::PDF {

/// The form. It reads its own entries at each call.
class FormObj final : public Form {
public:
    FormObj(Document& document, Ref<Dictionary> acroForm) noexcept
        : document_(&document), acroForm_(std::move(acroForm)) {}

    [[nodiscard]] const Host::WeakRef<Document>& document() const noexcept { return document_; }

    /// Builds the fields, at most `limit` of them. False, logged, if some could not be built.
    /// Throws `std::bad_alloc`.
    bool build(Document& document, std::uint64_t limit);

    [[nodiscard]] Ref<Boolean> needAppearances() const noexcept override;
    [[nodiscard]] Quadding quadding() const noexcept override;
    [[nodiscard]] Ref<String> defaultAppearance() const noexcept override;
    [[nodiscard]] Ref<Dictionary> defaultResources() const noexcept override;
    [[nodiscard]] Ref<Array> calculationOrder() const noexcept override;
    [[nodiscard]] std::uint64_t fieldCount() const noexcept override { return fields_.size(); }
    [[nodiscard]] Ref<Field> field(std::uint64_t index) const noexcept override {
        return fields_.get(index);
    }

    [[nodiscard]] Ref<Field> fieldByName(const Ref<Host::String>& name) const noexcept override {
        return fields_.find(name);
    }
    [[nodiscard]] bool setNeedAppearances(bool needed) noexcept override;

private:
    template <class Interface>
    [[nodiscard]] Ref<Interface> entry(const Ref<Host::String>& key) const;

    Host::WeakRef<Document> document_;
    Ref<Dictionary> acroForm_;
    Kids fields_;
};

} // namespace Libraries::Files::PDF
