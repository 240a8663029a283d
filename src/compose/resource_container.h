#pragma once

#include <pdf/document.h>
#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// What a resource category holds (ISO 32000-1, 7.8.3): named resources, or an array; or neither.
struct Container {
    Ref<Dictionary> dict;
    Ref<Array> array;

    explicit operator bool() const noexcept { return dict || array; }
};

/// A category of the resources that are merged into, behind a reference or not. Neither, logged, on
/// failure.
[[nodiscard]] Container targetContainer(const Ref<Host::String>& category, const Ref<Value>& value,
                                        const Document& target);

/// The same for the resources to add.
[[nodiscard]] Container addedContainer(const Ref<Host::String>& category, const Ref<Value>& value,
                                       const Document& source);

} // namespace Libraries::Files::PDF
