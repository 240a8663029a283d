#pragma once

/// @file
/// Guards against exhausted memory. Inside the library it is an exception, so that code in the
/// middle need not check for it. At the boundary it is an ordinary failure. Code under a guard
/// makes objects with `makeOrThrow`; other code uses `make`, which gives null.

#include <host/error.h>
#include <host/ref.h>

#include <new>
#include <stdexcept>
#include <utility>

namespace Host {

/// Runs `body` at the library's boundary. It gives an empty result, with `OutOfMemory` set, when
/// memory is exhausted.
template <class Body>
auto guarded(Body&& body) noexcept -> decltype(body()) {
    try {
        return std::forward<Body>(body)();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    Error::set(OutOfMemory);
    return decltype(body())();
}

/// A new counted object. Throws `std::bad_alloc`.
template <class T, class... Arguments>
[[nodiscard]] Ref<T> makeOrThrow(Arguments&&... arguments) {
    return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

/// For an object that is null only when memory ran out: throws `std::bad_alloc` then.
template <class T>
[[nodiscard]] Ref<T> orThrow(Ref<T> object) {
    if (!object) throw std::bad_alloc();
    return object;
}

} // namespace Host
