#pragma once

#include "packed/packed_store.h"
#include "packed/packed_value.h"

#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// The value that a packed spelling says. Throws `std::bad_alloc`; nothing else can fail it.
[[nodiscard]] Ref<Value> unpack(const PackedValue& packed, PackedStore::Shared& shared);

} // namespace Libraries::Files::PDF
