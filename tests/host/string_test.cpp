#include <host/string.h>

#include <gtest/gtest.h>

namespace {

using Host::Ref;
using Host::String;
using namespace std::literals;

TEST(String, ReadsUtf8) {
    const struct {
        const char* name;
        std::string_view utf8;
        std::u32string_view codes;
    } rows[] = {
        {"8-bit codes", "a\0\u00FF"sv, U"a\0\xFF"sv},
        {"first of each length", "\x7F\xC2\x80\xE0\xA0\x80\xF0\x90\x80\x80",
         U"\x7F\x80\x800\x10000"},
        {"last of each length", "\xDF\xBF\xEF\xBF\xBF\xF4\x8F\xBF\xBF", U"\x7FF\xFFFF\x10FFFF"},
        {"behind the last", "\xF4\x90\x80\x80", U"\xFFFD\xFFFD\xFFFD\xFFFD"},
        {"lone continuation", "a\x80z", U"a\xFFFDz"},
        {"overlong", "\xC0\x80\xE0\x9F\xBF", U"\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD"},
        {"surrogate", "\xED\xA0\x80", U"\xFFFD\xFFFD\xFFFD"},
        {"cut off", "\xE2\x82", U"\xFFFD\xFFFD"},
        {"broken by ASCII", "\xE2\x82z", U"\xFFFD\xFFFDz"},
    };
    for (const auto& row : rows) {
        const Ref<String> text = String::create(row.utf8);
        EXPECT_EQ(*text, *String::create(row.codes)) << row.name;
        const bool replaced = row.codes.find(U'\xFFFD') != std::u32string_view::npos;
        EXPECT_TRUE(replaced || text->utf8() == row.utf8) << row.name;
    }
}

TEST(String, Utf16KeepsPairsAndLoneSurrogates) {
    constexpr char16_t units[] = {'a', 0xD83D, 0xDE00, 0xDC00, 0xD800, 'b', 0xDBFF};
    constexpr char32_t codes[] = {'a', 0x1F600, 0xDC00, 0xD800, 'b', 0xDBFF};
    const Ref<String> text = String::create(std::u16string_view(units, std::size(units)));
    EXPECT_EQ(*text, *String::create(std::u32string_view(codes, std::size(codes))));
    EXPECT_EQ(text->utf16(), std::u16string(units, std::size(units)));
}

TEST(String, OrdersByCodePointWhateverTheStorage) {
    constexpr std::u32string_view ascending[] = {
        U"",  U"\0"sv, U"a",     U"a\0"sv,  U"ab",     U"a\xFF",  U"a\x100",
        U"b", U"\xFF", U"\x100", U"\x100z", U"\xFFFF", U"\x10000"};
    for (std::size_t i = 0; i < std::size(ascending); ++i) {
        for (std::size_t j = 0; j < std::size(ascending); ++j) {
            const Ref<String> left = String::create(ascending[i]);
            const Ref<String> right = String::create(ascending[j]);
            EXPECT_EQ(left->compare(*right), i <=> j) << i << " and " << j;
        }
    }
}

} // namespace
