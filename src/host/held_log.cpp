#include "host/thread_printer.h"

#include <host/held_log.h>

#include <exception>
#include <utility>

namespace Host {

HeldLog::HeldLog() noexcept : former_(std::exchange(threadPrinter(), this)) {}

HeldLog::~HeldLog() {
    if (held_) threadPrinter() = former_;
}

void HeldLog::print(std::uint32_t filter, LogLevel level, std::string_view message) noexcept {
    try {
        messages_.push_back({filter, level, std::string(message)});
    } catch (const std::exception&) {
        threadPrinter() = former_;
        SysLogStream::printer().print(filter, level, message);
        threadPrinter() = this;
    }
}

void HeldLog::letOut() noexcept {
    if (!std::exchange(held_, false)) return;
    threadPrinter() = former_;
    for (const Message& message : messages_)
        SysLogStream::printer().print(message.filter, message.level, message.text);
}

LogPrinter*& threadPrinter() noexcept {
    static thread_local LogPrinter* printer = nullptr;
    return printer;
}

} // namespace Host
