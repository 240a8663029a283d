#include "host/text.h"

#include "host/char_reader.h"
#include "host/guard.h"
#include "host/message.h"
#include "support/testing.h"

#include <host/held_log.h>
#include <host/memory_stripe.h>
#include <host/string.h>

#include <thread>

namespace {

using namespace std::literals;
using Host::Cursor;
using Host::String;
using namespace Support;

TEST(String, ReadsUtf8) {
    const std::tuple<const char*, std::string_view, std::u32string_view> rows[] = {
        {"8-bit codes", "a\0\u00FF"sv, U"a\0\xFF"sv},
        {"first of each length", "\x7F\xC2\x80\xE0\xA0\x80\xF0\x90\x80\x80\xF1\x80\x80\x80",
         U"\x7F\x80\x800\x10000\x40000"},
        {"last of each length", "\xDF\xBF\xEF\xBF\xBF\xF4\x8F\xBF\xBF", U"\x7FF\xFFFF\x10FFFF"},
        {"behind the last", "\xF4\x90\x80\x80", U"\xFFFD\xFFFD\xFFFD\xFFFD"},
        {"overlong", "\xC0\x80\xE0\x9F\xBF", U"\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD"},
        {"surrogate", "\xED\xA0\x80", U"\xFFFD\xFFFD\xFFFD"},
        {"cut off", "\xE2\x82", U"\xFFFD\xFFFD"},
    };
    for (const auto& [name, utf8, codes] : rows) {
        const auto text = String::create(utf8);
        EXPECT_EQ(*text, *String::create(codes)) << name;
        EXPECT_TRUE(codes.find(U'\xFFFD') != codes.npos || text->utf8() == utf8) << name;
    }
    const std::u16string units{'a', 0xD83D, 0xDE00, 0xDC00, 0xD800, 'b', 0xDBFF};
    EXPECT_EQ(String::create(units)->utf16(), units) << "pairs and lone surrogates";
    EXPECT_TRUE(String::create(units)->utf8().starts_with("a\xF0\x9F\x98\x80"));
    EXPECT_EQ(String::create(U'\x10FFFF')->utf8(), "\xF4\x8F\xBF\xBF");
}

TEST(Error, IsOnePerThread) {
    Host::Error::set(1);
    std::thread([] {
        EXPECT_EQ(Host::Error::get(), Host::NoError);
        Host::Error::set(2);
    }).join();
    EXPECT_EQ(Host::Error::get(), 1U);
    expectFailure(Host::guarded([]() -> bool { throw std::bad_alloc(); }), Host::OutOfMemory);
}

using Host::LogLevel;
using Host::SysLogFilter;
const LogLevel levelAtStart = SysLogFilter::level();

TEST(Log, HasSixtyFourFilters) {
    static std::array<std::string, 64> names; // which have to outlive the log
    std::uint32_t last = 0;
    for (std::string& name : names)
        last = SysLogFilter::reg(name = "filter " + std::to_string(&name - names.data()));
    EXPECT_EQ(last, SysLogFilter::none) << "some were there before";
    EXPECT_EQ(SysLogFilter::id(names.back()), SysLogFilter::none);
    EXPECT_EQ(SysLogFilter::id(SysLogFilter::name(63)), 63U);
    EXPECT_EQ(SysLogFilter::reg(SysLogFilter::name(63)), 63U);
    EXPECT_EQ(SysLogFilter::name(64), "");
    for (const std::uint32_t id : {63U, 64U}) {
        SysLogFilter::state(id, false);
        EXPECT_FALSE(SysLogFilter::state(id));
        EXPECT_TRUE(SysLogFilter::state(SysLogFilter::global)) << "no other one";
    }
    SysLogFilter::state(63, true);
}

TEST(Log, WritesWhatLevelAndFilterLetPass) {
    EXPECT_EQ(levelAtStart, LogLevel::Error);
    testing::internal::CaptureStderr();
    Host::log(SysLogFilter::global, LogLevel::Error, "to see");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "to see\n");
    const std::uint32_t filter = SysLogFilter::id("PDF");
    RecordingLog log;
    for (const LogLevel level : {LogLevel::Note, LogLevel::Warning, LogLevel::Error}) {
        for (const bool on : {false, true}) {
            SysLogFilter::level(level);
            SysLogFilter::state(filter, on);
            for (const LogLevel message : {LogLevel::Note, LogLevel::Warning, LogLevel::Error}) {
                const std::size_t before = log.entries().size();
                Host::log(filter, message, "what");
                EXPECT_EQ(log.entries().size() - before, on && level <= message ? 1U : 0U);
            }
        }
    }
}

TEST(HeldLog, KeepsErrorsThatNobodyWouldSee) {
    using Keep = Host::HeldLog::Keep;
    const std::uint32_t filter = SysLogFilter::id("PDF");
    const struct {
        const char* name;
        Keep outer, inner;
        bool on;
        const char *kept, *seen;
    } rows[] = {
        {"what passes", Keep::Passing, Keep::Passing, true, "one; two", "one\nwarned\ntwo\n"},
        {"nothing passes", Keep::Passing, Keep::Passing, false, "", ""},
        {"all", Keep::Passing, Keep::AllErrors, true, "one; two", "one\nwarned\ntwo\n"},
        {"all, and none passes", Keep::Passing, Keep::AllErrors, false, "one; two", ""},
        {"the outer one has all", Keep::AllErrors, Keep::Passing, false, "one; two", ""},
    };
    for (const auto& [name, outerKeep, innerKeep, on, kept, seen] : rows) {
        RecordingLog log;
        SysLogFilter::state(filter, on);
        Host::HeldLog outer(outerKeep);
        {
            Host::HeldLog inner(innerKeep);
            Host::log(filter, LogLevel::Error, "one");
            Host::log(filter, LogLevel::Warning, "warned");
            Host::log(filter, LogLevel::Error, "two");
            EXPECT_EQ(inner.errors(), kept) << name;
            EXPECT_EQ(outer.errors(), "") << name;
            inner.letOut();
        }
        const bool reached = on || outerKeep == Keep::AllErrors;
        EXPECT_EQ(outer.errors(), reached ? kept : "") << name;
        EXPECT_EQ(log.text(), "") << name;
        outer.letOut();
        EXPECT_EQ(log.text(), seen) << name;
        Host::log(filter, LogLevel::Error, "three");
        EXPECT_EQ(log.text(), seen + std::string(on ? "three\n" : "")) << name;
        SysLogFilter::state(filter, true);
    }
}

TEST(CharReader, EndsLinesAtAnyEnding) {
    // What stands in the file; each of its lines with the position behind it.
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {"a\nb\rc\r\nd", "a2 b4 c7 d8 "},
        {"\n\r\n\r\r", "1 3 4 5 "},
        {"\0\xFF\n"s, "\0\xFF\63 "s},
    };
    for (const auto& [text, lines] : rows) {
        const auto memory = Host::MemoryStripe::create(bytesOf(text));
        const auto plain = Host::make<FailingStripe>(memory);
        for (const bool windowed : {true, false}) {
            Cursor cursor(windowed ? static_cast<Interfaces::Stripe&>(*memory) : *plain);
            Host::CharReader reader(cursor);
            std::string read;
            while (reader.readLine())
                read.append(reader.line()) += std::to_string(cursor.position()) + " ";
            EXPECT_EQ(read, lines) << text;
        }
    }
}

TEST(Cursor, ReadsNothingMoreAfterAFault) {
    const auto memory = Host::MemoryStripe::create(bytesOf("01234"));
    const auto plain = Host::make<FailingStripe>(memory);
    plain->failAt(FailingStripe::Call::Read, 2, FailingStripe::Fault::NoByte);
    Cursor cursor(*plain);
    for (const int expected : {int{'0'}, Cursor::end, Cursor::end})
        EXPECT_EQ(cursor.next(), expected);
    cursor.seek(0);
    EXPECT_TRUE(cursor.next() == Cursor::end && cursor.failed());
    Cursor whole(*memory);
    whole.seek(5);
    EXPECT_TRUE(whole.next() == Cursor::end && !whole.failed()) << "the end is no fault";
}

} // namespace
