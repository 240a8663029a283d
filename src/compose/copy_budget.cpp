#include "compose/copy_budget.h"

#include "state/own_document.h"
#include "values/kind.h"
#include "values/sub_stripe.h"

namespace Libraries::Files::PDF {

namespace {

std::uint64_t times(std::uint64_t number, std::uint64_t factor) noexcept {
    std::uint64_t product = 0;
    return __builtin_mul_overflow(number, factor, &product) ? UINT64_MAX : product;
}

/// The size of a value's stream data, if it does not lie in the document's file.
std::uint64_t bytesInMemory(const Ref<Value>& value) noexcept {
    const auto* stream = own<StreamObj>(value);
    const Ref<Interfaces::Stripe> data = stream != nullptr ? stream->strmData() : nullptr;
    const bool view = own<SubStripe>(data) != nullptr;
    return data && !view ? data->size() : 0;
}

} // namespace

CopySource copySourceOf(const Document& document) noexcept {
    const auto* ours = dynamic_cast<const OwnDocument*>(&document);
    if (ours == nullptr) return {};
    const DocumentState& state = ours->state();
    CopySource source{state.objects.size(), state.source->size()};
    for (const ObjectTable::Slot& slot : state.objects.slots())
        source.bytes += bytesInMemory(slot.touchedValue());
    return source;
}

CopyBudget::CopyBudget(const CopySource& source, std::uint64_t users) noexcept
    : objects_(times(times(source.objects, copiesOfEach), users)),
      bytes_(times(times(source.bytes, copiesOfEach), users)) {}

} // namespace Libraries::Files::PDF
