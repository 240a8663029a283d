#include "tools/pages/content_budget.h"

#include "tools/failure.h"
#include "tools/stored_data.h"

#include <pdf/tools/editing.h>

#include <limits>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr std::uint64_t timesAsMuch = 64;

} // namespace

Ref<Host::MemoryStripe> ContentBudget::decoded(Document& document, const Ref<Object>& object) {
    const Ref<Stream> stream = Host::cast<Stream>(object->value());
    const Ref<Host::MemoryStripe> raw = rawBytes(document, stream);
    if (!raw) return nullptr;
    read(*object, raw->size());
    Ref<Host::MemoryStripe> bytes = decodedBytes(document, stream, left_);
    if (bytes) left_ -= bytes->size();
    if (!bytes && Host::Error::get() == OutOfRange) left_ = 0; // which it took to find out
    return bytes;
}

Ref<Host::MemoryStripe> ContentBudget::stored(Document& document, const Ref<Object>& object) {
    Ref<Host::MemoryStripe> raw = rawBytes(document, Host::cast<Stream>(object->value()));
    if (!raw) return nullptr;
    read(*object, raw->size());
    if (raw->size() > left_) {
        return fail(OutOfRange, "Pages share a content stream too often: ", object);
    }
    left_ -= raw->size();
    return raw;
}

void ContentBudget::read(const Object& object, std::uint64_t size) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    if (!known_.insert(object.id()).second) return;
    left_ = size > (most - left_) / timesAsMuch ? most : left_ + timesAsMuch * size;
}

} // namespace Libraries::Files::PDF::Tools
