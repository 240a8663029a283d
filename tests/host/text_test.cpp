#include "host/text.h"

#include "host/char_reader.h"
#include "host/numbers.h"
#include "support/bytes.h"
#include "support/failing_stripe.h"

#include <gtest/gtest.h>

namespace {

using namespace std::literals;
using Host::Cursor;
using Host::MemoryStripe;
using Host::StrConv::num;
using Strings = std::vector<std::string>;

TEST(StrConv, ReadsASignAndDigitsAndNothingElse) {
    const struct {
        std::string_view text;
        int base;
        std::optional<std::uint32_t> natural;
        std::optional<std::int32_t> whole;
    } rows[] = {
        {"", 10, 0, 0},
        {"-", 10, {}, 0},
        {"-1", 10, {}, -1},
        {"+007", 10, 7, 7},
        {"2147483648", 10, 2147483648, {}},
        {"-2147483648", 10, {}, INT32_MIN},
        {"-2147483649", 10, {}, {}},
        {"4294967295", 10, UINT32_MAX, {}},
        {"4294967296", 10, {}, {}},
        {"99999999999999999999", 10, {}, {}},
        {" 5", 10, {}, {}},
        {"+-5", 10, {}, {}},
        {"0x5", 16, {}, {}},
        {"Ff", 16, 255, 255},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(num<std::uint32_t>(row.text, row.base), row.natural) << row.text;
        EXPECT_EQ(num<std::int32_t>(row.text, row.base), row.whole) << row.text;
    }
}

TEST(StringUtil, SplitsAndTrims) {
    std::string parts;
    Host::StringUtil::split("  a b  c", ' ', [&](auto part) { parts.append(part) += ','; });
    EXPECT_EQ(parts, "a,b,c,");
    EXPECT_EQ(Host::StringUtil::trim("\0\t x\x80 y \r\n"sv), "x\x80 y");
    EXPECT_EQ(Host::StringUtil::trim(" \n"), "");
}

TEST(CharReader, EndsLinesAtAnyEnding) {
    const struct {
        std::string_view text;
        Strings lines;
        std::vector<std::uint64_t> behind;
    } rows[] = {
        {"", {}, {}},
        {"a\nb\rc\r\nd", {"a", "b", "c", "d"}, {2, 4, 7, 8}},
        {"\n\r\n\r\r", {"", "", "", ""}, {1, 3, 4, 5}},
        {"\0\xFF\n"sv, {"\0\xFF"s}, {3}},
    };
    for (const auto& row : rows) {
        const auto memory = MemoryStripe::create(Testing::bytesOf(row.text));
        const auto plain = Host::make<Testing::FailingStripe>(memory);
        for (const bool windowed : {true, false}) {
            Cursor cursor(windowed ? static_cast<Interfaces::Stripe&>(*memory) : *plain);
            Host::CharReader reader(cursor);
            Strings lines;
            std::vector<std::uint64_t> behind;
            while (reader.readLine()) {
                lines.emplace_back(reader.line());
                behind.push_back(cursor.position());
            }
            EXPECT_EQ(lines, row.lines) << row.text;
            EXPECT_EQ(behind, row.behind) << row.text;
        }
    }
}

TEST(Cursor, RecoversFromAReadThatFails) {
    const auto memory = MemoryStripe::create(Testing::bytesOf("01234"));
    const auto plain = Host::make<Testing::FailingStripe>(memory);
    plain->failAt(Testing::FailingStripe::Call::Read, 2, Testing::FailingStripe::Fault::NoByte);
    Cursor cursor(*plain);
    for (const int expected : {int{'0'}, Cursor::end, int{'1'}, int{'2'}}) {
        EXPECT_EQ(cursor.next(), expected);
    }
}

} // namespace
