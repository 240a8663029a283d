#include "tools/pages/content_budget.h"

#include "tools/failure.h"
#include "tools/stored_data.h"

namespace Libraries::Files::PDF::Tools {

namespace {

/// What a stream takes beside its data, however often it is listed.
constexpr std::uint64_t perUse = 64;

} // namespace

Ref<Host::MemoryStripe> ContentBudget::decoded(Document& document, const Ref<Object>& object) {
    const Ref<Stream> stream = Host::cast<Stream>(object->value());
    try {
        return atObject(object->id(), [&] {
            read(object->id(), rawBytes(document, stream)->size());
            Ref<Host::MemoryStripe> bytes = Tools::decoded(document, stream, budget_.left());
            take(bytes->size());
            return bytes;
        });
    } catch (const FailedStep& step) {
        if (step.code == OutOfRange) budget_.takeAll(); // which it took to find out
        throw;
    }
}

Ref<Host::MemoryStripe> ContentBudget::stored(Document& document, const Ref<Object>& object) {
    return atObject(object->id(), [&] {
        Ref<Host::MemoryStripe> raw = rawBytes(document, Host::cast<Stream>(object->value()));
        read(object->id(), raw->size());
        take(raw->size());
        return raw;
    });
}

void ContentBudget::read(std::uint32_t object, std::uint64_t size) {
    if (known_.insert(object).second) budget_.read(size + perUse);
    take(perUse);
}

void ContentBudget::take(std::uint64_t size) {
    if (!budget_.take(size)) fail(OutOfRange, "Pages use this content stream too often");
}

} // namespace Libraries::Files::PDF::Tools
