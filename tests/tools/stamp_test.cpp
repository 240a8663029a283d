#include "support/results.h"

#include <pdf/tools/letterheads.h>

#include <algorithm>
#include <sstream>

namespace {

using namespace Support;

std::vector<std::string> parted(std::string text) {
    std::vector<std::string> parts;
    std::istringstream streams(text += '|');
    while (std::getline(streams, text, '|'))
        parts.push_back(text);
    return parts;
}

/// What a page draws once it is stamped; its streams, stored by `filter`, hold `contents`.
std::vector<std::string> stamped(const std::vector<std::string>& contents,
                                 const std::string& filter = "") {
    DocumentBuilder file = DocumentBuilder::minimal();
    std::uint32_t id = 5;
    for (const std::string& content : contents)
        file.stream(id++, content == "71>" ? "/Filter /ASCIIHexDecode " : filter,
                    filter.empty() ? content : deflated(content));
    const std::string list = references(5, contents.size());
    const auto document = open(file.object(3, "<< /Type /Page /Contents [ " + list + "] >>"));
    const auto stamp = open(DocumentBuilder::minimal());
    EXPECT_TRUE(Tools::letterhead(document, stamp, {.above = true}));
    return parted(drawn(document, 0));
}

std::string restored(std::size_t levels) {
    return "\n" + repeated("Q\n", levels);
}

TEST(Stamp, StaysInItsPlaceWhateverAPageLeavesOpenOrTakesBack) {
    const struct {
        const char* contents; ///< streams, parted by bars
        std::size_t levels;   ///< that are restored before the stamp is drawn
        const char* shown = nullptr;
    } rows[] = {
        {"", 1},
        {"q q Q 1 0 0 1 0 0 cm", 2},
        {"q\nq[q]q(q)/q%q\rq<71>q<</q/q>>q{q", 9},
        {"(\\) q (nested) q\\\\) q (q", 2},
        {"qQ Qq 1q q1 Q", 1, "qQ Qq 1q q1  "},
        {"BI /W 9 ID q q EI\x80 q EIq q\nEI Q", 1, "BI /W 9 ID q q EI\x80 q EIq q\nEI  "},
        {"BI /W 9 ID EI q", 2},
        {"ID q", 2},
        {"BI ID q", 1},
        {"q Q|q|Q", 1},
        {"Q Q Q q q Q", 2, "      q q Q"},
        {"1 w Q q Q Q /Q Do (Q)", 1, "1 w   q Q   /Q Do (Q)"},
        {"q q|Q Q Q q|Q Q", 1, "q q|Q Q   q|Q  "},
        {"Q|q|Q|q", 2, " |q|Q|q"},
        {"BI ID Q EI Q", 1, "BI ID Q EI  "},
    };
    for (const auto& row : rows) {
        std::vector<std::string> wanted = parted(row.shown ? row.shown : row.contents);
        wanted.push_back(restored(row.levels));
        for (const char* const filter : {"", "/Filter /FlateDecode "}) {
            const std::vector<std::string> shown = stamped(parted(row.contents), filter);
            ASSERT_GE(shown.size(), 2U);
            EXPECT_EQ(std::vector(shown.begin() + 1, shown.end() - 1), wanted) << row.contents;
        }
    }
}

TEST(Stamp, IsHeldByStatesInReserveWhereContentsCannotBeLookedThrough) {
    const std::vector<std::string> shown = stamped({"71>", "Q Q q q"});
    ASSERT_EQ(shown.size(), 7U);
    EXPECT_EQ(std::ranges::count(shown[1], 'q'), 12);
    EXPECT_EQ(shown[3], "Q Q q q") << "which may restore what nobody has seen";
    EXPECT_EQ(shown[4], restored(1 + 2 + 6)) << "the first of all, what is left open, and a half";
    EXPECT_EQ(shown[6], restored(6)) << "behind the stamp";
}

TEST(Stamp, LosesNoByteBehindACarriageReturn) {
    const auto document = open(DocumentBuilder::minimal().lineEnding("\r"));
    const auto stamp = open(DocumentBuilder::minimal());
    ASSERT_TRUE(Tools::letterhead(document, stamp, {.above = true}));
    EXPECT_EQ(write(*document).find("stream\r\n"), std::string::npos);
}

} // namespace
