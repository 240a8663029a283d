#pragma once

/// @file
/// The system log: named filters, a level, and a printer that applications can replace.

#include <host/export.h>

#include <cstdint>
#include <string_view>

namespace Host {

/// How grave a message is. A message passes when its level is at least the global one.
enum class LogLevel : std::uint32_t {
    Note = 1,    ///< what was decided on the way; for finding out why
    Warning = 3, ///< something is odd, the operation goes on
    Error = 4    ///< an operation failed
};

/// Named switches in front of the log. All operations are thread-safe.
///
/// A message is written when its level is at least `level()` and its filter is on. At the start the
/// level is `Error` and every filter is on.
class FILES_PDF_EXPORT SysLogFilter {
public:
    /// The filter of messages that belong to no component.
    static constexpr std::uint32_t global = 0;
    /// `id` gives this for an unknown name, and `reg` when all 64 filters are taken.
    static constexpr std::uint32_t none = UINT32_MAX;

    /// Registers a filter and gives its id; the same name gives the same id. `name` must stay valid
    /// as long as the process logs, as a literal does.
    static std::uint32_t reg(std::string_view name) noexcept;
    /// The id of a registered name, or `none`.
    [[nodiscard]] static std::uint32_t id(std::string_view name) noexcept;
    /// The name of a filter; empty for an unknown id.
    [[nodiscard]] static std::string_view name(std::uint32_t id) noexcept;

    /// The lowest level that is written. It is the same for all filters.
    [[nodiscard]] static LogLevel level() noexcept;
    /// Sets the level for the whole process.
    static void level(LogLevel level) noexcept;
    /// Whether a filter is on; false for an id of 64 or above, such as `none`.
    [[nodiscard]] static bool state(std::uint32_t id) noexcept;
    /// Switches a filter for the whole process; an id of 64 or above is ignored.
    static void state(std::uint32_t id, bool on) noexcept;

    /// Whether a message of this filter and level would be written.
    [[nodiscard]] static bool passes(std::uint32_t id, LogLevel messageLevel) noexcept {
        return level() <= messageLevel && state(id);
    }
};

/// Where messages go.
class FILES_PDF_EXPORT LogPrinter {
public:
    /// Replace a printer before you destroy it.
    virtual ~LogPrinter();

    /// Takes one whole message, in UTF-8, with its line terminator. May be called from several
    /// threads at once.
    virtual void print(std::uint32_t filter, LogLevel level, std::string_view message) noexcept = 0;
};

/// The log's way out. Thread-safe.
class FILES_PDF_EXPORT SysLogStream {
public:
    /// The printer of the start, which writes to standard error.
    [[nodiscard]] static LogPrinter& stdOutPrinter() noexcept;
    /// Whether somebody takes a message of this filter and level: it passes the filters, or it is
    /// an error that a `HeldLog` of this thread keeps.
    [[nodiscard]] static bool takes(std::uint32_t filter, LogLevel level) noexcept;
    /// The current printer.
    [[nodiscard]] static LogPrinter& printer() noexcept;
    /// Replaces the printer and gives the former one. The caller owns both, and keeps the new one
    /// alive until another one replaces it and no thread logs through it any more.
    static LogPrinter& printer(LogPrinter& printer) noexcept;
};

} // namespace Host
