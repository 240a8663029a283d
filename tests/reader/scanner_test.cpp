#include "reader/scanner.h"

#include "support/testing.h"

namespace {

using namespace std::string_literals;
using namespace Libraries::Files::PDF;
using Support::textOf;

/// Reads an object's value: first in a window, then element by element, which must not differ.
/// What comes out is the value's kind and text form, or the lines that were logged.
std::string read(const std::string& text) {
    std::string results[2];
    for (const bool window : {true, false}) {
        Ref<Interfaces::Stripe> source = Support::stripeOf(text);
        if (!window) source = Host::make<Support::FailingStripe>(source);
        const Support::RecordingLog log;
        Host::Cursor cursor(*source);
        const Ref<Value> value = scanValue(cursor);
        const std::string lines = log.text();
        EXPECT_TRUE(!value || lines.empty()) << text << lines;
        results[window ? 0 : 1] = value ? std::to_string(int(value->type())) + " " + textOf(value)
                                        : lines.substr(0, lines.size() - !lines.empty());
    }
    EXPECT_EQ(results[0], results[1]) << text;
    return results[0];
}

/// Rows of "text => what is read"; `around` is the message that follows each.
void check(std::initializer_list<std::string> rows, const std::string& around = "") {
    for (const std::string& row : rows) {
        const std::size_t arrow = row.rfind(" => ");
        EXPECT_EQ(read(row.substr(0, arrow)), row.substr(arrow + 4) + around) << row;
    }
}

TEST(Scanner, ReadsBareTokens) {
    check({"\t\0\f 12  => 3 12.0"s, "-1.05  => 3 -1.5", ".5  => 3 0.5", "+5.  => 3 5.0",
           "7 0 R  => 3 7.0", "true/Next => 2 true", "12 => ", " \n => ", "1(a => 3 1.0",
           "1/A => 3 1.0", "1[ => 3 1.0", "1<< => 3 1.0", "1<> => 3 1.0", "1<4 => 3 1.0",
           "1\n => 3 1.0", "1< => "});
    check({"-9223372036854775808  => 3 -9223372036854775808.0",
           "0.18446744073709551615  => 3 0.18446744073709551615",
           "[true false null] => 8 [truefalseNull ]",
           "999999999999999999  => 3 999999999999999999.0",
           "1000000000000000000  => 3 1000000000000000000.0"});
    check({"9223372036854775808  => Invalid integer value 9223372036854775808",
           "1.-5  => Invalid real value 1.-5", "1.2.3  => Invalid real value 1.2.3",
           "1e3  => Invalid integer value 1e3", "1<z  => Invalid integer value 1<z",
           "1]  => Invalid integer value 1]", "null  => Invalid integer value null",
           "% 1\n2  => Invalid integer value %", "<z  => Invalid integer value <z"},
          " in object; offset: 0h (0)");
}

TEST(Scanner, ReadsLiteralStrings) {
    check({"() => 4 ", "(a(b)c) => 4 a(b)c", "(a\\)b) => 4 a)b",
           "(\\n\\r\\t\\f\\b) => 4 \n\r\t\f\b", "(\\101\\1012\\7\\78\\7\\61) => 4 AA2\7\7\070\0071",
           "(\\60) => 4 0", "(\\777) => 4 \u01FF", "(\\\\n) => 4 \n",
           "(a\\\nb\\\rc\\\r\nd) => 4 abcd", "(\0\xA0\xFF) => 4 \0\u00A0\u00FF"s,
           "(\x80\x91\x9F\\200) => 4 \u20AC\u2018\u0178\u20AC",
           "(\x81\x8D\x8F\x90\x9D) => 4 \0\0\0\0\0"s,
           " (a\nb) => Failed to read string in object at 1h (1)",
           " (a\\q) => Invalid escape character q at offset 4h (4)\n"
           "Failed to read string in object at 1h (1)"});
    for (const char* text : {"(a\rb)", "(a\\\n\nb)", "(a\\\rx\nb)", "(\\7\n)", "(a(b)"})
        EXPECT_EQ(read(text), "Failed to read string in object at 0h (0)") << text;
}

TEST(Scanner, ReadsHexStringsAndNames) {
    check({"<48 65\n6C> => 4 48656C", "<7> => 4 70", "<0> => 4 00", "<4g(1]> => 4 41", "<> => 4 ",
           "<aFfA> => 4 AFFA", "<FEFF0041D83DDE00> => 4 A\U0001F600",
           "<48 => Failed to read hex string in object at 0h (0)", "/A#20B\xE9 => 1 A#20B\u00E9",
           "/A} => 1 A", "[/A/B[/C]/D(e)/F<</G/H>>] => 8 [AB[C ]DeF<< G -> H >> ]",
           "/ A => Failed to read identifer in object at 0h (0)",
           "[/] => Failed to read identifier in array at 1h (1)\n"
           "Failed to read array in object at 0h (0)"});
    const auto source = Support::stripeOf("[/A/B/A]");
    Host::Cursor cursor(*source);
    const auto names = Support::castTo<Array>(scanValue(cursor));
    EXPECT_EQ(names->get(0), names->get(2)) << "equal names share one object";
    const std::string longer(300, '4'); // than the first buffer
    EXPECT_EQ(read("<" + longer + ">"), "4 " + longer);
}

TEST(Scanner, ReadsLists) {
    check({"[1(a)2<41>3/B 4[5]6<<>>7%c\n8] => 8 [1.0a2.0413.0B4.0[5.0 ]6.0<< >>7.08.0 ]",
           "[1 0 R 2 3 4294967295 65535 R] => 8 [1 (0)2.03.04294967295 (65535) ]",
           "[-1 -1 R] => 8 [4294967295 (65535) ]", "[12% ]\r3] => 8 [12.03.0 ]",
           "<</B 2/A<</C true>>/A 3>>endobj => 6 << A -> 3.0 B -> 2.0 >>"});
    check({"[1  => ", "[1 % ] => ",
           "[1>] => Invalid integer value 1> in value list; offset: 1h (1)\n",
           "[1.x] => Invalid real value 1.x in value list; offset: 1h (1)\n",
           "[(a => Failed to read string in array at offset 1h (1)\n",
           "[<4 => Failed to read hex string in value list at offset 1h (1)\n",
           "[<</A>>] => Uneven number of values in dictionary: 1h (1); offset: 1h (1)\n"
           "Failed to read dictionary in array at offset 1h (1)\n",
           "[1 0 [R]] => Invalid object reference in array before 7h (7)\n"
           "Failed to read array in array at offset 5h (5)\n"},
          "Failed to read array in object at 0h (0)");
    for (const auto& [text, offset] : {std::pair("[1.5 0 R]", "8h (8)"),
                                       {"[0 R]", "4h (4)"},
                                       {"[/A 0 R]", "7h (7)"},
                                       {"[1 65536 R]", "Ah (10)"},
                                       {"[4294967296 0 R]", "Fh (15)"}})
        EXPECT_EQ(read(text), std::string("Invalid object reference in array before ") + offset +
                                  "\nFailed to read array in object at 0h (0)")
            << text;
    check({"<</A 1]>>  => Invalid integer value 1] in value list; offset: 5h (5)\n",
           "<</A 1 > >> => Invalid integer value > in value list; offset: 7h (7)\n",
           "<</A 1/B>>x => Uneven number of values in dictionary: 3h (3); offset: 0h (0)\n",
           "<<1 2>>x => Expected identifier in dictionary at 0h (0)\n", "<</A 1> => "},
          "Failed to read dictionary in object at 0h (0)");
}

TEST(Scanner, FindsWhereStreamDataBegins) {
    check({"<<>>stream\nX => 7 @11 << >>", "<< >> \t stream\r\nX => 7 @16 << >>",
           "<<>>\nstream\rX => 7 @12 << >>", "<<>>stream\n\nX => 7 @11 << >>",
           "<<>>streamX => 7 @10 << >>", "<<>>str eam\nX => 7 @12 << >>", "<<>>endobj => 6 << >>",
           "<<>>endob => Failed to read stream in object at 0h (0)",
           " <<>>stream => Failed to read stream in object at 1h (1)",
           "<<>>stream\r => Failed to read stream in object at 0h (0)"});
}

} // namespace
