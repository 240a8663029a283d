#pragma once

#include <host/error.h>

#include <new>
#include <stdexcept>
#include <utility>

namespace Host {

/// Runs `body` at the library's boundary: running out of memory inside is an ordinary failure.
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

} // namespace Host
