#include "support/results.h"

#include <algorithm>
#include <random>
#include <set>

namespace {

using namespace Support;
using Tools::Pages;

/// What a page is, its number apart: its own mark, and what holds for it.
std::string lookOf(const Tools::Page& page) {
    return textOf(page.dictionary->find("K")) + " " + textOf(page.resources) + " " +
           textOf(page.mediaBox) + " " + textOf(page.cropBox) + " " + textOf(page.rotate) + "\n";
}

std::string looksOf(const Ref<Document>& document) {
    const auto pages = Pages::of(document);
    if (!pages) return told(pages);
    std::string looks;
    for (const Tools::Page& page : *pages)
        looks += lookOf(page);
    return looks;
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

    static constexpr const char* keys[] = {"/Resources ", "/MediaBox ", "/CropBox ", "/Rotate "};

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
        std::string entries;
        for (std::size_t index = 0; index < std::size(keys); ++index) {
            const std::uint32_t chance = below(8);
            if (chance == 0) entries += keys[index] + std::string("null ");
            if (chance == 0 || chance > 2) continue;
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
        kids = "[ " + kids + "] ";
        // The list may be an object of its own, and Count is often wrong.
        if (below(3) == 0 && id != 2) {
            builder_.object(++last_, kids);
            kids = std::to_string(last_) + " 0 R ";
        }
        builder_.object(id, "<< " + std::string(typed ? "/Type /Pages " : "") + entries +
                                "/Count 7 /Kids " + kids + ">>");
    }

    /// A new page, or one that there is already: that inherits anew.
    std::string page(const Inherited& inherited) {
        if (pages_.empty() || below(5) != 0) {
            Page& made = pages_.emplace_back(Page{++last_, {}});
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
        const auto document = open(tree.bytes());
        ASSERT_TRUE(document) << seed;
        EXPECT_EQ(looksOf(document), tree.looks()) << seed;
        EXPECT_FALSE(document->changed()) << seed;
        Pages flat = Pages::of(document).value();
        for (const Tools::Page& page : flat)
            nested = std::max(nested, page.depth);
        ASSERT_TRUE(flat.flatten()) << seed;
        EXPECT_EQ(looksOf(document), tree.looks()) << seed;

        // What the specified operations see, in the file that is written.
        const auto again = open(write(*document));
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
            looks +=
                lookOf({page, dict, castTo<Dictionary>(at(again, dict, {"Resources"})),
                        dict->findAsArray("MediaBox", true), dict->findAsArray("CropBox", true),
                        castTo<Number>(at(again, dict, {"Rotate"}))});
            EXPECT_TRUE(ids.insert(page->id()).second) << seed;
            EXPECT_EQ(textOf(dict->find("Type")) + textOf(dict->find("Parent")), "Page2 (0)");
            EXPECT_NE(textOf(dict->find("Contents")), "3 (0)") << "no reference to the array";
        }
        for (const char* key : {"Resources", "MediaBox", "CropBox", "Rotate"})
            EXPECT_FALSE(root->find(key)) << seed;
        EXPECT_EQ(looksOf(again), tree.looks()) << seed;
        EXPECT_TRUE(Pages::of(again)->flatten() && !again->changed()) << seed << ": it is flat";
    }
    EXPECT_GT(nested, 8U) << "some trees are deep";
}

TEST(Pages, NameWhatIsWrongWithTheTree) {
    const std::string twice = "Node of the page tree is listed twice: ";
    const std::string none = "Node of the page tree is no dictionary: 5 (0)";
    const std::string untyped = "Type of a node of the page tree is neither Page nor Pages: 5 (0)";
    const std::string childless = "Node of the page tree has no valid Kids entry: 5 (0)";
    const std::tuple<const char*, const char*, std::string, std::uint32_t, std::uint32_t> rows[] = {
        {"2 0 R", "1", twice + "2 (0)", 2, PageTreeInvalid},
        {"5 0 R", "<< /Kids [ 2 0 R ] >>", twice + "2 (0)", 2, PageTreeInvalid},
        {"5 0 R 5 0 R", "<< /Kids [ ] >>", twice + "5 (0)", 5, PageTreeInvalid},
        {"<< >>", "1", "Kid 1 is no reference in node 2 (0)", 2, PageTreeInvalid},
        {"9 0 R", "1", "Kid 1 leads nowhere in node 2 (0)", 2, PageTreeInvalid},
        {"5 0 R", "1", none, 5, PageTreeInvalid},
        {"5 0 R", "<< /Type /Font >>", untyped, 5, PageTreeInvalid},
        {"5 0 R", "<< /Type (Page) >>", untyped, 5, PageTreeInvalid},
        {"5 0 R", "<< /Type /Pages >>", childless, 5, PageTreeInvalid},
        {"5 0 R", "<< /Kids /None >>", childless, 5, PageTreeInvalid},
        {"5 0 R", "<< /MediaBox [ 0 0 9 ] >>", "MediaBox", 5, PageInvalid},
        {"5 0 R", "<< /CropBox [ 0 0 9 /A ] >>", "CropBox", 5, PageInvalid},
        {"5 0 R", "<< /Rotate /Left >>", "Rotate", 5, PageInvalid},
        {"5 0 R", "<< /Resources [ ] >>", "Resources", 5, PageInvalid},
    };
    for (const auto& [kids, five, text, object, code] : rows) {
        const auto document = open(DocumentBuilder::minimal().object(5, five));
        Pages pages = Pages::of(document).value();
        const auto root = document->getPageCatalog()->valueAsDictionary();
        ASSERT_TRUE(root->set("Kids", *Tools::parseValue("[ 3 0 R " + std::string(kids) + " ]")));
        const std::string before = write(*document);
        const std::string more = code == PageInvalid ? " is of a wrong kind for page 5 (0)" : "";
        const std::string wanted = told(code, text + more, object);
        EXPECT_EQ(told(resultOf([&] { return Pages::of(document); })), wanted);
        EXPECT_EQ(told(resultOf([&] { return pages.flatten(); })), wanted);
        EXPECT_EQ(told(resultOf([&] { return pages.insert(0, dictionary({})); })), wanted);
        EXPECT_EQ(told(resultOf([&] { return pages.remove(0); })), wanted);
        EXPECT_EQ(write(*document), before) << text;
        EXPECT_EQ(pages.size(), 1U) << text;
    }
}

TEST(Pages, OfAVeryDeepTreeAreFound) {
    DocumentBuilder builder = DocumentBuilder::minimal();
    constexpr std::uint32_t last = 4000;
    builder.object(2, "<< /Type /Pages /Rotate 90 /Kids [ 5 0 R ] >>");
    for (std::uint32_t id = 5; id < last; ++id)
        builder.object(id, "<< /Kids [ " + std::to_string(id + 1) + " 0 R ] >>");
    builder.object(last, "<< /MediaBox [ 0 0 1 1 ] /K 1 >>");
    const auto document = open(builder);
    EXPECT_EQ(looksOf(document), "1.0 (null) [0.00.01.01.0 ] (null) 90.0\n");
    EXPECT_TRUE(Pages::of(document)->flatten());
    EXPECT_EQ(document->getPages().size(), 1U);
}

/// The marks of all pages in order, as the written file has them, and their count.
std::string orderOf(const Pages& pages) {
    const auto again = open(write(*pages.document()));
    std::string order;
    for (const auto& page : again->getPages())
        order += textOf(page->valueAsDictionary()->find("K")).substr(0, 1);
    EXPECT_EQ(order.size(), pages.size());
    return order + textOf(again->getPageCatalog()->valueAsDictionary()->find("Count"));
}

TEST(Pages, ComeAndGoAndMove) {
    const auto document =
        open(DocumentBuilder::minimal()
                 .object(2, "<< /Type /Pages /Rotate 90 /Kids [ 3 0 R 5 0 R ] >>")
                 .object(3, "<< /Type /Page /K 1 /MediaBox [ 0 0 9 9 ] >>")
                 .object(5, "<< /Type /Pages /MediaBox [ 0 0 8 8 ] /Kids [ 6 0 R 7 0 R ] >>")
                 .object(6, "<< /Type /Page /K 2 >>")
                 .object(7, "<< /Type /Page /K 3 >>"));
    const auto box = castTo<Array>(*Tools::parseValue("[ 0 0 99 99 ]"));
    const auto made = [&](int mark) {
        return Dictionary::create({{"K", Number::create(mark)}, {"MediaBox", box}});
    };
    Pages pages = Pages::of(document).value();
    const std::string before = write(*document);
    const std::tuple<std::uint64_t, AnyValue, std::string> refused[] = {
        {4, made(4), told(OutOfRange, "There is no page 4: there are 3, counted from 0")},
        {0, nullptr, told(NullArgument, "No page was given")},
        {0, number(1), told(InvalidArgument, "A page is a dictionary, or a reference to one")},
        {0, reference(9, 0),
         told(InvalidArgument, "A page is a dictionary, or a reference to one")},
        {0, reference(4, 0), told(InvalidArgument, "Object of a page is no dictionary: 4 (0)", 4)},
        {0, reference(7, 0),
         told(InvalidArgument, "Object is a page of the tree already: 7 (0)", 7)},
        {0, pages[2].dictionary,
         told(InvalidArgument, "Object is a page of the tree already: 7 (0)", 7)},
        {0, dictionary({}), told(PageInvalid, "Page has no valid MediaBox: 8 (0)", 8)}};
    for (const auto& [index, page, text] : refused)
        EXPECT_EQ(
            told(resultOf([&, index = index, page = page] { return pages.insert(index, page); })),
            text);
    EXPECT_EQ(told(resultOf([&] { return pages.remove(3); })),
              told(OutOfRange, "There is no page 3: there are 3, counted from 0"));
    expectRefusal(resultOf([&] { return pages.add("q Q", nullptr); }), NullArgument);
    expectRefusal(resultOf([&] { return Pages::of(nullptr); }), NullArgument);
    EXPECT_EQ(write(*document), before) << "a failure has changed nothing";

    EXPECT_TRUE(pages.insert(3, made(4)));
    EXPECT_EQ(orderOf(pages), "12344.0");
    EXPECT_TRUE(pages.insert(0, made(0)));
    EXPECT_EQ(orderOf(pages), "012345.0");
    const auto removed = pages.remove(2).value();
    EXPECT_EQ(textOf(removed) + orderOf(pages), "6 (0)01344.0");
    EXPECT_EQ(textOf(pages.insert(4, removed).value()), "6 (0)");
    EXPECT_EQ(orderOf(pages), "013425.0");

    const auto added = pages.add("0 0 9 9 re f", box).value();
    ASSERT_EQ(pages.size(), 6U);
    EXPECT_EQ(lookOf(pages[5]), "(null) << >> [0.00.099.099.0 ] (null) (null)\n");
    EXPECT_EQ(pages[5].object->id(), added->id());
    EXPECT_EQ(drawn(document, 5), "0 0 9 9 re f");
    while (!pages.empty())
        ASSERT_TRUE(pages.remove(0));
    EXPECT_EQ(orderOf(pages), "0.0");
}

TEST(Pages, KeepTheirNumbersWhenALengthChanges) {
    // The number 6 is what both pages are turned by, and the length of a stream.
    const auto document =
        open(DocumentBuilder::minimal()
                 .object(2, "<< /Type /Pages /Rotate 6 0 R /MediaBox [ 0 0 6 0 R 6 0 R ] "
                            "/Kids [ 3 0 R ] >>")
                 .object(3, "<< /Type /Page /K 1 >>")
                 .object(4, "<< /Length 6 0 R >>\nstream\n" + std::string(90, 'q') + "\nendstream")
                 .object(6, "90"));
    EXPECT_TRUE(Pages::of(document)->flatten());
    EXPECT_TRUE(document->setCompression(Compression::FlateDecode));
    EXPECT_EQ(looksOf(document), "1.0 (null) [0.00.090.090.0 ] (null) 90.0\n");
}

} // namespace
