#pragma once

#include <host/log.h>

namespace Host {

/// Where the messages of one thread go.
struct ThreadLog {
    LogPrinter* printer = nullptr; ///< null for the printer of all threads
    bool allErrors = false;        ///< the printer also takes errors that the filters refuse
};

/// The log of the calling thread.
[[nodiscard]] ThreadLog& threadLog() noexcept;

} // namespace Host
