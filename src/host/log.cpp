#include "host/thread_log.h"

#include <host/log.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <mutex>

namespace Host {

namespace {

constexpr std::uint32_t filterLimit = 64;

struct Filters {
    std::mutex mutex;
    std::array<std::string_view, filterLimit> names{"global"};
    std::atomic<std::uint32_t> count{1};
    std::atomic<std::uint64_t> off{0};
    std::atomic<LogLevel> level{LogLevel::Error};
    std::atomic<LogPrinter*> printer{nullptr};
};

// Static initialisers of other files register filters, so this is initialised before them.
constinit Filters filters;

class StandardErrorPrinter final : public LogPrinter {
public:
    void print(std::uint32_t, LogLevel, std::string_view message) noexcept override {
        std::fwrite(message.data(), 1, message.size(), stderr);
    }
};

std::uint32_t find(std::string_view name) noexcept {
    const std::uint32_t count = filters.count.load(std::memory_order_acquire);
    for (std::uint32_t id = 0; id < count; ++id) {
        if (filters.names[id] == name) return id;
    }
    return SysLogFilter::none;
}

} // namespace

LogPrinter::~LogPrinter() = default;

std::uint32_t SysLogFilter::reg(std::string_view name) noexcept {
    const std::lock_guard guard(filters.mutex);
    const std::uint32_t known = find(name);
    if (known != none) return known;

    const std::uint32_t id = filters.count.load(std::memory_order_relaxed);
    if (id == filterLimit) return none;
    filters.names[id] = name;
    filters.count.store(id + 1, std::memory_order_release);
    return id;
}

std::uint32_t SysLogFilter::id(std::string_view name) noexcept {
    return find(name);
}

std::string_view SysLogFilter::name(std::uint32_t id) noexcept {
    const bool known = id < filters.count.load(std::memory_order_acquire);
    return known ? filters.names[id] : std::string_view{};
}

LogLevel SysLogFilter::level() noexcept {
    return filters.level.load(std::memory_order_relaxed);
}

void SysLogFilter::level(LogLevel level) noexcept {
    filters.level.store(level, std::memory_order_relaxed);
}

bool SysLogFilter::state(std::uint32_t id) noexcept {
    if (id >= filterLimit) return false;
    return (filters.off.load(std::memory_order_relaxed) >> id & 1U) == 0;
}

void SysLogFilter::state(std::uint32_t id, bool on) noexcept {
    if (id >= filterLimit) return;
    const std::uint64_t bit = std::uint64_t{1} << id;
    if (on) {
        filters.off.fetch_and(~bit, std::memory_order_relaxed);
    } else {
        filters.off.fetch_or(bit, std::memory_order_relaxed);
    }
}

LogPrinter& SysLogStream::stdOutPrinter() noexcept {
    static StandardErrorPrinter printer;
    return printer;
}

bool SysLogStream::takes(std::uint32_t filter, LogLevel level) noexcept {
    if (SysLogFilter::passes(filter, level)) return true;
    return level == LogLevel::Error && threadLog().allErrors;
}

LogPrinter& SysLogStream::printer() noexcept {
    if (LogPrinter* const own = threadLog().printer; own != nullptr) return *own;
    LogPrinter* current = filters.printer.load(std::memory_order_acquire);
    return current != nullptr ? *current : stdOutPrinter();
}

LogPrinter& SysLogStream::printer(LogPrinter& printer) noexcept {
    LogPrinter* former = filters.printer.exchange(&printer, std::memory_order_acq_rel);
    return former != nullptr ? *former : stdOutPrinter();
}

} // namespace Host
