#include "host/thread_log.h"

#include <host/held_log.h>

#include <exception>
#include <utility>

namespace Host {

namespace {

/// Prints a message if the current log takes it.
void passOn(std::uint32_t filter, LogLevel level, std::string_view message) noexcept {
    if (SysLogStream::takes(filter, level)) SysLogStream::printer().print(filter, level, message);
}

std::string_view withoutLineEnd(std::string_view message) noexcept {
    if (message.ends_with('\n')) message.remove_suffix(1);
    return message;
}

} // namespace

HeldLog::HeldLog(Keep keep) noexcept
    : former_(threadLog().printer), formerTakesAllErrors_(threadLog().allErrors) {
    // `letOut` prints to the former log, which may keep all errors.
    threadLog() = {this, keep == Keep::AllErrors || formerTakesAllErrors_};
}

HeldLog::~HeldLog() {
    if (held_) threadLog() = {former_, formerTakesAllErrors_};
}

void HeldLog::print(std::uint32_t filter, LogLevel level, std::string_view message) noexcept {
    try {
        messages_.push_back({filter, level, std::string(message)});
    } catch (const std::exception&) {
        const ThreadLog current =
            std::exchange(threadLog(), ThreadLog{former_, formerTakesAllErrors_});
        passOn(filter, level, message);
        threadLog() = current;
    }
}

void HeldLog::letOut() noexcept {
    if (!std::exchange(held_, false)) return;
    threadLog() = {former_, formerTakesAllErrors_};
    for (const Message& message : messages_)
        passOn(message.filter, message.level, message.text);
}

std::string HeldLog::errors() const {
    std::string errors;
    for (const Message& message : messages_) {
        if (message.level != LogLevel::Error) continue;
        if (!errors.empty()) errors += "; ";
        errors += withoutLineEnd(message.text);
    }
    return errors;
}

ThreadLog& threadLog() noexcept {
    static thread_local ThreadLog log;
    return log;
}

} // namespace Host
