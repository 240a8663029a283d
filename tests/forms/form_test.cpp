#include "forms/form_file.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Libraries::Files::PDF;
using namespace Host::Literals;
using Testing::formFile;
using Testing::RecordingLog;
using Testing::textOf;

constexpr std::uint32_t untouched = 4711;

std::string namesOf(const Form& form) {
    std::string names;
    for (std::uint64_t index = 0; index < form.fieldCount(); ++index)
        names += textOf(form.field(index)->partialName());
    return names;
}

TEST(Form, IsLookedUpOnceAndSaysTheSameEverAfter) {
    const std::string notADictionary = "AcroForm value is not a Dictionary or Object Reference: ";
    const struct {
        const char* name;
        const char* acroForm;
        bool found;
        std::uint32_t code;
        std::string log;
    } rows[] = {
        {"no entry", "", false, FormNotFound, ""},
        {"number", "/AcroForm 7", false, BadReference,
         "Invalid object type 3h (3)\n" + notADictionary + "3h (3)\n"},
        {"reference to nothing", "/AcroForm 9 0 R", false, BadReference,
         "Failed to resolve object reference\n" + notADictionary + "5h (5)\n"},
        {"dictionary", "/AcroForm << /Fields [ ] >>", true, untouched, ""},
        {"no Fields", "/AcroForm << >>", true, untouched, "Key not found in dictionary: Fields\n"},
        {"failed field", "/AcroForm << /Fields [ 9 0 R ] >>", true, FormIncomplete,
         "Failed to resolve child 0h (0)\nFailed to instantiate Form object\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string catalog = "<< /Type /Catalog /Pages 2 0 R " + std::string(row.acroForm);
        const auto document =
            Testing::open(Testing::DocumentBuilder::minimal().object(1, catalog + " >>").bytes());
        ASSERT_TRUE(document);
        RecordingLog log;
        Host::Error::set(untouched);
        const auto first = document->form();
        EXPECT_EQ(Host::Error::get(), row.code);
        EXPECT_EQ(static_cast<bool>(first), row.found);
        EXPECT_EQ(log.text(), row.log);

        log.clear();
        Host::Error::set(untouched);
        EXPECT_EQ(document->form(), first);
        EXPECT_EQ(Host::Error::get(), row.code);
        EXPECT_EQ(log.text(), "");
        EXPECT_FALSE(document->changed());
    }
}

TEST(Form, IsLookedForAgainOnceTheCatalogIsRight) {
    const auto document = Testing::open(formFile("<< /Fields [ ] >>", {}));
    const auto catalog = document->getCatalog()->valueAsDictionary();
    const auto type = catalog->find("Type"_str);
    RecordingLog log;
    catalog->set("Type"_str, nullptr);
    EXPECT_FALSE(document->form());
    EXPECT_EQ(Host::Error::get(), RootInvalid);
    EXPECT_EQ(log.entries().back().text, "Document has no root object\n");
    catalog->set("Type"_str, type);
    EXPECT_TRUE(document->form());
}

TEST(Form, EndsAtTheFirstFieldThatCannotBeBuilt) {
    const std::string unfit = "Failed to initialize child field\n";
    const struct {
        const char* name;
        const char* fields;
        const char* third; ///< object 12
        std::string names;
        std::string log;
    } rows[] = {
        {"all", "[ 10 0 R 12 0 R 11 0 R ]", "<< /FT /Sig /T (c) >>", "acb", ""},
        {"listed twice", "[ 10 0 R 10 0 R ]", "true", "aa", ""},
        {"number", "[ 10 0 R 11 0 R 7 10 0 R ]", "true", "ab",
         "Child field is not an object reference: 2h (2)\n"},
        {"no such object", "[ 10 0 R 10 1 R 11 0 R ]", "true", "a",
         "Failed to resolve child 1h (1)\n"},
        {"no dictionary", "[ 10 0 R 12 0 R 11 0 R ]", "[ ]", "a",
         "Resolved child 1h (1) ( -> 12 (0) ) is not an object: 8h (8)\n"},
        {"unknown type", "[ 12 0 R 11 0 R ]", "<< /FT /Xx >>", "",
         "Resolved child 0h (0) ( -> 12 (0) ) has unsupported field type: Xx\n"},
        {"type is no name", "[ 12 0 R 11 0 R ]", "<< /FT 1 /T (c) >>", "cb", ""},
        {"kids are no array", "[ 12 0 R 11 0 R ]", "<< /FT /Tx /T (c) /Kids 11 >>", "cb", ""},
        {"kid of a kid", "[ 10 0 R 12 0 R 11 0 R ]", "<< /FT /Tx /Kids [ 11 0 R 13 0 R ] >>", "a",
         "Child field is not an object reference: 0h (0)\n" + unfit + unfit},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto document = Testing::open(
            formFile("<< /Fields 5 >>", {{5, "<< /Fields " + std::string(row.fields) + " >>"},
                                         {10, "<< /FT /Tx /T (a) >>"},
                                         {11, "<< /FT /Btn /T (b) >>"},
                                         {12, row.third},
                                         {13, "<< /FT /Tx /Kids [ true ] >>"}}));
        ASSERT_TRUE(document);
        RecordingLog log;
        Host::Error::set(untouched);
        const auto form = document->form();
        ASSERT_TRUE(form);
        EXPECT_EQ(namesOf(*form), row.names);
        EXPECT_EQ(Testing::formMessages(log), row.log);
        EXPECT_EQ(Host::Error::get(), row.log.empty() ? untouched : FormIncomplete);
    }
}

TEST(Form, FindsFieldsByPath) {
    const auto document =
        Testing::open(formFile("<< /Fields [ 10 0 R 11 0 R 12 0 R 10 0 R ] >>",
                               {{10, "<< /FT /Tx /T (a) /Kids [ 13 0 R 14 0 R ] >>"},
                                {11, "<< /FT /Tx >>"},
                                {12, "<< /FT /Tx /T (0) >>"},
                                {13, "<< /FT /Tx /T <FEFF00E4D83DDE00> /Kids [ 14 0 R 11 0 R ] >>"},
                                {14, "<< /FT /Tx /T (b) >>"}}));
    const auto form = document->form();
    ASSERT_TRUE(form);
    const struct {
        const char* name;
        Ref<Host::String> path;
        const char* fullName; ///< null where nothing is found
        std::uint32_t code;
    } rows[] = {
        {"null", nullptr, nullptr, NullArgument},
        {"empty", ""_str, nullptr, InvalidArgument},
        {"dots alone", ".."_str, nullptr, FormNotFound},
        {"unnamed by its index", "1"_str, "1", untouched},
        {"padded index", "01"_str, nullptr, FormNotFound},
        {"index of a named field", "2"_str, nullptr, FormNotFound},
        {"name that is a number", "0"_str, "0", untouched},
        {"kid", "a.b"_str, "a.b", untouched},
        {"empty parts", ".a..b."_str, "a.b", untouched},
        {"UTF-16 name", Host::String::create("a.ä😀.b"), "a.ä😀.b", untouched},
        {"no such kid", "a.c"_str, nullptr, FormNotFound},
        {"below a field without kids", "a.b.0"_str, nullptr, FormNotFound},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Host::Error::set(untouched);
        const auto field = form->fieldByPath(row.path);
        EXPECT_EQ(field ? field->fullName()->utf8() : "-", row.fullName ? row.fullName : "-");
        EXPECT_EQ(Host::Error::get(), row.code);
    }
    const auto a = form->field(0);
    EXPECT_EQ(form->fieldByPath("a.b"_str), a->child(1));
    EXPECT_EQ(a->child(1)->parent(), a);
    EXPECT_FALSE(a->parent());
    EXPECT_FALSE(a->child(2));
    EXPECT_EQ(Host::Error::get(), OutOfRange);
    EXPECT_FALSE(form->field(4));
    EXPECT_EQ(Host::Error::get(), OutOfRange);
}

TEST(Form, KeepsNoDocumentAlive) {
    Ref<Document> document =
        Testing::open(formFile("<< /Fields [ 10 0 R ] >>",
                               {{10, "<< /FT /Tx /T (a) /AP << /N 11 0 R >> /Kids [ 11 0 R ] >>"},
                                {11, "<< /FT /Btn /T (b) /AP << /N 10 0 R >> >>"}}));
    const Host::WeakRef<Document> life(document.get());
    Ref<Form> form = document->form();
    Ref<Field> kid = form->fieldByPath("a.b"_str);
    const Host::WeakRef<Form> formLife(form.get());
    const Host::WeakRef<Field> topLife(form->field(0).get());
    const auto alive = [&] {
        return static_cast<bool>(life.lock()) + static_cast<bool>(formLife.lock()) +
               static_cast<bool>(topLife.lock());
    };
    EXPECT_EQ(alive(), 3);
    document = nullptr;
    EXPECT_FALSE(life.lock());
    EXPECT_EQ(alive(), 2) << "the form is held";
    EXPECT_FALSE(kid->parent()) << "a field without its document stands alone";
    form = nullptr;
    EXPECT_EQ(alive(), 0) << "a field keeps none above it";

    const auto button = Host::cast<Fields::Button>(kid);
    EXPECT_EQ(textOf(kid->fullName().get() != nullptr ? kid->partialName() : nullptr), "b");
    EXPECT_TRUE(button->setValue(Name::create("On"_str)));
    EXPECT_FALSE(kid->normalAppearance()) << "there is nothing left to resolve it with";
    EXPECT_TRUE(button->states().empty());
}

TEST(Form, ReadsItsOwnEntriesWheneverAsked) {
    const auto document = Testing::open(
        formFile("<< /Fields [ ] /DA (x) /DR 6 0 R /Q 2 /CO true /NeedAppearances 1 >>",
                 {{6, "<< /A 1 >>"}}));
    const auto form = document->form();
    RecordingLog log;
    EXPECT_EQ(textOf(form->defaultAppearance()), "x");
    EXPECT_EQ(textOf(form->defaultResources()), "<< A -> 1.0 >>");
    EXPECT_EQ(form->quadding(), Quadding::Right);
    EXPECT_EQ(log.text(), "");
    EXPECT_FALSE(form->calculationOrder());
    EXPECT_FALSE(form->needAppearances());
    EXPECT_EQ(Testing::formMessages(log),
              "Unexpected type for value CO; expected = 8h (8), got = 2h (2)\n"
              "Unexpected type for value NeedAppearances; expected = 2h (2), got = 3h (3)\n");
    EXPECT_TRUE(form->setNeedAppearances(true));
    EXPECT_TRUE(form->needAppearances()->value());
    EXPECT_TRUE(document->changed());
}

} // namespace
