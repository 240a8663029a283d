#include "host/message.h"
#include "support/recording_log.h"

#include <gtest/gtest.h>

namespace {

using Host::LogLevel;
using Host::SysLogFilter;

TEST(Log, LetsMessagesPassByLevelAndState) {
    const std::uint32_t filter = SysLogFilter::reg("log test");
    constexpr LogLevel levels[] = {LogLevel::Note, LogLevel::Warning, LogLevel::Error};
    Testing::RecordingLog log;
    for (const LogLevel level : levels) {
        SysLogFilter::level(level);
        for (const LogLevel message : levels) {
            for (const bool on : {false, true}) {
                SysLogFilter::state(filter, on);
                log.clear();
                Host::log(filter, message, "object ", 1288U);
                const bool passes = on && message >= level;
                EXPECT_EQ(log.text(), passes ? "object 508h (1288)\n" : "");
            }
        }
    }
}

} // namespace
