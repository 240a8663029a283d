#include "support/testing.h"

#include <pdf/tools/background.h>

#include <algorithm>

namespace {

using namespace Libraries::Files::PDF;
using namespace Support;

/// A stamp over a document of one page.
bool stamp(Document& document) {
    return Tools::letterhead(document, open(DocumentBuilder::minimal().bytes()), {.above = true});
}

/// What the streams of the first page's contents hold.
std::vector<std::string> contentsOfPage(Document& document) {
    const auto pages = Tools::allPages(document);
    const auto contents = castTo<Array>((*pages)[0].dictionary->find("Contents"));
    std::vector<std::string> shown;
    for (std::uint64_t index = 0; index < contents->size(); ++index) {
        const auto stream = castTo<Stream>(Tools::resolve(document, contents->get(index)));
        const auto bytes = Tools::decodedBytes(document, stream);
        shown.push_back(bytes ? contentsOf(bytes) : "encoded otherwise");
    }
    return shown;
}

TEST(Stamp, StaysInItsPlaceWhateverAPageTakesBack) {
    const struct {
        const char* name;
        std::vector<std::string> contents, shown; ///< streams
    } rows[] = {
        {"balanced", {"q Q", "q", "Q"}, {"q Q", "q", "Q", "\nQ\n"}},
        {"too many", {"1 w Q q Q Q /Q Do (Q)"}, {"1 w   q Q   /Q Do (Q)", "\nQ\n"}},
        {"across streams", {"q q", "Q Q Q q", "Q Q"}, {"q q", "Q Q   q", "Q  ", "\nQ\n"}},
        {"open and closed", {"Q", "q", "Q", "q"}, {" ", "q", "Q", "q", "\nQ\nQ\n"}},
        {"image", {"BI ID Q EI Q"}, {"BI ID Q EI  ", "\nQ\n"}},
    };
    for (const auto& row : rows) {
        for (const bool flate : {false, true}) {
            DocumentBuilder file = DocumentBuilder::minimal();
            std::string list;
            std::uint32_t id = 5;
            for (const std::string& content : row.contents) {
                list += std::to_string(id) + " 0 R ";
                file.stream(id++, flate ? "/Filter /FlateDecode " : "",
                            flate ? deflated(content) : content);
            }
            file.object(3, "<< /Type /Page /Contents [ " + list + "] >>");
            const auto document = open(file.bytes());
            ASSERT_TRUE(stamp(*document));
            std::vector<std::string> shown = contentsOfPage(*document);
            ASSERT_GE(shown.size(), 2U);
            EXPECT_EQ(std::vector(shown.begin() + 1, shown.end() - 1), row.shown) << row.name;
        }
    }
}

TEST(Stamp, IsHeldByStatesInReserveWhereContentsCannotBeLookedThrough) {
    DocumentBuilder file = DocumentBuilder::minimal();
    file.stream(5, "/Filter /ASCIIHexDecode ", "71>").stream(6, "", "Q Q q q");
    const auto document =
        open(file.object(3, "<< /Type /Page /Contents [ 5 0 R 6 0 R ] >>").bytes());
    ASSERT_TRUE(stamp(*document));
    const std::vector<std::string> shown = contentsOfPage(*document);
    ASSERT_EQ(shown.size(), 7U);
    const auto restored = [](int levels) {
        std::string operators = "\n";
        for (int level = 0; level < levels; ++level)
            operators += "Q\n";
        return operators;
    };
    EXPECT_EQ(std::ranges::count(shown[1], 'q'), 12);
    EXPECT_EQ(shown[3], "Q Q q q") << "which may restore what nobody has seen";
    EXPECT_EQ(shown[4], restored(1 + 2 + 6)) << "the first of all, what is left open, and a half";
    EXPECT_EQ(shown[6], restored(6)) << "behind the stamp";
}

TEST(Stamp, LosesNoByteBehindACarriageReturn) {
    const auto document = open(DocumentBuilder::minimal().lineEnding("\r").bytes());
    ASSERT_TRUE(stamp(*document));
    EXPECT_EQ(write(*document).find("stream\r\n"), std::string::npos);
}

} // namespace
