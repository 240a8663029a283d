#pragma once

#include "host/prediction.h"

#include <pdf/document.h>

#include <optional>

namespace Libraries::Files::PDF::Tools {

/// What decode parameters, which may be null, say that data went through before it was deflated
/// (ISO 32000-1, 7.4.4.4); nothing where their values are none that the standard knows. Throws
/// `std::bad_alloc`.
[[nodiscard]] std::optional<Host::Prediction> predictionOf(const Document& document,
                                                           const Ref<Dictionary>& parameters);

} // namespace Libraries::Files::PDF::Tools
