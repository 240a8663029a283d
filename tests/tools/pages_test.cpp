#include "support/testing.h"

#include <pdf/tools/pages.h>

#include <algorithm>
#include <random>
#include <set>

namespace {

using namespace Libraries::Files::PDF;
using namespace Support;

/// What a page is, its number apart: its own mark, and what holds for it.
std::string lookOf(const Tools::Page& page) {
    return textOf(page.dictionary->find("K")) + " " + textOf(page.resources) + " " +
           textOf(page.mediaBox) + " " + textOf(page.cropBox) + " " + textOf(page.rotate) + "\n";
}

std::string looksOf(const Document& document) {
    const auto pages = Tools::allPages(document);
    std::string looks;
    for (const Tools::Page& page : pages)
        looks += lookOf(page);
    return pages ? looks : "failed";
}

/// A page tree at random, and what its pages should look like.
class RandomTree {
public:
    explicit RandomTree(std::uint32_t seed) : random_(seed) {
        builder_.object(1, "<< /Type /Catalog /Pages 2 0 R >>").object(3, "[ 4 0 R 4 0 R ]");
        builder_.stream(4, "", "q Q").object(5, "<< /Shared true >>").object(6, "90");
        const Inherited none = {"(null)", "(null)", "(null)", "(null)"};
        node(2, 0, none);
    }

    [[nodiscard]] std::string bytes() const { return builder_.bytes(); }
    [[nodiscard]] const std::string& looks() const { return looks_; }

private:
    using Inherited = std::array<std::string, 4>; // text forms

    [[nodiscard]] std::uint32_t below(std::uint32_t limit) {
        return static_cast<std::uint32_t>(random_()) % limit;
    }

    /// Entries that a node has, by chance; what holds below it.
    std::string attributes(Inherited& inherited) {
        const std::string number = std::to_string(below(900));
        const std::pair<std::string, std::string> choices[][2] = {
            {{"5 0 R", "<< Shared -> true >>"},
             {"<< /R " + number + " >>", "<< R -> " + number + ".0 >>"}},
            {{"[ 0 0 6 0 R " + number + " ]", "[0.00.090.0" + number + ".0 ]"},
             {"[ -1 0 9 9 ]", "[-1.00.09.09.0 ]"}},
            {{"[ 1 1 8 " + number + " ]", "[1.01.08.0" + number + ".0 ]"},
             {"[ 2 2 5 5 ]", "[2.02.05.05.0 ]"}},
            {{"6 0 R", "90.0"}, {"180", "180.0"}},
        };
        constexpr const char* keys[] = {"/Resources ", "/MediaBox ", "/CropBox ", "/Rotate "};
        std::string entries;
        for (std::size_t index = 0; index < std::size(keys); ++index) {
            const std::uint32_t chance = below(8);
            if (chance == 0) entries += keys[index] + std::string("null ");
            if (chance > 2) continue;
            if (chance == 0) continue;
            const auto& [syntax, text] = choices[index][chance - 1];
            entries += keys[index] + syntax + " ";
            inherited[index] = text;
        }
        return entries;
    }

    void node(std::uint32_t id, unsigned depth, Inherited inherited) {
        const std::string entries = attributes(inherited);
        std::string kids;
        const std::uint32_t count = below(4) + (depth == 0 ? 1 : 0);
        for (std::uint32_t kid = 0; kid < count; ++kid) {
            if (depth < 40 && below(5) < 3) {
                kids += std::to_string(++last_) + " 0 R ";
                node(last_, depth + 1, inherited);
            } else {
                kids += page(inherited);
            }
        }
        const bool typed = id == 2 || below(4) != 0;
        // The list may be an object of its own, and Count is often wrong.
        if (below(3) == 0 && id != 2) {
            builder_.object(++last_, "[ " + kids + "]");
            kids = std::to_string(last_) + " 0 R ";
        } else {
            kids = "[ " + kids + "] ";
        }
        builder_.object(id, "<< " + std::string(typed ? "/Type /Pages " : "") + entries +
                                "/Count 7 /Kids " + kids + ">>");
    }

    /// A new page, or one that there is already: that inherits anew.
    std::string page(const Inherited& inherited) {
        if (pages_.empty() || below(5) != 0) {
            Page& made = pages_.emplace_back();
            made.id = ++last_;
            made.own = {};
            constexpr const char* contents[] = {"", "/Contents 4 0 R ", "/Contents 3 0 R "};
            const std::string entries = attributes(made.own) + contents[below(3)];
            builder_.object(made.id, "<< " + std::string(below(4) != 0 ? "/Type /Page " : "") +
                                         entries + "/K " + std::to_string(made.id) + " >>");
        }
        const Page& page = pages_[below(static_cast<std::uint32_t>(pages_.size()))];
        looks_ += std::to_string(page.id) + ".0";
        for (std::size_t index = 0; index < inherited.size(); ++index)
            looks_ += " " + (page.own[index].empty() ? inherited[index] : page.own[index]);
        looks_ += "\n";
        return std::to_string(page.id) + " 0 R ";
    }

    struct Page {
        std::uint32_t id;
        Inherited own;
    };

    std::mt19937 random_;
    DocumentBuilder builder_;
    std::uint32_t last_ = 6;
    std::vector<Page> pages_;
    std::string looks_;
};

TEST(Pages, AreTheSameInAFlatTree) {
    std::uint64_t nested = 0;
    for (std::uint32_t seed = 1; seed <= 150; ++seed) {
        const RandomTree tree(seed);
        const auto document = Support::open(tree.bytes());
        ASSERT_TRUE(document) << seed;
        EXPECT_EQ(looksOf(*document), tree.looks()) << seed;
        EXPECT_FALSE(document->changed()) << seed;
        for (const Tools::Page& page : Tools::allPages(*document))
            nested = std::max(nested, page.depth);
        ASSERT_TRUE(Tools::flattenPages(*document)) << seed;
        EXPECT_EQ(looksOf(*document), tree.looks()) << seed;

        // What the specified operations see, in the file that is written.
        const auto again = Support::open(write(*document));
        ASSERT_TRUE(again) << seed;
        const auto pages = again->getPages();
        const auto root = again->getPageCatalog()->valueAsDictionary();
        EXPECT_EQ(root->findAsNumber("Count")->integer(), std::int64_t(pages.size())) << seed;
        std::string looks;
        std::set<std::uint32_t> ids;
        for (const auto& page : pages) {
            const auto dict = page->valueAsDictionary();
            for (const auto& key : dict->keys())
                EXPECT_NE(textOf(dict->find(key)), "Null") << seed;
            const RecordingLog quiet;
            looks +=
                lookOf({page, dict, again->valueAsDict(dict->find("Resources")),
                        dict->findAsArray("MediaBox", true), dict->findAsArray("CropBox", true),
                        castTo<Number>(Tools::resolve(*again, dict->find("Rotate")))});
            EXPECT_TRUE(ids.insert(page->id()).second) << seed;
            EXPECT_EQ(textOf(dict->find("Type")) + textOf(dict->find("Parent")), "Page2 (0)");
            EXPECT_NE(textOf(dict->find("Contents")), "3 (0)") << "no reference to the array";
        }
        for (const char* key : {"Resources", "MediaBox", "CropBox", "Rotate"})
            EXPECT_FALSE(root->find(key)) << seed;
        EXPECT_EQ(looksOf(*again), tree.looks()) << seed;
        EXPECT_TRUE(Tools::flattenPages(*again) && !again->changed()) << seed << ": it is flat";
    }
    EXPECT_GT(nested, 8U) << "some trees are deep";
}

TEST(Pages, NameWhatIsWrongWithTheTree) {
    const std::tuple<const char*, const char*, const char*, std::uint32_t, const char*> rows[] = {
        {"root in itself", "2 0 R", "1", PageTreeInvalid, "listed twice: 2 (0)"},
        {"cycle", "5 0 R", "<< /Kids [ 2 0 R ] >>", PageTreeInvalid, "listed twice: 2 (0)"},
        {"shared node", "5 0 R 5 0 R", "<< /Kids [ ] >>", PageTreeInvalid, "listed twice: 5 (0)"},
        {"direct kid", "<< /Type /Page >>", "1", PageTreeInvalid, "Kid 1 is no reference"},
        {"dangling", "9 0 R", "1", PageTreeInvalid, "Kid 1 leads nowhere in node 2 (0)"},
        {"number", "5 0 R", "1", PageTreeInvalid, "no dictionary: 5 (0)"},
        {"type", "5 0 R", "<< /Type /Font >>", PageTreeInvalid, "neither Page nor Pages: 5 (0)"},
        {"kind of type", "5 0 R", "<< /Type (Page) >>", PageTreeInvalid, "neither Page nor"},
        {"no kids", "5 0 R", "<< /Type /Pages >>", PageTreeInvalid, "no valid Kids entry: 5 (0)"},
        {"kids", "5 0 R", "<< /Kids /None >>", PageTreeInvalid, "no valid Kids entry: 5 (0)"},
        {"box", "5 0 R", "<< /MediaBox [ 0 0 9 ] >>", PageInvalid, "MediaBox is of a wrong kind"},
        {"side", "5 0 R", "<< /CropBox [ 0 0 9 /A ] >>", PageInvalid, "CropBox is of a wrong kind"},
        {"rotate", "5 0 R", "<< /Rotate /Left >>", PageInvalid, "Rotate is of a wrong kind"},
        {"resources", "5 0 R", "<< /Resources [ ] >>", PageInvalid, "Resources is of a wrong"},
    };
    for (const auto& [name, kids, five, code, message] : rows) {
        const std::string root = "<< /Type /Pages /Kids [ 3 0 R " + std::string(kids) + " ] >>";
        const auto document =
            Support::open(DocumentBuilder::minimal().object(2, root).object(5, five).bytes());
        ASSERT_TRUE(document) << name;
        const std::string before = write(*document);
        const RecordingLog log;
        expectFailure(Tools::allPages(*document), code);
        EXPECT_NE(log.text().find(message), std::string::npos) << name << ": " << log.text();
        expectFailure(Tools::flattenPages(*document), code);
        expectFailure(Tools::insertPage(*document, 0, dictionary({})), code);
        expectFailure(Tools::removePage(*document, 0), code);
        EXPECT_EQ(write(*document), before) << name;
    }
}

TEST(Pages, OfAVeryDeepTreeAreFound) {
    DocumentBuilder builder = DocumentBuilder::minimal();
    constexpr std::uint32_t last = 4000;
    builder.object(2, "<< /Type /Pages /Rotate 90 /Kids [ 5 0 R ] >>");
    for (std::uint32_t id = 5; id < last; ++id)
        builder.object(id, "<< /Kids [ " + std::to_string(id + 1) + " 0 R ] >>");
    builder.object(last, "<< /MediaBox [ 0 0 1 1 ] /K 1 >>");
    const auto document = Support::open(builder.bytes());
    EXPECT_EQ(looksOf(*document), "1.0 (null) [0.00.01.01.0 ] (null) 90.0\n");
    EXPECT_TRUE(Tools::flattenPages(*document));
    EXPECT_EQ(document->getPages().size(), 1U);
}

/// The marks of all pages in order, as the written file has them.
std::string orderOf(Document& document) {
    const auto again = Support::open(write(document));
    std::string order;
    for (const auto& page : again->getPages())
        order += textOf(page->valueAsDictionary()->find("K")).substr(0, 1);
    const auto root = again->getPageCatalog()->valueAsDictionary();
    return order + textOf(root->find("Count"));
}

TEST(Pages, ComeAndGoAndMove) {
    const auto document = Support::open(
        DocumentBuilder::minimal()
            .object(2, "<< /Type /Pages /Rotate 90 /Kids [ 3 0 R 5 0 R ] >>")
            .object(3, "<< /Type /Page /K 1 /MediaBox [ 0 0 9 9 ] >>")
            .object(5, "<< /Type /Pages /MediaBox [ 0 0 8 8 ] /Kids [ 6 0 R 7 0 R ] >>")
            .object(6, "<< /Type /Page /K 2 >>")
            .object(7, "<< /Type /Page /K 3 >>")
            .bytes());
    const auto box = Tools::as<Array>(Tools::parseValue("[ 0 0 99 99 ]"));
    const auto made = [&](int mark) {
        return Dictionary::create({{"K", Number::create(mark)}, {"MediaBox", box}});
    };
    expectFailure(Tools::insertPage(*document, 4, made(4)), OutOfRange);
    expectFailure(Tools::insertPage(*document, 0, nullptr), NullArgument);
    expectFailure(Tools::insertPage(*document, 0, number(1)), InvalidArgument);
    expectFailure(Tools::insertPage(*document, 0, reference(7, 0)), InvalidArgument);
    expectFailure(Tools::insertPage(*document, 0, dictionary({})), PageInvalid);
    expectFailure(Tools::removePage(*document, 3), OutOfRange);
    expectFailure(Tools::addPage(*document, "q Q", nullptr), NullArgument);
    const auto getPages = document->getPages();
    EXPECT_EQ(getPages.size(), 2U) << "a failure has changed nothing";

    EXPECT_TRUE(Tools::insertPage(*document, 3, made(4)));
    EXPECT_EQ(orderOf(*document), "12344.0");
    EXPECT_TRUE(Tools::insertPage(*document, 0, made(0)));
    EXPECT_EQ(orderOf(*document), "012345.0");
    const auto removed = Tools::removePage(*document, 2);
    EXPECT_EQ(textOf(removed) + orderOf(*document), "6 (0)01344.0");
    EXPECT_EQ(textOf(Tools::insertPage(*document, 4, removed)), "6 (0)");
    EXPECT_EQ(orderOf(*document), "013425.0");

    const auto added = Tools::addPage(*document, "0 0 9 9 re f", box);
    const auto pages = Tools::allPages(*document);
    ASSERT_EQ(pages->size(), 6U);
    const Tools::Page& last = (*pages)[5];
    EXPECT_EQ(lookOf(last), "(null) << >> [0.00.099.099.0 ] (null) (null)\n");
    EXPECT_EQ(last.object->id(), added->id());
    const auto stream =
        castTo<Stream>(Tools::resolve(*document, last.dictionary->find("Contents")));
    EXPECT_EQ(contentsOf(Tools::decodedBytes(*document, stream)), "0 0 9 9 re f");
    while (Tools::allPages(*document)->size() != 0)
        ASSERT_TRUE(Tools::removePage(*document, 0));
    EXPECT_EQ(orderOf(*document), "0.0");
}

TEST(Pages, KeepTheirNumbersWhenALengthChanges) {
    // The number 6 is what both pages are turned by, and the length of a stream.
    const auto document = Support::open(
        DocumentBuilder::minimal()
            .object(2, "<< /Type /Pages /Rotate 6 0 R /MediaBox [ 0 0 6 0 R 6 0 R ] "
                       "/Kids [ 3 0 R ] >>")
            .object(3, "<< /Type /Page /K 1 >>")
            .object(4, "<< /Length 6 0 R >>\nstream\n" + std::string(90, 'q') + "\nendstream")
            .object(6, "90")
            .bytes());
    EXPECT_TRUE(Tools::flattenPages(*document));
    EXPECT_TRUE(document->setCompression(Compression::FlateDecode));
    EXPECT_EQ(looksOf(*document), "1.0 (null) [0.00.090.090.0 ] (null) 90.0\n");
}

} // namespace
