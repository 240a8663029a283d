#include "state/stream_length.h"

#include "values/kind.h"
#include "values/scalars.h"

#include <host/string.h>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

StreamLength findStreamLength(const DocumentState& state, const Dictionary& dict) {
    StreamLength length;
    length.entry = dict.find("Length"_str);
    if (!length.entry) return length;
    if (length.entry->type() != Value::Type::ObjectRef) {
        length.resolved = true;
        length.value = length.entry;
        return length;
    }
    length.ref = as<ObjectRef>(length.entry);
    const auto* slot = length.ref != nullptr ? state.find(*length.ref) : nullptr;
    if (slot == nullptr) return length;
    length.resolved = true;
    length.value = state.objects.value(*slot);
    return length;
}

std::optional<std::uint64_t> wholeLength(const Number& length) noexcept {
    if (length.fraction() != 0 || length.integer() < 0) return std::nullopt;
    return static_cast<std::uint64_t>(length.integer());
}

} // namespace Libraries::Files::PDF
