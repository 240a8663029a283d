#pragma once

#include "forms/kids.h"

#include <pdf/document.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// Builds the fields that an array lists into `fields`, with all fields below them.
///
/// It ends, false and logged, at the first field that cannot be built; the top-level fields in
/// front of that one stay. A field that is listed twice is built twice, so it refuses a tree of
/// more than `limit` fields. Throws `std::bad_alloc`.
bool buildFields(Document& document, const Ref<Array>& array, std::uint64_t limit, Kids& fields);

} // namespace Libraries::Files::PDF
