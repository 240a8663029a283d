#pragma once

#include <host/string.h>
#include <pdf/errors.h>
#include <pdf/values.h>

#include <cstdint>
#include <utility>

namespace Libraries::Files::PDF {

/// What came of looking a key up.
struct LookedUp {
    Ref<Value> value;
    std::uint32_t code; ///< where there is no value

    /// Whether there simply is no such entry; else a dictionary of an application's own failed.
    [[nodiscard]] bool isAbsent() const noexcept { return !value && code == KeyNotFound; }
};

[[nodiscard]] inline LookedUp lookUp(const Dictionary& dict,
                                     const Ref<Host::String>& key) noexcept {
    Ref<Value> value = dict.find(key);
    const std::uint32_t code = value ? Host::NoError : Host::Error::get();
    return {std::move(value), code};
}

} // namespace Libraries::Files::PDF
