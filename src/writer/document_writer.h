#pragma once

#include "document/state.h"

#include <host/stripe.h>

#include <functional>

namespace Libraries::Files::PDF {

/// What `Document::write` does: a complete new file of header, objects by ascending id, one
/// cross-reference section, trailer and end marker. Throws `std::bad_alloc`.
bool writeDocument(DocumentState& state, Interfaces::Stripe& target,
                   const std::function<Ref<Interfaces::Stripe>(const Ref<Stream>&)>& streamData);

} // namespace Libraries::Files::PDF
