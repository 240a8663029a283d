#pragma once

#include "tools/budget.h"

#include <host/memory_stripe.h>
#include <pdf/document.h>

#include <cstdint>
#include <unordered_set>

namespace Libraries::Files::PDF::Tools {

/// How much one call may make of the contents of pages: 64 times what is stored of them, and 1 MiB.
/// Streams that pages share count once as what is stored, and each time as what is made of them.
class ContentBudget {
public:
    /// The data of a content stream, decoded. Fails with `OutOfRange`, or as `decodedBytes`.
    [[nodiscard]] Ref<Host::MemoryStripe> decoded(Document& document, const Ref<Object>& object);
    /// The data as it is stored, in the same way.
    [[nodiscard]] Ref<Host::MemoryStripe> stored(Document& document, const Ref<Object>& object);

private:
    /// Notes what is stored, once, and takes what a use costs.
    void read(std::uint32_t object, std::uint64_t size);
    void take(std::uint64_t size);

    Budget budget_;
    std::unordered_set<std::uint32_t> known_;
};

} // namespace Libraries::Files::PDF::Tools
