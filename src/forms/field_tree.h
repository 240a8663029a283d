#pragma once

#include "forms/kids.h"

#include <pdf/document.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// Builds the fields that an array lists into `fields`, with all that lies below them.
///
/// The first field that cannot be built ends it: false, logged; the top-level fields in front of it
/// stay. A field listed twice is built twice, so a tree of more than `limit` fields is refused.
/// Throws `std::bad_alloc`.
bool buildFields(Document& document, const Ref<Array>& array, std::uint64_t limit, Kids& fields);

} // namespace Libraries::Files::PDF
