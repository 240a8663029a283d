#include "reader/scanner.h"

#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;
using namespace Libraries::Files::PDF;
using Testing::textOf;

/// Reads an object's value: first in a window, then element by element, which must not differ.
/// What comes out is the value's kind and text form, or the lines that were logged.
std::string read(const std::string& text) {
    std::string results[2];
    for (const bool window : {true, false}) {
        Ref<Interfaces::Stripe> source = Testing::stripeOf(text);
        if (!window) source = Host::make<Testing::FailingStripe>(source);
        const Testing::RecordingLog log;
        Host::Cursor cursor(*source);
        const Ref<Value> value = Scanner(cursor).readObjectValue();
        const std::string lines = log.text();
        EXPECT_TRUE(!value || lines.empty()) << text << lines;
        results[window ? 0 : 1] = value ? std::to_string(int(value->type())) + " " + textOf(value)
                                        : lines.substr(0, lines.size() - !lines.empty());
    }
    EXPECT_EQ(results[0], results[1]) << text;
    return results[0];
}

struct Row {
    const char* name;
    std::string text;
    std::string result;
};

void check(std::initializer_list<Row> rows) {
    for (const Row& row : rows)
        EXPECT_EQ(read(row.text), row.result) << row.name << ": " << row.text;
}

TEST(Scanner, ReadsBareTokens) {
    check({
        {"integer", "\t\0\f 12 "s, "3 12.0"},
        {"negative real", "-1.05 ", "3 -1.5"},
        {"point first", ".5 ", "3 0.5"},
        {"point last", "+5. ", "3 5.0"},
        {"smallest integer", "-9223372036854775808 ", "3 -9223372036854775808.0"},
        {"largest fraction", "0.18446744073709551615 ", "3 0.18446744073709551615"},
        {"truth values", "[true false null]", "8 [truefalseNull ]"},
        {"reference is just its first number", "7 0 R ", "3 7.0"},
        {"ended by a structure", "true/Next", "2 true"},
        {"integer too large", "9223372036854775808 ",
         "Invalid integer value 9223372036854775808 in object; offset: 0h (0)"},
        {"fraction signed", " 1.-5 ", "Invalid real value 1.-5 in object; offset: 1h (1)"},
        {"two points", "1.2.3 ", "Invalid real value 1.2.3 in object; offset: 0h (0)"},
        {"exponent", "1e3 ", "Invalid integer value 1e3 in object; offset: 0h (0)"},
        {"null", "null ", "Invalid integer value null in object; offset: 0h (0)"},
        {"comment", "% 1\n2 ", "Invalid integer value % in object; offset: 0h (0)"},
        {"angle of no meaning", "<z ", "Invalid integer value <z in object; offset: 0h (0)"},
        {"cut off", "12", ""},
        {"nothing", " \n", ""},
    });
}

TEST(Scanner, ReadsLiteralStrings) {
    check({
        {"empty", "()", "4 "},
        {"nested", "(a(b)c)", "4 a(b)c"},
        {"escaped parenthesis", "(a\\)b)", "4 a)b"},
        {"named escapes", "(\\n\\r\\t\\f\\b)", "4 \n\r\t\f\b"},
        {"octal", "(\\101\\1012\\7\\78\\7\\61)",
         "4 AA2\7\7"
         "8\7"
         "1"},
        {"octal at the end", "(\\60)", "4 0"},
        {"octal beyond a byte", "(\\777)", "4 \u01FF"},
        {"backslashes only escape", "(\\\\n)", "4 \n"},
        {"continued with LF", "(a\\\nb)", "4 ab"},
        {"continued with CR", "(a\\\rb)", "4 ab"},
        {"continued with CR LF", "(a\\\r\nb)", "4 ab"},
        {"NUL and high codes", "(\0\xA0\xFF)"s, "4 \0\u00A0\u00FF"s},
        {"mapped codes", "(\x80\x91\x9F\\200)", "4 \u20AC\u2018\u0178\u20AC"},
        {"unassigned codes", "(\x81\x8D\x8F\x90\x9D)", "4 \0\0\0\0\0"s},
        {"raw LF", " (a\nb)", "Failed to read string in object at 1h (1)"},
        {"raw CR", "(a\rb)", "Failed to read string in object at 0h (0)"},
        {"LF LF continued", "(a\\\n\nb)", "Failed to read string in object at 0h (0)"},
        {"CR x LF continued", "(a\\\rx\nb)", "Failed to read string in object at 0h (0)"},
        {"raw LF behind octal", "(\\7\n)", "Failed to read string in object at 0h (0)"},
        {"unknown escape", " (a\\q)",
         "Invalid escape character q at offset 4h (4)\n"
         "Failed to read string in object at 1h (1)"},
        {"unclosed", "(a(b)", "Failed to read string in object at 0h (0)"},
    });
}

TEST(Scanner, ReadsHexStringsAndNames) {
    check({
        {"hex", "<48 65\n6C>", "4 48656C"},
        {"odd digits", "<7>", "4 70"},
        {"other characters skipped", "<4g(1]>", "4 41"},
        {"hex empty", "<>", "4 "},
        {"both cases", "<aFfA>", "4 AFFA"},
        {"UTF-16 behind a mark", "<FEFF0041D83DDE00>", "4 A\U0001F600"},
        {"longer than the first buffer", "<" + std::string(300, '4') + ">",
         "4 " + std::string(300, '4')},
        {"hex unclosed", "<48", "Failed to read hex string in object at 0h (0)"},
        {"name as it stands", "/A#20B\xE9", "1 A#20B\u00E9"},
        {"name ended by a brace", "/A}", "1 A"},
        {"names side by side", "[/A/B[/C]/D(e)/F<</G/H>>]", "8 [AB[C ]DeF<< G -> H >> ]"},
        {"name empty", "/ A", "Failed to read identifer in object at 0h (0)"},
        {"name empty in list", "[/]",
         "Failed to read identifier in array at 1h (1)\n"
         "Failed to read array in object at 0h (0)"},
    });
}

TEST(Scanner, ReadsLists) {
    const auto inArray = [](const std::string& message) {
        return message + "\nFailed to read array in object at 0h (0)";
    };
    const auto inDictionary = [](const std::string& message) {
        return message + "\nFailed to read dictionary in object at 0h (0)";
    };
    check({
        {"tokens end at structures", "[1(a)2<41>3/B 4[5]6<<>>7%c\n8]",
         "8 [1.0a2.0413.0B4.0[5.0 ]6.0<< >>7.08.0 ]"},
        {"references", "[1 0 R 2 3 4294967295 65535 R]", "8 [1 (0)2.03.04294967295 (65535) ]"},
        {"negative numbers wrap", "[-1 -1 R]", "8 [4294967295 (65535) ]"},
        {"comment ends the token", "[12% ]\r3]", "8 [12.03.0 ]"},
        {"bracket in a dictionary is a token", "<</A 1]>> ",
         inDictionary("Invalid integer value 1] in value list; offset: 5h (5)")},
        {"angle in an array is a token", "[1>]",
         inArray("Invalid integer value 1> in value list; offset: 1h (1)")},
        {"dictionary", "<</B 2/A<</C true>>/A 3>>endobj", "6 << A -> 3.0 B -> 2.0 >>"},
        {"single angle ends nothing", "<</A 1 > >>",
         inDictionary("Invalid integer value > in value list; offset: 7h (7)")},
        {"uneven", "<</A 1/B>>x",
         inDictionary("Uneven number of values in dictionary: 3h (3); offset: 0h (0)")},
        {"key is no name", "<<1 2>>x", inDictionary("Expected identifier in dictionary at 0h (0)")},
        {"real", "[1.x]", inArray("Invalid real value 1.x in value list; offset: 1h (1)")},
        {"id has a fraction", "[1.5 0 R]",
         inArray("Invalid object reference in array before 8h (8)")},
        {"one number", "[0 R]", inArray("Invalid object reference in array before 4h (4)")},
        {"no number", "[/A 0 R]", inArray("Invalid object reference in array before 7h (7)")},
        {"generation too large", "[1 65536 R]",
         inArray("Invalid object reference in array before Ah (10)")},
        {"id too large", "[4294967296 0 R]",
         inArray("Invalid object reference in array before Fh (15)")},
        {"reference across lists", "[1 0 [R]]",
         inArray("Invalid object reference in array before 7h (7)\n"
                 "Failed to read array in array at offset 5h (5)")},
        {"string", "[(a", inArray("Failed to read string in array at offset 1h (1)")},
        {"hex string", "[<4", inArray("Failed to read hex string in value list at offset 1h (1)")},
        {"dictionary in array", "[<</A>>]",
         inArray("Uneven number of values in dictionary: 1h (1); offset: 1h (1)\n"
                 "Failed to read dictionary in array at offset 1h (1)")},
        {"array unclosed", "[1 ", "Failed to read array in object at 0h (0)"},
        {"comment unclosed", "[1 % ]", "Failed to read array in object at 0h (0)"},
        {"dictionary unclosed", "<</A 1>", "Failed to read dictionary in object at 0h (0)"},
    });
}

TEST(Scanner, FindsWhereStreamDataBegins) {
    check({
        {"LF", "<<>>stream\nX", "7 @11 << >>"},
        {"CR LF", "<< >> \t stream\r\nX", "7 @16 << >>"},
        {"CR", "<<>>\nstream\rX", "7 @12 << >>"},
        {"one line ending only", "<<>>stream\n\nX", "7 @11 << >>"},
        {"none", "<<>>streamX", "7 @10 << >>"},
        {"white space within", "<<>>str eam\nX", "7 @12 << >>"},
        {"no stream", "<<>>endobj", "6 << >>"},
        {"ended within the keyword", "<<>>endob", "Failed to read stream in object at 0h (0)"},
        {"ended behind the keyword", " <<>>stream", "Failed to read stream in object at 1h (1)"},
        {"ended behind CR", "<<>>stream\r", "Failed to read stream in object at 0h (0)"},
    });
}

} // namespace
