#pragma once

#include "state/document_state.h"

#include <host/stripe.h>
#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// The data of a stream as it is encoded: what is attached to it, or else a view of the source,
/// which becomes attached. Null, with the code set and the reason logged, on failure. Throws
/// `std::bad_alloc`.
[[nodiscard]] Ref<Interfaces::Stripe> rawData(const DocumentState& state,
                                              const Ref<Stream>& stream);

/// The parts of that, for those who have questions of their own in between.
///@{
[[nodiscard]] Ref<Interfaces::Stripe> attachedData(const Ref<Stream>& stream) noexcept;
/// Whether the source reaches to where the data begins, and there is a dictionary.
[[nodiscard]] bool beginsInSource(const DocumentState& state, const Stream& stream) noexcept;
[[nodiscard]] Ref<Interfaces::Stripe> viewOfSource(const DocumentState& state,
                                                   const Ref<Stream>& stream);
///@}

/// A view of the data of a stream that is packed. Null, without a word, where it takes the stream
/// to say what is wrong with it.
[[nodiscard]] Ref<Interfaces::Stripe> viewOfPacked(const DocumentState& state,
                                                   const PackedValue& stream);

/// Gives a stream its data, which does not count as a change.
void attach(StreamObj& stream, Ref<Interfaces::Stripe> data) noexcept;

} // namespace Libraries::Files::PDF
