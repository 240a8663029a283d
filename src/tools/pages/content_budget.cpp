#include "tools/pages/content_budget.h"

#include "tools/failure.h"
#include "tools/stored_data.h"

#include <pdf/tools/editing.h>

#include <algorithm>
#include <limits>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr std::uint64_t timesAsMuch = 64;

/// What a stream takes beside its data, however often it is listed.
constexpr std::uint64_t perUse = 64;

} // namespace

Ref<Host::MemoryStripe> ContentBudget::decoded(Document& document, const Ref<Object>& object) {
    const Ref<Stream> stream = Host::cast<Stream>(object->value());
    const Ref<Host::MemoryStripe> raw = rawBytes(document, stream);
    if (!raw || !read(object, raw->size())) return nullptr;
    Ref<Host::MemoryStripe> bytes = decodedBytes(document, stream, left_);
    if (bytes) left_ -= bytes->size();
    if (!bytes && Host::Error::get() == OutOfRange) left_ = 0; // which it took to find out
    return bytes;
}

Ref<Host::MemoryStripe> ContentBudget::stored(Document& document, const Ref<Object>& object) {
    Ref<Host::MemoryStripe> raw = rawBytes(document, Host::cast<Stream>(object->value()));
    if (!raw || !read(object, raw->size()) || !take(object, raw->size())) return nullptr;
    return raw;
}

bool ContentBudget::read(const Ref<Object>& object, std::uint64_t size) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    if (known_.insert(object->id()).second) {
        const std::uint64_t room = (most - left_) / timesAsMuch;
        left_ =
            size < std::max(room, perUse) - perUse ? left_ + timesAsMuch * (size + perUse) : most;
    }
    return take(object, perUse);
}

bool ContentBudget::take(const Ref<Object>& object, std::uint64_t size) {
    if (size > left_) return fail(OutOfRange, "Pages use a content stream too often: ", object);
    left_ -= size;
    return true;
}

} // namespace Libraries::Files::PDF::Tools
