#pragma once

#include <host/log.h>

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace Support {

/// While it exists, every message from Note up lands here instead of on standard error.
class RecordingLog final : public Host::LogPrinter {
public:
    struct Entry {
        std::uint32_t filter;
        Host::LogLevel level;
        std::string text; ///< with its line terminator
    };

    RecordingLog() { Host::SysLogFilter::level(Host::LogLevel::Note); }
    ~RecordingLog() override {
        Host::SysLogStream::printer(former_);
        Host::SysLogFilter::level(level_);
    }

    void print(std::uint32_t filter, Host::LogLevel level,
               std::string_view message) noexcept override {
        const std::lock_guard guard(mutex_);
        entries_.push_back({filter, level, std::string(message)});
    }

    [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }
    [[nodiscard]] std::string text() const {
        std::string all;
        for (const Entry& entry : entries_)
            all += entry.text;
        return all;
    }

private:
    std::mutex mutex_;
    std::vector<Entry> entries_;
    Host::LogLevel level_ = Host::SysLogFilter::level();
    Host::LogPrinter& former_ = Host::SysLogStream::printer(*this);
};

/// What was logged through the filter of the forms alone.
inline std::string formMessages(const RecordingLog& log) {
    std::string all;
    for (const RecordingLog::Entry& entry : log.entries()) {
        if (Host::SysLogFilter::name(entry.filter) == "Lib.File.PDF.Form") all += entry.text;
    }
    return all;
}

} // namespace Support
