#include "structures/value_scanner.h"

#include "structures/flaw.h"
#include "support/sliced_stripe.h"
#include "support/testing.h"

namespace {

using namespace Libraries::Files::PDF;

/// What a text is packed as, or where and why it is no value.
std::string packed(const std::string& text, std::uint64_t window, bool hexadecimal = false) {
    const auto stripe = Host::makeOrThrow<Support::SlicedStripe>(text, window);
    Host::Cursor cursor(*stripe);
    ValueScanner scanner;
    scanner.onlyHexadecimal(hexadecimal);
    try {
        return std::string(scanner.read(cursor).bytes);
    } catch (const Flaw& flaw) {
        return std::to_string(flaw.offset) + ": " + flaw.what;
    }
}

struct Row {
    std::string name, text, packed;
};

const std::string nul(1, '\0');

const Row rows[] = {
    {"white space", nul + "\t\v\f\r\n true ", "true"},
    {"comments", "%(\r[1%]\n2 %>>\r]", "[ 1 2 ]"},
    {"no spaces", "[/A(b)<63>[]<<>>true]", "[ /A (b) <63> [ ] << >> true ]"},
    {"delimiters end words", "<</A 1/B[2]/C/D>>", "<< /A 1 /B [ 2 ] /C /D >>"},
    {"sorted, the last one counts", "<</B 1/A 2/B 3>>", "<< /A 2 /B 3 >>"},
    {"null is no entry", "<</A null/B[null]/C 1>>", "<< /B [ null ] /C 1 >>"},
    {"nor is the last one", "<</A 1/A null>>", "<< >>"},
    {"null in a name or a string", "<</null/null/A(x null)>>", "<< /A (x null) /null /null >>"},
    {"the empty name", "<</A//B[/]/ 1/C 2>>", "<< /B [ null ] /C 2 >>"},
    {"nothing at all", " / ", "null"},

    {"plain number", "-12.5 ", "-12.5"},
    {"spelled numbers", "[+5 .5 5. -.5 -0 007 1.05]",
     "[ \t+5\n5 \t.5\n0.5 \t5.\n5 \t-.5\n0.5 \t-0\n0 \t007\n7 \t1.05\n1.5 ]"},
    {"long real", "0.12345678901234567890123 ", "\t0.1234567890123456789\n0.1234567890123456789"},
    {"great real", "-99999999999999999999.5 ", "\t-9223372036854775807\n-9223372036854775807"},
    {"two signs", "--5 ", "0: this is no number"},
    {"sign behind digits", "5-5 ", "0: this is no number"},
    {"two points", "5.5.5 ", "0: this is no number"},
    {"a point alone", "[ . ]", "2: this is no number"},
    {"an exponent", "1e5 ", "0: this is no number"},
    {"a great integer", "9223372036854775808 ", "0: this number is too large"},

    {"canonical names", "[/A#42#20 /a\x01\x7F\xE9 /#23 /#c3]", "[ /AB#20 /a#01#7F#E9 /#23 /#C3 ]"},
    {"equal when decoded", "<</A#42 1/AB 2>>", "<< /AB 2 >>"},
    {"a number sign alone", "/A#", "0: in this name a number sign encodes nothing"},
    {"behind it no digits", "[/#4x]", "1: in this name a number sign encodes nothing"},
    {"NUL in a name", "/A#00 ", "0: in this name a number sign encodes nothing"},

    {"escapes", R"((\n\r\t\b\f\(\)\z))", R"((\n\r\t\b\f\(\)z))"},
    {"octal escapes", R"((\101\60\0\7778\1018))", "<413000FF384138>"},
    {"octal escapes of text", R"((\1018\344))", R"((A8\344))"},
    {"line endings", "(a\rb\r\nc\nd\\\re\\\r\nf\\\ng)", R"((a\nb\nc\ndefg))"},
    {"parentheses", "(a(b(c)d)e)", R"((a\(b\(c\)d\)e))"},
    {"backslash", R"((a\\b))", "<615C62>"},
    {"control character", "(a\x01)", "<6101>"},
    {"no character", "(a\x81)", "<6181>"},
    {"byte-order marks",
     "[(\xFE\xFF"
     "1)(\xEF\xBB\xBF"
     "2)(\\377\\3763)]",
     "[ <FEFF31> <EFBBBF32> <FFFE33> ]"},
    {"text of the code page", "(\x80\xE4)", R"((\200\344))"},
    {"hexadecimal", "<4 8\n6F" + nul + "a>", "<486FA0>"},
    {"empty strings", "[()<>]", "[ () <> ]"},
    {"no hexadecimal digit", "<4g>", "0: this string has something else than hexadecimal digits"},
    {"string without an end", "(a(b)", "0: this string does not end"},

    {"reference", "[1 0 R 02 +0 R]", "[ 1 0 R 2 0 R ]"},
    {"reference of one number", "[0 R]", "3: this follows no two numbers of a reference"},
    {"of a real", "[1.5 0 R]", "7: this follows no two numbers of a reference"},
    {"no list around it", "R ", "0: this word is no value"},
    {"unknown word", "[true nul]", "6: this word is no value"},
    {"case counts", "True ", "0: this word is no value"},
    {"control character in a word", "[tr\x01ue]", "1: this word is no value"},
    {"brace", "[{]", "1: this begins no value"},
    {"closing bracket", ")", "0: this begins no value"},
    {"angle in an array", "[>]", "1: this begins no value"},
    {"bracket in a dictionary", "<< ] >>", "3: this begins no value"},
    {"dictionary with one bracket", "<< > >", "0: this dictionary ends in a single bracket"},
    {"key without a value", "<</A>>", "0: in this dictionary a key has no value"},
    {"key that is no name", "<<1 2>>", "0: in this dictionary a key is no name"},
    {"array without an end", "[1 2 ", "0: this array does not end"},
    {"dictionary without an end", "<</A 1", "0: this dictionary does not end"},
    {"end of the data", " % ", "3: the data ends before a value"},
};

TEST(ValueScanner, ReadsTheSyntaxOfTheStandard) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        for (const std::uint64_t window : {1000U, 1U, 2U, 3U, 5U, 0U})
            EXPECT_EQ(packed(row.text, window), row.packed) << "window " << window;
    }
}

TEST(ValueScanner, GivesTheTrailerNoAnglesInStrings) {
    EXPECT_EQ(packed("[(>>)(a\\n)<34>]", 100, true), "[ <3E3E> <610A> <34> ]");
}

TEST(ValueScanner, BoundsNesting) {
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '[') + std::string(depth, ']');
    };
    EXPECT_EQ(packed(nested(512), 10000).substr(0, 4), "[ [ ");
    EXPECT_EQ(packed(nested(513), 10000), "512: values nest too deep");
}

} // namespace
