#include "support/results.h"

#include <host/files.h>
#include <pdf/tools/files.h>

#include <filesystem>
#include <fstream>
#include <functional>

namespace {

using namespace Support;

TEST(Saving, NamesWhatWouldNotBeReadAgain) {
    const std::string path = testing::TempDir() + "files-legible.pdf";
    const auto backslash = String::create("C:\\dir");
    const auto faithful = [](const Ref<Document>& document) {
        document->faithfulNumbers(true);
        return true;
    };
    using Set = std::function<bool(const Ref<Document>&, Dictionary&)>;
    const auto set = [](const char* key, const AnyValue& value) {
        return [=](auto&, auto& dict) { return dict.set(key, value); };
    };
    const struct {
        const char* name;
        Set set;
        std::string where, what{}; ///< empty where it is saved
    } rows[] = {
        {"text", set("A", backslash), "Object 5 /A", "a text with a backslash"},
        {"deep", set("A", array({null(), dictionary({{"B", array({backslash})}})})),
         "Object 5 /A [1] /B [0]", "a text with a backslash"},
        {"key", set("a b", null()), "Object 5", "the key \"a b\""},
        {"name", set("A", name("a/b")), "Object 5 /A", "the name \"a/b\""},
        {"wide name", set("A", name("\xCE\xA9")), "Object 5 /A", "the name \"\xCE\xA9\""},
        {"lone sign",
         [&](auto& document, auto& dict) {
             return faithful(document) && dict.set("A", array({name("a#b")}));
         },
         "Object 5 /A [0]", "the name \"a#b\""},
        {"sign of null",
         [&](auto& document, auto& dict) { return faithful(document) && dict.set("#00", null()); },
         "Object 5", "the key \"#00\""},
        {"new stream",
         [&](auto& document, auto&) {
             const auto entries = dictionary({{"A(", null()}});
             return Tools::addStream(document, "q", Tools::Storing::Plain, entries).has_value();
         },
         "Object 6", "the key \"A(\""},
        {"trailer", [&](auto& document, auto&) { return document->trailer()->set("A", backslash); },
         "Trailer /A", "a text with a backslash"},
        {"by the tools",
         [&](auto&, auto& dict) {
             return dict.set("A", *Tools::textString("C:\\dir")) &&
                    dict.set("B", *Tools::nameOf("a /\xCE\xA9#")) &&
                    dict.set(*Tools::keyOf("a b"), null());
         },
         ""},
        {"Latin name", set("A", name("\xC3\xA9")), ""},
        // What the file itself has: a backslash, which was told, and a sign that the exact loader
        // reads.
        {"from the file", [](auto&, auto&) { return true; }, ""},
    };
    for (const auto& row : rows) {
        const bool isOfFile = std::string_view(row.name) == "from the file";
        const auto document = open(withFive(isOfFile ? "<< /A (a\\134b) /B /a#b >>" : "<< >>"));
        ASSERT_TRUE(row.set(document, *castTo<Dictionary>(valueOf(*document, 5)))) << row.name;
        const auto saved = resultOf([&] { return Tools::save(document, path); });
        const std::string wanted = path + ": " + row.where + ": " + row.what + " is not read again";
        EXPECT_EQ(std::filesystem::remove(path), row.where.empty()) << row.name;
        EXPECT_EQ(saved.has_value(), row.where.empty()) << row.name << told(saved);
        if (!row.where.empty()) expectRefusal(saved, NotReadAgain, wanted);
    }
    const auto document = open(withFive("(C:\\134dir)"));
    EXPECT_TRUE(valueOf(*document, 5));
    const auto saved = resultOf([&] { return Tools::save(document, path); });
    expectRefusal(saved, ObjectUnreadable,
                  path + ": the result would not open: Object 5: a text with a backslash");
}

/// What was saved into memory; nothing where that failed.
std::string textOf(const Tools::Result<Ref<Host::MemoryStripe>>& saved) {
    return saved ? std::string((*saved)->bytes().begin(), (*saved)->bytes().end()) : "";
}

TEST(Saving, LooksBeforeItReplaces) {
    const std::string path = testing::TempDir() + "files-saved.pdf";
    const std::string sound = DocumentBuilder::minimal().bytes();
    const std::string gap = DocumentBuilder::minimal().object(6, "1").bytes();
    const std::string encrypted = withFive("1", "/Root 1 0 R /Encrypt 5 0 R").bytes();
    const std::string feeds =
        DocumentBuilder::minimal().lineEnding("\r").stream(5, "", "\nq").bytes();
    const std::string former = "former";
    const Tools::SaveOptions usual, forced = {true, true}, unseen = {false, false};
    const std::string closed = "the result would not open: ";
    const struct {
        std::string name, file;
        Tools::SaveOptions options{};
        std::uint32_t code = Host::NoError;
        std::string text{};
        std::uint32_t object = 0;
    } rows[] = {
        {"sound", sound},
        {"gap", gap, usual, ObjectUnreadable, closed},
        {"gap, forced", gap, forced, ObjectUnreadable, closed},
        {"gap, not looked at", gap, unseen},
        {"encrypted", encrypted, usual, ResultUnsound,
         "the file is encrypted, and cannot be decrypted any more"},
        {"encrypted, forced", encrypted, forced},
        {"encrypted, not looked at", encrypted, unseen},
        {"CR and LF", feeds, usual, ResultUnsound,
         "data that begins with a line feed loses it, first in object 5", 5},
        {"signed", withFive("<< /ByteRange [ 0 1 ] >>").bytes()},
    };
    for (const auto& row : rows) {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << former;
        const auto document = open(row.file);
        const auto saved = resultOf([&] { return Tools::save(document, path, row.options); });
        const bool done = row.code == Host::NoError;
        EXPECT_EQ(saved.has_value(), done) << row.name << told(saved);
        if (!done) {
            expectRefusal(saved, row.code, path + ": " + row.text);
            EXPECT_EQ(saved.error().object(), row.object) << row.name;
        }
        std::ifstream file(path, std::ios::binary);
        const std::string held{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(held, done ? write(*document) : former) << row.name;
        const auto bytes = resultOf([&] { return Tools::save(document, row.options); });
        if (!done) expectRefusal(bytes, row.code, row.text);
        EXPECT_EQ(textOf(bytes), done ? held : "") << row.name;
    }
    const auto jpeg = open(DocumentBuilder::minimal().stream(5, "/Filter /DCTDecode ", "data"));
    ASSERT_TRUE(jpeg->setCompression(Compression::FlateDecode));
    expectRefusal(Tools::save(jpeg, path), ResultUnsound, "data has lost the filter");
    std::filesystem::remove(path);
}

TEST(Opening, TellsWhyAFileIsRefused) {
    const std::string path = testing::TempDir() + "files-refused.pdf";
    const std::string absent = testing::TempDir() + "no folder/f.pdf";
    const std::string five = ": Object 5h (5): ";
    const std::string noFolder = ": its folder is not there",
                      none = ": there is no such file or folder";
    const auto document = open(DocumentBuilder::minimal());
    const auto saved = resultOf([&] { return Tools::save(document, absent); });
    EXPECT_EQ(told(saved), told(Host::FileNotOpened, absent + noFolder));
    const auto opened = resultOf([&] { return Tools::open(absent); });
    EXPECT_EQ(told(opened), told(Host::FileNotOpened, absent + none));
    std::ofstream(path, std::ios::binary) << withFive("(").bytes();
    expectRefusal(resultOf([&] { return Tools::open(path); }), FileDamaged, path + five);
    std::filesystem::remove(path);
    const auto source = stripeOf(withFive("(").bytes());
    expectRefusal(resultOf([&] { return Tools::openFrom(source); }), FileDamaged, five);
    expectRefusal(resultOf([&] { return Tools::openFrom(nullptr); }), NullArgument);
    expectRefusal(resultOf([&] { return Tools::save(nullptr, path); }), NullArgument);
    const auto sound = Tools::openFrom(stripeOf(withFive("1.05").bytes()));
    EXPECT_TRUE(sound && (*sound)->faithfulNumbers());
}

} // namespace
