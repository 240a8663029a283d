#include <host/error.h>

namespace Host {

namespace {
thread_local std::uint32_t current = NoError;
}

void Error::set(std::uint32_t code) noexcept {
    current = code;
}

std::uint32_t Error::get() noexcept {
    return current;
}

} // namespace Host
