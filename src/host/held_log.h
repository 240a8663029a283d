#pragma once

#include <host/log.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Host {

/// Keeps back what its thread logs, until it goes: then nobody sees it, unless it was let out.
class HeldLog final : public LogPrinter {
public:
    HeldLog() noexcept;
    ~HeldLog() override;
    HeldLog(const HeldLog&) = delete;
    HeldLog& operator=(const HeldLog&) = delete;

    /// Where memory is exhausted the message is not kept back.
    void print(std::uint32_t filter, LogLevel level, std::string_view message) noexcept override;
    /// Prints what was kept back, and from now on everything.
    void letOut() noexcept;

private:
    struct Message {
        std::uint32_t filter;
        LogLevel level;
        std::string text;
    };

    std::vector<Message> messages_;
    LogPrinter* former_;
    bool held_ = true;
};

/// The printer of this thread's messages; null where it is that of all threads.
[[nodiscard]] LogPrinter*& threadPrinter() noexcept;

} // namespace Host
