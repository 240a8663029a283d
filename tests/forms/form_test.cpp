#include "document/document_obj.h"
#include "support/testing.h"

#include <algorithm>
#include <functional>

namespace {

using namespace Support;
using Kids = std::vector<std::uint32_t>;
using KidsOf = std::function<Kids(std::uint32_t id)>;

constexpr std::uint32_t untouched = 4711;

TEST(Form, IsLookedUpOnceAndSaysTheSameEverAfter) {
    const std::string notADictionary = "AcroForm value is not a Dictionary or Object Reference: ";
    const std::tuple<std::string, std::uint32_t, std::string> rows[] = {
        {"", FormNotFound, ""},
        {"/AcroForm 7", BadReference, "Invalid object type 3h (3)\n" + notADictionary + "3h (3)\n"},
        {"/AcroForm 9 0 R", BadReference,
         "Failed to resolve object reference\n" + notADictionary + "5h (5)\n"},
        {"/AcroForm << /Fields [ ] >>", untouched, ""},
        {"/AcroForm << >>", untouched, "Key not found in dictionary: Fields\n"},
        {"/AcroForm << /Fields [ 9 0 R ] >>", FormIncomplete,
         "Failed to resolve child 0h (0)\nFailed to instantiate Form object\n"},
    };
    for (const auto& [acroForm, code, messages] : rows) {
        const std::string catalog = "<< /Type /Catalog /Pages 2 0 R " + acroForm + " >>";
        const auto document = open(DocumentBuilder::minimal().object(1, catalog));
        Ref<Form> first;
        for (const bool again : {false, true}) {
            SCOPED_TRACE(acroForm + (again ? " again" : ""));
            const RecordingLog log;
            Host::Error::set(untouched);
            const auto form = document->form();
            EXPECT_EQ(Host::Error::get(), code);
            EXPECT_EQ(form != nullptr, acroForm.ends_with(">>"));
            EXPECT_EQ(log.text(), again ? "" : messages);
            EXPECT_EQ(again ? first : form, form);
            first = form;
        }
        EXPECT_FALSE(document->changed());
    }
    const auto document = open(formFile("<< /Fields [ ] >>", {}));
    const auto catalog = document->getCatalog()->valueAsDictionary();
    const auto type = catalog->find("Type"_str);
    const RecordingLog log;
    EXPECT_TRUE(catalog->set("Type"_str, nullptr));
    expectFailure(document->form(), RootInvalid);
    EXPECT_EQ(log.entries().back().text, "Document has no root object\n");
    EXPECT_TRUE(catalog->set("Type"_str, type) && document->form()) << "it was not looked up";
}

TEST(Form, EndsAtTheFirstFieldThatCannotBeBuilt) {
    // Fields, object 12, the names of those that are there, messages.
    const std::tuple<std::string, const char*, const char*, std::string> rows[] = {
        {"10 0 R 12 0 R 11 0 R", "<< /FT /Sig /T (c) >>", "acb", ""},
        {"10 0 R 11 0 R 7 10 0 R", "true", "ab",
         "Child field is not an object reference: 2h (2)\n"},
        {"10 0 R 10 1 R 11 0 R", "true", "a", "Failed to resolve child 1h (1)\n"},
        {"10 0 R 12 0 R 11 0 R", "[ ]", "a",
         "Resolved child 1h (1) ( -> 12 (0) ) is not an object: 8h (8)\n"},
        {"12 0 R 11 0 R", "<< /FT /Xx >>", "",
         "Resolved child 0h (0) ( -> 12 (0) ) has unsupported field type: Xx\n"},
        {"12 0 R 11 0 R", "<< /FT 1 /T (c) /Kids 11 >>", "cb", ""},
        {"10 0 R 12 0 R 11 0 R", "<< /FT /Tx /Kids [ 11 0 R 13 0 R ] >>", "a",
         "Child field is not an object reference: 0h (0)\n"
         "Failed to initialize child field\nFailed to initialize child field\n"},
    };
    for (const auto& [fields, third, found, messages] : rows) {
        SCOPED_TRACE(fields + " with " + third);
        const auto document = open(
            formFile("<< /Fields [ " + fields + " ] >>", {{10, "<< /FT /Tx /T (a) >>"},
                                                          {11, "<< /FT /Btn /T (b) >>"},
                                                          {12, third},
                                                          {13, "<< /FT /Tx /Kids [ true ] >>"}}));
        RecordingLog log;
        Host::Error::set(untouched);
        const auto form = document->form();
        std::string names;
        for (std::uint64_t index = 0; index < form->fieldCount(); ++index)
            names += textOf(form->field(index)->partialName());
        EXPECT_EQ(names, found);
        EXPECT_EQ(formMessages(log), messages);
        EXPECT_EQ(Host::Error::get(), messages.empty() ? untouched : FormIncomplete);
    }
}

TEST(Form, FindsFieldsByPath) {
    const auto document =
        open(formFile("<< /Fields [ 10 0 R 11 0 R 12 0 R 10 0 R ] >>",
                      {{10, "<< /FT /Tx /T (a) /Kids [ 13 0 R 14 0 R ] >>"},
                       {11, "<< /FT /Tx >>"},
                       {12, "<< /FT /Tx /T (0) >>"},
                       {13, "<< /FT /Tx /T <FEFF00E4D83DDE00> /Kids [ 11 0 R 14 0 R ] >>"},
                       {14, "<< /FT /Tx /T (b) >>"}}));
    const auto form = document->form();
    const std::pair<const char*, const char*> rows[] = {
        {"..", "-"},       {"01", "-"},          {"a.c", "-"},    {"a.b.0", "-"},
        {".a..b.", "a.b"}, {"a.ä😀.b", "a.ä😀.b"}, {"1", "1"},      {"2", "-"},
        {"0", "0"},        {"a.ä😀.0", "a.ä😀.0"}, {"a.ä😀.00", "-"}};
    for (const auto& [path, fullName] : rows) {
        Host::Error::set(untouched);
        const auto field = form->fieldByPath(Host::String::create(path));
        EXPECT_EQ(field ? field->fullName()->utf8() : "-", fullName) << path;
        EXPECT_EQ(Host::Error::get(), field ? untouched : FormNotFound) << path;
    }
    expectFailure(form->fieldByPath(nullptr), NullArgument);
    expectFailure(form->fieldByPath(""_str), InvalidArgument);
    expectFailure(form->fieldByName(nullptr), NullArgument);
    expectFailure(form->field(0)->fieldByName(""_str), InvalidArgument);
    const auto a = form->field(0);
    EXPECT_EQ(form->fieldByPath("a.b"_str), a->child(1));
    EXPECT_EQ(a->child(1)->parent(), a);
    EXPECT_FALSE(a->parent());
    EXPECT_FALSE(a->child(2) || form->field(4));
    EXPECT_EQ(Host::Error::get(), OutOfRange);
}

TEST(Form, KeepsNoDocumentAlive) {
    Ref<Document> document =
        open(formFile("<< /Fields [ 10 0 R ] >>",
                      {{10, "<< /FT /Tx /T (a) /AP << /N 11 0 R >> /Kids [ 11 0 R ] >>"},
                       {11, "<< /FT /Btn /T (b) /AP << /N 10 0 R >> >>"}}));
    const Host::WeakRef<Document> life(document.get());
    Ref<Form> form = document->form();
    const Ref<Field> kid = form->fieldByPath("a.b"_str);
    const Host::WeakRef<Form> formLife(form.get());
    const Host::WeakRef<Field> topLife(form->field(0).get());
    EXPECT_TRUE(life.lock() && formLife.lock() && topLife.lock());
    document = nullptr;
    EXPECT_FALSE(life.lock());
    EXPECT_TRUE(formLife.lock() && topLife.lock()) << "the form is held";
    EXPECT_FALSE(kid->parent()) << "a field without its document stands alone";
    form = nullptr;
    EXPECT_FALSE(formLife.lock() || topLife.lock()) << "a field keeps none above it";
    EXPECT_FALSE(kid->normalAppearance()) << "there is nothing left to resolve it with";
}

TEST(Form, ReadsItsOwnEntriesWheneverAsked) {
    const auto document =
        open(formFile("<< /Fields [ ] /DA (x) /DR 6 0 R /Q 2 /CO true /NeedAppearances 1 >>",
                      {{6, "<< /A 1 >>"}}));
    const auto form = document->form();
    RecordingLog log;
    EXPECT_EQ(textOf(form->defaultAppearance()), "x");
    EXPECT_EQ(textOf(form->defaultResources()), "<< A -> 1.0 >>");
    EXPECT_EQ(form->quadding(), Quadding::Right);
    EXPECT_EQ(log.text(), "");
    EXPECT_FALSE(form->calculationOrder());
    EXPECT_FALSE(form->needAppearances());
    EXPECT_EQ(formMessages(log),
              "Unexpected type for value CO; expected = 8h (8), got = 2h (2)\n"
              "Unexpected type for value NeedAppearances; expected = 2h (2), got = 3h (3)\n");
    EXPECT_TRUE(form->setNeedAppearances(true));
    EXPECT_TRUE(form->needAppearances()->value());
    EXPECT_TRUE(document->changed());
}

/// A document of five objects and `count` fields, of which the form lists the first, number 6.
Ref<Document> treeOf(std::uint32_t count, const KidsOf& kidsOf) {
    const auto document = open(formFile("<< /Fields [ 6 0 R ] >>", {}));
    auto& objects = dynamic_cast<DocumentObj&>(*document).state().objects;
    const auto label = makeOrThrow<StringObj>("f"_str);
    for (std::uint32_t id = 6; id < 6 + count; ++id) {
        const auto kids = makeOrThrow<ArrayObj>();
        for (const std::uint32_t kid : kidsOf(id))
            kids->add(reference(kid, 0));
        const auto field = dictionary({{"FT", name("Tx")}, {"T", label}, {"Kids", kids}});
        objects.append(id, 0, field);
    }
    return document;
}

// Deep enough that no walk down, one call for each level, fits into the stack.
TEST(HostileTree, IsBuiltAndReleasedWithBoundedStack) {
    constexpr std::uint32_t deep = 200'000;
    auto document = treeOf(deep, [](auto id) { return id < deep + 5 ? Kids{id + 1} : Kids{}; });
    Host::Error::set(untouched);
    Ref<Form> form = document->form();
    ASSERT_TRUE(form);
    EXPECT_EQ(Host::Error::get(), untouched);
    std::uint64_t depth = 0;
    for (Ref<Field> field = form->field(0); field; field = field->child(0))
        ++depth;
    EXPECT_EQ(depth, deep);
    const Ref<Field> kept = form->field(0)->child(0);
    document = nullptr;
    form = nullptr;
    EXPECT_EQ(kept->childCount(), 1U);
}

TEST(HostileTree, HasAtMostFourFieldsForEachObject) {
    const std::tuple<const char*, std::uint32_t, KidsOf, std::uint64_t> rows[] = {
        {"wide", 25'000, [](auto id) { return id == 6 ? Kids(100'000, 7) : Kids{}; }, 0},
        {"as many", 2, [](auto id) { return id == 6 ? Kids(27, 7) : Kids{}; }, 0},
        {"one too many", 2, [](auto id) { return id == 6 ? Kids(28, 7) : Kids{}; }, 2},
        {"its own kid", 50'000, [](auto id) { return Kids{id}; }, 200'021},
        {"kid of its kid", 2, [](auto id) { return Kids{13 - id}; }, 29},
        {"doubling", 41, [](auto id) { return id < 46 ? Kids(2, id + 1) : Kids{}; }, 40},
    };
    for (const auto& [name, count, kidsOf, messages] : rows) {
        SCOPED_TRACE(name);
        const auto document = treeOf(count, kidsOf);
        RecordingLog log;
        Host::Error::set(untouched);
        const auto form = document->form();
        ASSERT_TRUE(form);
        const bool refused = messages != 0;
        EXPECT_EQ(Host::Error::get(), refused ? std::uint32_t{FormIncomplete} : untouched);
        EXPECT_EQ(form->fieldCount(), refused ? 0U : 1U);
        EXPECT_EQ(std::ranges::count(formMessages(log), '\n'), messages);
    }
}

} // namespace
