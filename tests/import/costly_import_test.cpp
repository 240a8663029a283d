// Small documents that libqpdf alone, or an import that works each thing as often as it is listed,
// would take gigabytes or minutes for.

#include "import/modern_file.h"
#include "support/testing.h"

#include <pdf/import.h>

#include <utility>

namespace {

using namespace Support;
using Import::normalise;

constexpr std::uint32_t done = Host::NoError;

struct Row {
    const char* name;
    std::string bytes;
    std::uint32_t code = LimitExceeded;
    Import::Options options = {};
};

void expectCodes(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        Host::Error::set(done);
        const auto result = normalise(stripeOf(row.bytes), row.options);
        EXPECT_EQ(result ? done : Host::Error::get(), row.code) << row.name;
    }
}

/// Object 9 in an object stream that is encoded as `entries` say.
std::string held(const std::string& entries, const std::string& data) {
    const std::string length = " /Length " + std::to_string(data.size());
    return ModernFile().objectStream(8, {9}, "/First 4 " + entries + length, data).bytes();
}

const std::string value = "9 0 << /A 1 >>";

/// `value` in rows of so many bytes, as a predictor has them, and filled up with NUL.
std::string inRow(const std::string& columns) {
    return held("/Filter /FlateDecode /DecodeParms << /Predictor 12 /Columns " + columns + " >>",
                deflated("\2" + value));
}

TEST(CostlyImport, CountsEachFilterOfAChain) {
    // Spaces behind data, which stays what it is, as much as the default limit is.
    const auto blown = [](const std::string& data) {
        return deflated(data + std::string(std::size_t{9} << 20, ' '));
    };
    const auto twice = [&](const std::string& data) { return deflated(blown(data)); };
    const auto plain = [](const std::string& data) { return data; };
    const ModernFile table = ModernFile().objectStream(8, {9}, "/First 4 /Length 14", value);
    const std::string both = held("/Filter [ /AHx /AHx ]", hexed(hexed(value)));
    const std::string huge = "<< /Predictor 2 /Columns 2147483647 >>";
    const std::string hex = std::string(std::size_t{9} << 20, ' ') + "392030206E756C6C>";
    expectCodes({
        {"one filter", held("/Filter /FlateDecode", deflated(value)), done},
        {"two of them", held("/Filter [ /AHx /Fl ]", hexed(deflated(value))), done},
        {"a bomb", held("/Filter /FlateDecode", blown(value))},
        {"in the table", table.bytes("/Filter /FlateDecode", blown)},
        {"inside that", table.bytes("/Filter [ /Fl /Fl ]", twice)},
        {"a table's filter elsewhere", table.bytes("/Filter 9 0 R", plain), BeyondRepair},
        {"a bomb inside", held("/Filter [ /Fl /AHx ]", deflated(hex))},
        {"further inside", held("/Filter [ /Fl /Fl /AHx ]", deflated(deflated(hex)))},
        {"as much as allowed", both, done, {.objectLimit = 300}},
        {"less than both", both, LimitExceeded, {.objectLimit = 120}},
        {"eight", held("/Filter [ /AHx" + repeated(" /Crypt", 7) + " ]", hexed(value)), done},
        {"nine", held("/Filter [ /AHx" + repeated(" /Crypt", 8) + " ]", hexed(value))},
        {"a row of 1 MiB", inRow("1048576"), done},
        {"a longer one", inRow("1048577")},
        {"of bits", inRow("1048577 /BitsPerComponent 1"), done},
        {"of colors", inRow("1048576 /Colors 2")},
        {"beyond all numbers", inRow("2147483647 /Colors 2147483647")},
        {"behind an array",
         held("/Filter [ /FlateDecode ] /DecodeParms [ " + huge + " ]", deflated(value))},
        {"for each", held("/Filter [ /Fl /Fl ] /DecodeParms " + huge, deflated(deflated(value)))},
        {"many in the table", ModernFile().bytes("/Filter [" + repeated(" /Fl", 9) + " ]", plain)},
        {"nested filters", held("/Filter " + repeated("[", 400) + repeated("]", 400), value), done},
    });
}

TEST(CostlyImport, FindsATableInDisguise) {
    // The name spelled otherwise, an object in front that is only text, another length.
    const std::pair<std::string, std::string> disguises[] = {
        {"/XRef", "/X#52ef"},
        {"/Type /XRef", "/A (1 0 obj << >> endobj) /Type /XRef"},
        {"/Type /XRef", "/A [ >> ] /Type /XRef"},
        {"/Length ", "/Length 1 /L "},
        {"/XRef", "8 0 R"},
    };
    const ModernFile file = ModernFile().objectStream(8, {9}, "/First 4 /Length 14", value);
    const std::string bomb = file.bytes("/Filter /FlateDecode", [](const std::string& table) {
        return deflated(table + std::string(std::size_t{9} << 20, ' '));
    });
    for (const auto& [former, text] : disguises) {
        std::string bytes = bomb;
        bytes.replace(bytes.rfind(former), former.size(), text);
        const RecordingLog log;
        EXPECT_FALSE(normalise(stripeOf(bytes))) << text;
    }
}

TEST(CostlyImport, CountsWhatStructureBecomes) {
    const auto numbers = [](std::size_t count) {
        return held("/Filter /FlateDecode", deflated("9 0 [" + repeated("0 ", count) + "]"));
    };
    const auto longer = [](std::size_t entries) {
        const std::string data = std::string(9 * entries, '\0');
        ModernFile file;
        file.object(20, "<< /Type /XRef /W [ 1 4 4 ] /Size " + std::to_string(entries) +
                            " /Length " + std::to_string(data.size()) + " >>\nstream\n" + data +
                            "\nendstream");
        return file.bytes();
    };
    const auto deflatedTable = [](std::size_t entries) {
        const std::string data = deflated(std::string(3 * entries, '\0'));
        return ModernFile()
            .object(20, "<< /Type /XRef /W [ 1 1 1 ] /Filter /FlateDecode /Size 9 /Index [ 99 " +
                            std::to_string(entries) + " ] /Length " + std::to_string(data.size()) +
                            " >>\nstream\n" + data + "\nendstream")
            .bytes();
    };
    expectCodes({
        {"some values", numbers(60'000), done},
        {"too many", numbers(70'000)},
        {"more for whoever asks", numbers(70'000), done, {.objectLimit = 2'000'000}},
        {"some entries", deflatedTable(60'000), done},
        {"too many entries", deflatedTable(80'000)},
        {"as many bytes", longer(60'000), done},
    });

    // Tables that all name the same cross-reference stream.
    const auto hybrid = [&](std::size_t tables) {
        std::string bytes = deflatedTable(20'000);
        const std::string stream = std::to_string(bytes.find("20 0 obj"));
        std::size_t previous = bytes.rfind("21 0 obj");
        for (std::size_t count = 0; count < tables; ++count) {
            const std::size_t start = bytes.size();
            bytes += "xref\n0 0\ntrailer\n<< /Size 9 /Root 1 0 R /XRefStm " + stream + " /Prev " +
                     std::to_string(previous) + " >>\n";
            previous = start;
        }
        return bytes + "startxref\n" + std::to_string(previous) + "\n%%EOF\n";
    };
    expectCodes({{"one table", hybrid(1), done}, {"many", hybrid(50)}});
}

TEST(CostlyImport, WorksNothingAsOftenAsItIsListed) {
    constexpr std::uint32_t count = 400;
    const std::string all = references(10, count);
    const auto streams = [&](const std::string& entries, const std::string& shared) {
        DocumentBuilder file = DocumentBuilder::minimal();
        file.object(1, "<< /Type /Catalog /Pages 2 0 R /X [ " + all + "] >>").object(5, shared);
        for (std::uint32_t id = 10; id < 10 + count; ++id)
            file.stream(id, entries + " ", "x");
        return file.bytes();
    };
    const auto tree = [&](const std::string& kids) {
        DocumentBuilder file = DocumentBuilder::minimal();
        file.object(2, pageTree(10, count)).object(5, kids);
        for (std::uint32_t id = 10; id < 10 + count; ++id)
            file.object(id, "<< /Type /Pages /Kids 5 0 R /Count 1 >>");
        return file.bytes();
    };
    const std::string large = "<< /A [ " + repeated("1 ", 9'000) + "] >>";
    const std::string flate = "/Filter [ /FlateDecode ] /DecodeParms 5 0 R";
    expectCodes({
        {"filters", streams("/Filter 5 0 R", "[ /ASCIIHexDecode /FlateDecode ]"), done},
        {"many", streams("/Filter 5 0 R", "[ " + repeated("/A ", 9'000) + "]")},
        {"a long name", streams("/Filter 5 0 R", "/" + std::string(18'000, 'A'))},
        {"parameters", streams(flate, "[ << /Predictor 1 >> ]"), done},
        {"large", streams(flate, "[ " + large + " ]")},
        {"that are none", streams(flate, "[ null " + repeated(large, 99) + " ]"), done},
        {"large, but an object", streams(flate, large), done},
        {"pages", tree("[ 3 0 R 3 0 R ]"), done},
        {"many pages", tree("[ " + repeated("3 0 R ", 2'000) + "]"), BeyondRepair},
    });
    const std::string direct = tree("[ << /Type /Page /A " + large + " >> ]");
    EXPECT_LT(contentsOf(normalise(stripeOf(direct))).size(), 2 * direct.size())
        << "a page that is no object";
}

TEST(CostlyImport, LooksForTablesOnce) {
    const std::string bytes = DocumentBuilder::minimal().bytes() + repeated("obj [ /XRef ", 8'000);
    const RecordingLog log;
    expectCodes({{"arrays inside each other", bytes, BeyondRepair}});
    EXPECT_NE(log.text().find("lies inside each other"), std::string::npos) << log.text();
}

TEST(CostlyImport, DecodesNoMoreThanAllowed) {
    const std::string bomb = deflated(deflated(std::string(500'000, ' ') + "41>"));
    const auto imported = [&](const std::string& entries, const std::string& data,
                              std::uint64_t limit) {
        const std::string bytes = DocumentBuilder::minimal().stream(4, entries, data).bytes();
        Import::Options options{.plainFilters = true, .streamLimit = limit};
        return contentsOf(normalise(stripeOf(bytes), options));
    };
    const std::string chain = "/Filter [ /FlateDecode /FlateDecode /ASCIIHexDecode ] ";
    EXPECT_EQ(imported(chain, bomb, 600'000).find("ASCIIHexDecode"), std::string::npos);
    EXPECT_NE(imported(chain, bomb, 499'000).find("ASCIIHexDecode"), std::string::npos)
        << "the filter in the middle is not counted";
    const std::string row = "/Filter /FlateDecode /DecodeParms << /Predictor 12 /Columns ";
    const std::string data = deflated("\2x");
    EXPECT_EQ(imported(row + "1048576 >> ", data, 9'000'000).find("Columns"), std::string::npos);
    EXPECT_NE(imported(row + "1048577 >> ", data, 9'000'000).find("Columns"), std::string::npos);
}

} // namespace
