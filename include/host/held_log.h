#pragma once

/// @file
/// The log of one thread, kept back: for what is tried, and may be done in another way.

#include <host/export.h>
#include <host/log.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Host {

/// Keeps back what its thread logs, until it goes: then nobody sees it, unless it was let out. It
/// is made and destroyed by one thread; those that a thread has go in the reverse order.
class FILES_PDF_EXPORT HeldLog final : public LogPrinter {
public:
    /// Which messages are kept back.
    enum class Keep : std::uint32_t {
        Passing,  ///< those that level and filters let pass
        AllErrors ///< those, and all of level `Error`
    };

    /// Keeps messages back from now on. Within a log that keeps all errors this one does so too.
    explicit HeldLog(Keep keep = Keep::Passing) noexcept;
    /// Drops what was not let out.
    ~HeldLog() override;
    HeldLog(const HeldLog&) = delete;
    HeldLog& operator=(const HeldLog&) = delete;

    /// Where memory is exhausted the message is not kept back.
    void print(std::uint32_t filter, LogLevel level, std::string_view message) noexcept override;
    /// Prints what was kept back and passes level and filters, and from now on everything that
    /// does.
    void letOut() noexcept;
    /// The kept messages of level `Error` in order, without their line ends, joined by "; ". For
    /// who reports a failure in one piece. They stay, also when they were let out. Throws
    /// `std::bad_alloc`.
    [[nodiscard]] std::string errors() const;

private:
    struct Message {
        std::uint32_t filter;
        LogLevel level;
        std::string text;
    };

    std::vector<Message> messages_;
    LogPrinter* former_;
    bool formerTakesAllErrors_;
    bool held_ = true;
};

} // namespace Host
