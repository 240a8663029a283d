#pragma once

/// @file
/// Keeps the log of one thread back while something is tried that may be done in another way.

#include <host/export.h>
#include <host/log.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Host {

/// Keeps back the messages of its thread. They are dropped with it, unless `letOut` prints them.
///
/// The same thread makes and destroys it. Several of a thread are destroyed in the reverse order.
class FILES_PDF_EXPORT HeldLog final : public LogPrinter {
public:
    /// Which messages are kept back.
    enum class Keep : std::uint32_t {
        Passing,  ///< messages that level and filters let pass
        AllErrors ///< these, and all messages of level `Error`
    };

    /// Keeps messages back from now on. One that is made while another one of the thread keeps all
    /// errors keeps all errors too.
    explicit HeldLog(Keep keep = Keep::Passing) noexcept;
    /// Drops the messages that were not let out.
    ~HeldLog() override;
    HeldLog(const HeldLog&) = delete;
    HeldLog& operator=(const HeldLog&) = delete;

    /// Keeps a message. When memory is exhausted it passes the message on at once.
    void print(std::uint32_t filter, LogLevel level, std::string_view message) noexcept override;
    /// Prints the kept messages that level and filters let pass, and keeps none from now on.
    void letOut() noexcept;
    /// The kept messages of level `Error` in order, without their line ends, joined by "; ": the
    /// text of a failure in one piece. `letOut` changes nothing of it. Throws `std::bad_alloc`.
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
