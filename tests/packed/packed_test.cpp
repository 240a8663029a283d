#include "packed/entry.h"
#include "reader/scanner.h"
#include "support/testing.h"

#include <map>

namespace {

using namespace std::string_literals;
using namespace Support;
using Rows = std::initializer_list<std::string>; ///< "from => to"

/// Expects of each row that `operation` makes `to` of `from`.
template <class Operation>
void check(Rows rows, Operation operation) {
    for (const std::string& row : rows) {
        const std::size_t arrow = row.find(" => ");
        EXPECT_EQ(operation(row.substr(0, arrow)), row.substr(arrow + 4)) << row;
    }
}

/// What a value is packed as, behind a "!" where it cannot be written; nothing where it is none.
std::string pack(std::string_view text) {
    const auto source = stripeOf(text);
    const RecordingLog log;
    Host::Cursor cursor(*source);
    Scanner scanner(cursor);
    if (!scanner.readObjectValue()) return "";
    return (scanner.packed().unwritable ? "!" : "") + std::string(scanner.packed().bytes);
}

TEST(Packing, GivesEachValueOneSpelling) {
    check({"[true(a)null<a>/A#20B\\[]<<>>%c\n-2] => [ true (a) null <A0> /A#20B\\ [ ] << >> -2 ]",
           "[-0 +5 007 .5 5. 1.0] => [ \t-0\n0 \t+5\n5 \t007\n7 \t.5\n0.5 \t5.\n5 \t1.0\n1 ]",
           "[1.50 1.05 -1.5 - . -0.5] => [ 1.50 \t1.05\n1.5 -1.5 \t-\n0 \t.\n0 \t-0.5\n0.5 ]",
           "999999999999999999  => 999999999999999999", "9223372036854775808  => ",
           "-9223372036854775808.18446744073709551615  => "
           "\t-9223372036854775808.18446744073709551615\n-9223372036854775808.18446744073709551615",
           "00000000000000000001  => \t00000000000000000001\n1",
           "[7 0 R +1 00 R -1 -1 R 1 2 3.0 R] => [ 7 0 R 1 0 R 4294967295 65535 R 1 2 3 R ]",
           "<</K 1 00 R/A 007 0 R>>endobj => << /A 7 0 R /K 1 0 R >>", "[1 0/A R] => ",
           "<</A 1 2 3 R 4>>endobj => ", "(\\n\\r\\t\\b\\f\t\b\f) => (\\n\\r\\t\\b\\f\\t\\b\\f)",
           "(\\((\\))\\\n\\134) => (\\(\\(\\)\\)\\\\)", "(\\622\\522) => (\\203\\214)",
           "(\x80\\200\\377\xA0\x7F~\\176\\177\\7\0\x81\\215) => "
           "(\\200\\200\\377\\240\\177~~\\177\7\0\0\0)"s,
           "[(\\400)(\\777)] => ![ (\\400) (\\777) ]",
           "<</B 1/A 2/B 3/A 4/A 5>>endobj => << /A 5 /B 3 >>",
           "<</\xE9 1/AB 2/A!/Z/A<</D/E/C[<</G 1/F 2>>]>>>>endobj => "
           "<< /A << /C [ << /F 2 /G 1 >> ] /D /E >> /A! /Z /AB 2 /\xE9 1 >>"},
          pack);

    std::string text = "<<", packed = "<<"; // more keys than are put in order one by one
    std::map<std::string, std::string> entries;
    for (int index = 0; index < 100; ++index) {
        const std::string key = " /K" + std::to_string(index * 37 % 64);
        text += key + (entries[key] = " [ " + std::to_string(index) + " ]");
    }
    for (const auto& [key, value] : entries)
        packed.append(key).append(value);
    EXPECT_EQ(pack(text + ">>endobj"), packed + " >>");
}

TEST(Packing, FindsEntriesPastWhateverStandsInFront) {
    const std::string packed =
        pack("<</A(>> /K 0)/B[(])<3E3E><</K 0>>/K/N[]]/C 7 0 R/D<>/E(\\) /K 0\\134)/F 1.05"
             "/G<</K<</K 0>>>>/H/K/K 4/KA(a/K)/L/M/N null>>endobj");
    check({"A => (>> /K 0)", "B => [ (]) <3E3E> << /K 0 >> /K /N [ ] ]", "C => 7 0 R", "D => <>",
           "E => (\\) /K 0\\\\)", "F => \t1.05\n1.5", "G => << /K << /K 0 >> >>", "H => /K",
           "K => 4", "KA => (a/K)", "L => /M", "N => null", " => ", "M => ", "0 => ", "Z => "},
          [&](const std::string& key) { return std::string(findPackedEntry(packed, key)); });
    EXPECT_EQ(findPackedEntry("<< >>", "K"), "");
}

// Of long names the table looks at both ends: these find no place in it and are not shared.
TEST(Packing, TellsNamesApartThatDifferInTheMiddle) {
    std::string text = "[", packed = "[";
    for (int index = 100; index < 200; ++index) {
        const std::string name = "/EightEnd" + std::to_string(index) + "EightEnd";
        text += name;
        packed += " " + name;
    }
    EXPECT_EQ(pack(text + "]"), packed + " ]");
    const auto document = open(DocumentBuilder::minimal().object(5, text + "]"));
    EXPECT_EQ(castTo<Array>(valueOf(*document, 5))->size(), 100U);
    EXPECT_NE(write(*document).find(packed + " ]"), std::string::npos) << "as unpacked";
}

// Strings that fill a chunk to its last byte, are a byte too long for that, or get their own.
TEST(Packing, KeepsObjectsOfAnySizeBeyondTheirDocument) {
    DocumentBuilder file;
    std::vector<std::string> texts;
    for (const std::size_t size : {65536U, 65536U, 65536U, 65533U, 3U, 65537U, 9U, 300000U, 65536U,
                                   65536U, 65536U, 65527U, 65536U, 65536U, 65536U, 65000U, 537U}) {
        texts.emplace_back(size - 2, static_cast<char>('a' + texts.size())); // with parentheses
        file.object(static_cast<std::uint32_t>(texts.size()), "(" + texts.back() + ")");
    }
    Ref<Document> document = open(file);
    const std::string untouched = write(*document);
    const auto objects = document->getObjects();
    for (std::size_t index = 0; index < texts.size(); index += 2)
        EXPECT_EQ(textOf(objects.at(index)->value()), texts[index]);
    EXPECT_TRUE(write(*document) == untouched && !document->changed());
    document = nullptr;
    for (std::size_t index = 0; index < texts.size(); ++index) {
        EXPECT_NE(untouched.find("\n(" + texts[index] + ")\n"), std::string::npos) << index;
        EXPECT_EQ(objects.at(index)->valueType(), Value::Type::String);
        EXPECT_EQ(textOf(objects.at(index)->value()), texts[index]) << index;
    }
}

} // namespace
