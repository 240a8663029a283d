#pragma once

#include <host/log.h>

namespace Host {

/// The printer of this thread's messages; null where it is that of all threads.
[[nodiscard]] LogPrinter*& threadPrinter() noexcept;

} // namespace Host
