#pragma once

#include <host/log.h>

namespace Host {

/// Where the messages of one thread go.
struct ThreadLog {
    LogPrinter* printer = nullptr; ///< null where it is that of all threads
    bool allErrors = false;        ///< takes errors too that the filter refuses
};

/// That of the calling thread.
[[nodiscard]] ThreadLog& threadLog() noexcept;

} // namespace Host
