#pragma once

#include "forms/form_lookup.h"
#include "state/own_document.h"

#include <pdf/document.h>

namespace Libraries::Files::PDF {

/// The document: its state, and the operations wired to the stages that carry them out.
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

    [[nodiscard]] Host::StackVector<Ref<PDF::Object>> getObjects() const noexcept override;
    [[nodiscard]] Ref<PDF::Object> addObject(Ref<Value> value) noexcept override;
    [[nodiscard]] bool removeObject(const Ref<PDF::Object>& object) noexcept override;
    [[nodiscard]] std::string_view lineEnding() const noexcept override {
        return state_.lineEnding;
    }

    [[nodiscard]] bool faithfulNumbers() const noexcept override { return state_.faithfulNumbers; }
    void faithfulNumbers(bool faithful) noexcept override { state_.faithfulNumbers = faithful; }
    [[nodiscard]] LossCount metOnReading(Loss kind) const noexcept override;

    [[nodiscard]] Host::StackVector<Ref<PDF::Object>> touchedObjects() const noexcept;

private:
    FormLookup form_;
};

} // namespace Libraries::Files::PDF
