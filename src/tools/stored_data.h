#pragma once

#include <host/memory_stripe.h>
#include <host/stripe.h>
#include <pdf/document.h>

namespace Libraries::Files::PDF::Tools {

/// A stream's data as it is stored: a view, which does not become attached to the stream. Null with
/// the code set.
[[nodiscard]] Ref<Interfaces::Stripe> rawData(Document& document, const Ref<Stream>& stream);

/// A copy of a stream's data as it is stored; the stream stays as it is. Null with the code set.
/// Throws `std::bad_alloc`.
[[nodiscard]] Ref<Host::MemoryStripe> rawBytes(Document& document, const Ref<Stream>& stream);

/// Whether `decodedBytes` knows how the data of a stream with these entries is stored. Throws
/// `std::bad_alloc`.
[[nodiscard]] bool canDecode(const Document& document, const Dictionary& entries);

} // namespace Libraries::Files::PDF::Tools
