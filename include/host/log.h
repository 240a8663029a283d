#pragma once

/// @file
/// The system log: named filters, a level, and a printer that applications can replace.

#include <host/export.h>

#include <cstdint>
#include <string_view>

namespace Host {

/// How grave a message is. The global level lets a message pass when it is not above the message's.
enum class LogLevel : std::uint32_t {
    Note = 1,    ///< what was decided on the way; for finding out why
    Warning = 3, ///< something is odd, the operation goes on
    Error = 4    ///< an operation failed
};

/// Named switches in front of the log. All operations are thread-safe.
///
/// A message is written when `level()` is not above its level and its filter's state is on. At
/// start the level is `Error` and every filter is on.
class FILES_PDF_EXPORT SysLogFilter {
public:
    /// The filter of messages that belong to no component.
    static constexpr std::uint32_t global = 0;
    /// What `id` gives for an unknown name and `reg` when no filter is left (64 in all).
    static constexpr std::uint32_t none = UINT32_MAX;

    /// Registers a filter and gives its id; the same name gives the same id. `name` must outlive
    /// the process's use of the log (a literal does).
    static std::uint32_t reg(std::string_view name) noexcept;
    /// The id of a registered name, or `none`.
    [[nodiscard]] static std::uint32_t id(std::string_view name) noexcept;
    /// The name of a filter; empty for an unknown id.
    [[nodiscard]] static std::string_view name(std::uint32_t id) noexcept;

    /// The lowest level that is written, of all filters.
    [[nodiscard]] static LogLevel level() noexcept;
    /// Holds for the whole process from now on.
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
    /// Not while the printer is in use: put another in its place first.
    virtual ~LogPrinter();

    /// Takes one whole message, in UTF-8, with its line terminator. May be called from several
    /// threads at once.
    virtual void print(std::uint32_t filter, LogLevel level, std::string_view message) noexcept = 0;
};

/// The log's way out. Thread-safe.
class FILES_PDF_EXPORT SysLogStream {
public:
    /// The printer that is there from the start: it writes to standard error.
    [[nodiscard]] static LogPrinter& stdOutPrinter() noexcept;
    /// Whether somebody takes a message of this filter and level: it passes, or it is an error that
    /// a `HeldLog` of this thread keeps.
    [[nodiscard]] static bool takes(std::uint32_t filter, LogLevel level) noexcept;
    /// The current printer.
    [[nodiscard]] static LogPrinter& printer() noexcept;
    /// Replaces the printer and gives the former one. The caller keeps ownership of both and keeps
    /// the new one alive until it is replaced and no thread logs through it any more.
    static LogPrinter& printer(LogPrinter& printer) noexcept;
};

} // namespace Host
