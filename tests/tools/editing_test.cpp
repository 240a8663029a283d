#include "support/results.h"

#include <cmath>
#include <limits>

namespace {

using namespace Support;

TEST(ParseValue, GivesOneValueOrSaysWhereItFails) {
    const std::pair<std::string_view, std::string_view> values[] = {
        {"12", "12.0"},     {" null ", "Null"},
        {"7 0 R", "7 (0)"}, {"% one\n -1.50 % two", "-1.50"},
        {"(a\\)b)", "a)b"}, {"<< /B [ 1 0 R true ] /A /N >>", "<< A -> N B -> [1 (0)true ] >>"},
    };
    for (const auto& [syntax, text] : values) {
        const auto value = Tools::parseValue(syntax);
        ASSERT_TRUE(value) << syntax;
        EXPECT_EQ(textOf(*value), text) << syntax;
        EXPECT_FALSE((*value)->changed()) << syntax;
    }
    const std::tuple<std::string_view, std::uint64_t, std::string_view> rows[] = {
        {"", 0, "there is no value"},
        {"% 1", 3, "there is no value"},
        {"1 2", 3, "there is more than one value"},
        {"1 ] [ 2", 2, "this bracket closes nothing"},
        {"]", 0, "this bracket closes nothing"},
        {"(abc", 4, "the text ends inside a value"},
        {"[ 1", 3, "the text ends inside a value"},
        {"<< /A 1", 7, "the text ends inside a value"},
        {"[ 1 foo 2 ]", 4, "this word is no value"},
        {"<< /A 0 R >>", 8, "this word is no value"},
        {"<< /A 1 >> stream", 11, "this word is no value"},
        {"<< /A 1 /B >>", 12, "what ends here is no value"},
        {"[ / ]", 2, "what ends here is no value"},
    };
    for (const auto& [syntax, offset, cause] : rows) {
        const auto value = resultOf([&, syntax = syntax] { return Tools::parseValue(syntax); });
        EXPECT_EQ(told(value), told(InvalidArgument, "No value, at byte " + std::to_string(offset) +
                                                         ": " + std::string(cause)));
    }
    const std::string deep = std::string(600, '[') + std::string(600, ']');
    expectRefusal(resultOf([&] { return Tools::parseValue(deep); }), InvalidArgument);
}

/// What stands for object 5 in the file that a document with this value becomes.
std::string written(const AnyValue& value, bool faithful) {
    const auto document = open(DocumentBuilder::minimal());
    document->faithfulNumbers(faithful);
    if (!Tools::addObject(document, Array::create({value}))) return "not added";
    const std::string file = write(*document);
    const std::size_t begin = file.find("5 0 obj\n[ ") + 10;
    return file.substr(begin, file.find(" ]\nendobj", begin) - begin);
}

TEST(Real, IsWrittenAsItIsMeant) {
    const double third = 1.0 / 3;
    const std::tuple<double, const char*, const char*> rows[] = {
        {1.05, "1.05", "1.5"},
        {-0.5, "-0.5", "0.5"},
        {third, "0.33333", "0.33333"},
        {-1e-9, "0", "0"},
        {595.2756, "595.2756", "595.2756"},
        {1e18, "1000000000000000000", "1000000000000000000"},
        {-9223372036854774784.0, "-9223372036854774784", "-9223372036854774784"},
    };
    for (const auto& [number, faithful, inParts] : rows) {
        const auto made = Tools::real(number);
        ASSERT_TRUE(made) << number;
        EXPECT_EQ(written(*made, true), faithful);
        EXPECT_EQ(written(*made, false), inParts);
        EXPECT_NEAR(Tools::toDouble(*made), number, 0.000005);
    }
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double none : {std::nan(""), infinity, -infinity, 9223372036854775808.0})
        expectRefusal(resultOf([&] { return Tools::real(none); }), InvalidArgument, "too large");
}

TEST(ToDouble, IsWhatWasRead) {
    const std::pair<const char*, double> rows[] = {{"1.05", 1.05}, {"+5", 5},     {"-.5", -0.5},
                                                   {"5.", 5},      {"007", 7},    {"-0.05", -0.05},
                                                   {"1.50", 1.5},  {"-7.5", -7.5}};
    for (const auto& [syntax, number] : rows) {
        const auto read = castTo<Number>(*Tools::parseValue(syntax));
        EXPECT_EQ(Tools::toDouble(read), number) << syntax;
    }
    EXPECT_EQ(Tools::toDouble(Number::create(1, 5)), 1.5);
    EXPECT_EQ(Tools::toDouble(nullptr), 0);
}

TEST(Strings, ComeBackAsTheyWere) {
    const std::tuple<const char*, Tools::Result<Ref<String>>, std::string> rows[] = {
        {"text", Tools::textString("a (b)\n"), "(a \\(b\\)\\n)"},
        {"Latin text", Tools::textString("\xC3\xA9"), "<FEFF00E9>"},
        {"backslash", Tools::textString("C:\\"), "<FEFF0043003A005C>"},
        {"control", Tools::textString("a\tb"), "<FEFF006100090062>"},
        {"wide text", Tools::textString("\xCE\xA9\xF0\x9F\x98\x80"), "<FEFF03A9D83DDE00>"},
        {"bytes", Tools::byteString(std::string("\0\\(\xFF", 4)), "<005C28FF>"},
        {"vector", Tools::byteString(Bytes{1, 2}), "<0102>"},
        {"no bytes", Tools::byteString(""), "<>"},
    };
    for (const auto& [name, made, spelled] : rows) {
        ASSERT_TRUE(made) << name;
        EXPECT_EQ(written(*made, false), spelled) << name;
        const auto read = castTo<String>(*Tools::parseValue(spelled));
        EXPECT_EQ(textOf(read), textOf(*made)) << name;
    }
}

TEST(NameOf, SpellsWhatNamesCannotHold) {
    const std::pair<const char*, const char*> rows[] = {
        {"Fit", "Fit"},
        {"My form", "My#20form"},
        {"a#20b", "a#2320b"},
        {"(a)/%", "#28a#29#2F#25"},
        {"\xC3\xA9\n", "#C3#A9#0A"},
        {"<[{}]>", "#3C#5B#7B#7D#5D#3E"},
        {"~!\x7F", "~!#7F"},
    };
    for (const auto& [text, spelled] : rows) {
        EXPECT_EQ(textOf(*Tools::nameOf(text)), spelled);
        EXPECT_EQ((*Tools::keyOf(text))->utf8(), spelled);
    }
    for (const std::string_view none : {std::string_view(), std::string_view("a\0b", 3)}) {
        expectRefusal(resultOf([&] { return Tools::nameOf(none); }), InvalidArgument);
        expectRefusal(resultOf([&] { return Tools::keyOf(none); }), InvalidArgument);
    }
}

TEST(Factories, MakeWhatFilesHold) {
    const auto made = Dictionary::create({{"Z", Null::create()},
                                          {"B", Boolean::create(true)},
                                          {"N", Number::create(-3, 25)},
                                          {"R", ObjectRef::create(7, 1)},
                                          {"S", String::create("caf\xC3\xA9")},
                                          {"N", Name::create("last")}});
    EXPECT_EQ(textOf(made), "<< B -> true N -> last R -> 7 (1) S -> caf\xC3\xA9 Z -> Null >>");
    EXPECT_FALSE(made->changed());
    Host::Error::set(OutOfRange);
    expectFailure(Dictionary::create({{"A", nullptr}}), OutOfRange);
    expectFailure(Dictionary::create({{"", Null::create()}}), InvalidArgument);
    expectFailure(made->find(""), InvalidArgument);
    EXPECT_TRUE(made->set("caf\xC3\xA9", Null::create()) && made->find("caf\xC3\xA9"));
}

TEST(Objects, ComeAndGoWithoutGaps) {
    // Number 5 is free: what is written could not be read with a gap there.
    std::string bytes = DocumentBuilder::minimal().object(5, "9").bytes();
    bytes.replace(bytes.rfind(" n"), 2, " f");
    const auto document = open(bytes), other = open(bytes);
    const std::string before = write(*document);
    const std::pair<AnyValue, std::uint32_t> none[] = {
        {nullptr, NullArgument}, {null(), InvalidArgument}, {reference(1, 0), InvalidArgument}};
    for (const auto& [value, code] : none)
        expectRefusal(resultOf([&, value = value] { return Tools::addObject(document, value); }),
                      code);
    expectRefusal(resultOf([&] { return Tools::addObject(nullptr, number(1)); }), NullArgument);
    expectRefusal(resultOf([&] { return Tools::referenceTo(nullptr); }), NullArgument);
    EXPECT_FALSE(document->changed());
    const auto first = Tools::addObject(document, number(6)).value();
    const auto second = Tools::addObject(document, name("Seven")).value();
    EXPECT_EQ(textOf(first) + textOf(second), "6 (0)7 (0)");
    EXPECT_TRUE(document->changed());

    const auto kept = document->getObject(first);
    EXPECT_TRUE(Tools::removeObject(document, first));
    EXPECT_EQ(textOf(kept->value()), "6.0");
    EXPECT_EQ(textOf(valueOf(*document, 6)), "<< >>");
    EXPECT_FALSE(document->removeObject(kept)) << "it is none of the document any more";
    EXPECT_TRUE(Tools::removeObject(document, second));
    EXPECT_EQ(textOf(*Tools::addObject(document, name("Again"))), "7 (0)");
    const auto absent = ObjectRef::create(8);
    expectRefusal(resultOf([&] { return Tools::removeObject(document, absent); }), ObjectNotFound);
    expectRefusal(resultOf([&] { return Tools::removeObject(document, nullptr); }), NullArgument);

    const auto again = open(write(*document));
    ASSERT_TRUE(again);
    EXPECT_EQ(textOf(valueOf(*again, 5)), "<< >>");
    EXPECT_EQ(textOf(valueOf(*again, 7)), "Again");
    EXPECT_FALSE(again->removeObject(document->getObjects()[0])) << "of another document";

    const auto one = Tools::addObject(other, number(6)), two = Tools::addObject(other, number(7));
    EXPECT_TRUE(Tools::removeObject(other, *one) && Tools::removeObject(other, *two));
    EXPECT_EQ(write(*other), before) << "as if nothing had come";
}

} // namespace
