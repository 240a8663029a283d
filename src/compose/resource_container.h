#pragma once

#include <pdf/document.h>
#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// The contents of a resource category (ISO 32000-1, 7.8.3): named resources, an array, or neither.
struct Container {
    Ref<Dictionary> dict;
    Ref<Array> array;

    explicit operator bool() const noexcept { return dict || array; }
};

/// A category of the target's resources, direct or behind a reference. Neither, with the reason
/// logged, on failure.
[[nodiscard]] Container targetContainer(const Ref<Host::String>& category, const Ref<Value>& value,
                                        const Document& target);

/// The same for the resources to add.
[[nodiscard]] Container addedContainer(const Ref<Host::String>& category, const Ref<Value>& value,
                                       const Document& source);

} // namespace Libraries::Files::PDF
