#pragma once

#include "document/state.h"

#include <host/stripe.h>
#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// What `Document::readStreamData` does.
[[nodiscard]] Ref<Interfaces::Stripe> readStreamData(const DocumentState& state,
                                                     const Ref<Stream>& stream, bool decode);

/// What `Document::cacheStreamData` does.
[[nodiscard]] bool cacheStreamData(const DocumentState& state);

} // namespace Libraries::Files::PDF
