#pragma once

#include "forms/form_lookup.h"
#include "state/own_document.h"
#include "values/kind.h"

#include <pdf/document.h>

namespace Libraries::Files::PDF {

/// The document: its state, and its operations, which the stages carry out.
class DocumentObj final : public OwnDocument {
public:
    explicit DocumentObj(Ref<Interfaces::Stripe> source, Ref<Host::Mon> monitor);

    [[nodiscard]] PdfVersion version() const noexcept override { return state_.version; }
    [[nodiscard]] Ref<Dictionary> trailer() const noexcept override { return state_.trailer; }
    [[nodiscard]] Ref<Form> form() noexcept override;
    [[nodiscard]] Ref<PDF::Object> getObject(const Ref<ObjectRef>& ref) const noexcept override;
    [[nodiscard]] bool write(Ref<Interfaces::Stripe> target) noexcept override;
    [[nodiscard]] Ref<Interfaces::Stripe> readStreamData(Ref<Stream> stream,
                                                         bool decode) noexcept override;
    std::uint32_t writeStreamData(Ref<Stream> stream, Ref<Interfaces::Stripe> target,
                                  bool encode) noexcept override;
    bool cacheStreamData() noexcept override;
    [[nodiscard]] bool changed() const noexcept override;
    bool addBackground(Ref<Document> foreign, std::uint32_t mode) noexcept override;
    bool setCompression(Compression target) noexcept override;

private:
    FormLookup form_;
};

/// The state of one of the library's own documents; null for one of an application's own class.
///@{
[[nodiscard]] inline DocumentState* stateOf(Document& document) noexcept {
    auto* const ours = own<DocumentObj>(&document);
    return ours != nullptr ? &ours->state() : nullptr;
}
[[nodiscard]] inline const DocumentState* stateOf(const Document& document) noexcept {
    const auto* const ours = own<const DocumentObj>(&document);
    return ours != nullptr ? &ours->state() : nullptr;
}
///@}

} // namespace Libraries::Files::PDF
