#pragma once

#include <host/memory_stripe.h>
#include <pdf/tools/editing.h>

namespace Libraries::Files::PDF::Tools {

/// A stream with a copy of `bytes` and a dictionary that says so, not yet in a document. Null with
/// the code set. Throws `std::bad_alloc`.
[[nodiscard]] Ref<Stream> newStream(Bytes bytes, bool deflate);

} // namespace Libraries::Files::PDF::Tools
