#pragma once

#include <host/string.h>
#include <pdf/errors.h>
#include <pdf/values.h>

#include <cstdint>
#include <utility>

namespace Libraries::Files::PDF {

/// The result of looking for a value.
struct LookedUp {
    Ref<Value> value;
    std::uint32_t code; ///< why there is no value

    /// Whether there is no such entry. If not, a dictionary of an application's own class failed.
    [[nodiscard]] bool isAbsent() const noexcept { return !value && code == KeyNotFound; }
    /// Whether memory was exhausted, so that nothing is wrong with the document.
    [[nodiscard]] bool isExhausted() const noexcept { return !value && code == OutOfMemory; }
};

/// Looks for the value of an object, which need not have one. Leaves the thread's code alone.
[[nodiscard]] inline LookedUp lookUpValue(const Object& object) noexcept {
    const std::uint32_t former = Host::Error::get();
    Host::Error::set(Host::NoError);
    Ref<Value> value = object.value();
    const std::uint32_t code = Host::Error::get();
    Host::Error::set(former);
    return {std::move(value), code};
}

[[nodiscard]] inline LookedUp lookUp(const Dictionary& dict,
                                     const Ref<Host::String>& key) noexcept {
    Ref<Value> value = dict.find(key);
    const std::uint32_t code = value ? Host::NoError : Host::Error::get();
    return {std::move(value), code};
}

} // namespace Libraries::Files::PDF
