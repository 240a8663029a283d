#pragma once

#include "state/document_state.h"

#include <host/stripe.h>
#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// The encoded data of a stream: the attached data, or else a view of the source, which it
/// attaches. Null, with the code set and the reason logged, on failure. Throws `std::bad_alloc`.
[[nodiscard]] Ref<Interfaces::Stripe> rawData(const DocumentState& state,
                                              const Ref<Stream>& stream);

/// The parts of `rawData`, for callers that check more in between.
///@{
[[nodiscard]] Ref<Interfaces::Stripe> attachedData(const Ref<Stream>& stream) noexcept;
/// Whether there is a dictionary, and the data begins within the source.
[[nodiscard]] bool beginsInSource(const DocumentState& state, const Stream& stream) noexcept;
[[nodiscard]] Ref<Interfaces::Stripe> viewOfSource(const DocumentState& state,
                                                   const Ref<Stream>& stream);
///@}

/// A view of the data of a packed stream. Null, with nothing logged, if something is wrong with it:
/// the unpacked stream is needed to say what.
[[nodiscard]] Ref<Interfaces::Stripe> viewOfPacked(const DocumentState& state,
                                                   const PackedValue& stream);

/// Attaches data to a stream. That does not count as a change.
void attach(StreamObj& stream, Ref<Interfaces::Stripe> data) noexcept;

} // namespace Libraries::Files::PDF
