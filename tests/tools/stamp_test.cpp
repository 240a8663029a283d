#include "support/testing.h"

#include <pdf/tools/background.h>

namespace {

using namespace Libraries::Files::PDF;
using namespace Support;

/// A stamp over a document of one page.
bool stamp(Document& document) {
    return Tools::letterhead(document, open(DocumentBuilder::minimal().bytes()), {.above = true});
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
            const auto pages = Tools::allPages(*document);
            const auto contents = castTo<Array>((*pages)[0].dictionary->find("Contents"));
            std::vector<std::string> shown;
            for (std::uint64_t index = 1; index + 1 < contents->size(); ++index) {
                const auto stream = Tools::resolve(*document, contents->get(index));
                shown.push_back(contentsOf(Tools::decodedBytes(*document, castTo<Stream>(stream))));
            }
            EXPECT_EQ(shown, row.shown) << row.name;
        }
    }
}

TEST(Stamp, LosesNoByteBehindACarriageReturn) {
    const auto document = open(DocumentBuilder::minimal().lineEnding("\r").bytes());
    ASSERT_TRUE(stamp(*document));
    EXPECT_EQ(write(*document).find("stream\r\n"), std::string::npos);
}

} // namespace
