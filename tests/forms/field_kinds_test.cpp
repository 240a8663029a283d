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

/// A document whose form has one field, found as `g.0`; object 20 is `value`.
Ref<Document> openWithField(const std::string& entries, std::string_view value = "true") {
    const std::string field = "<< " + entries + " >>";
    return Testing::open(
        formFile("<< /Fields [ 10 0 R ] >>", {{10, "<< /FT /Tx /T (g) /Kids [ 11 0 R ] >>"},
                                              {11, field},
                                              {20, value},
                                              {21, "<< /Off null /On null >>"},
                                              {22, "<< /N 21 0 R >>"}}));
}

template <class Kind = Field>
Ref<Kind> fieldOf(const Ref<Document>& document) {
    return Host::cast<Kind>(document->form()->field(0)->child(0));
}

TEST(Field, ChecksItsEntriesWhenTheFormIsBuilt) {
    const auto unexpected = [](const std::string& key, const char* expected, const char* got) {
        return "Unexpected type for value " + key + "; expected = " + expected + ", got = " + got +
               "\n";
    };
    const struct {
        const char* entries;
        std::string log;
    } rows[] = {
        {"/FT /Tx /T (a) /TU (b) /TM (c) /DA (d) /DR << >> /Q 0 /AP << >> /MaxLen 1", ""},
        {"/FT /Tx /T 1", unexpected("T", "4h (4)", "3h (3)")},
        {"/FT /Tx /TU /x", unexpected("TU", "4h (4)", "1h (1)")},
        {"/FT /Tx /TM true", unexpected("TM", "4h (4)", "2h (2)")},
        {"/FT /Tx /DA [ ]", unexpected("DA", "4h (4)", "8h (8)")},
        {"/FT /Tx /DR (x)", unexpected("DR", "6h (6)", "4h (4)")},
        {"/FT /Tx /DR 20 0 R", unexpected("DR", "6h (6)", "2h (2)")},
        {"/FT /Tx /AP 99 0 R", unexpected("AP", "6h (6)", "5h (5)")},
        {"/FT /Tx /MaxLen (3)", unexpected("MaxLen", "3h (3)", "4h (4)")},
        {"/FT /Ch /Opt << >>", unexpected("Opt", "8h (8)", "6h (6)")},
        {"/FT /Btn /Opt null", unexpected("Opt", "8h (8)", "9h (9)")},
        {"/FT /Btn /DV (x) /AS 1",
         unexpected("DV", "1h (1)", "4h (4)") + unexpected("AS", "1h (1)", "3h (3)")},
        {"/FT /Tx /DV /x /Opt 1 /AS 1", ""},
        {"/FT /Tx /Q 7", "Unexpected quadding value: 7.0\n"},
        {"/FT /Tx /Q -1", "Unexpected quadding value: -1.0\n"},
        {"/FT /Tx /Q /x", "Failed to cast value to Number: Q\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.entries);
        const auto document = openWithField(row.entries);
        RecordingLog log;
        Host::Error::set(untouched);
        ASSERT_TRUE(document->form());
        EXPECT_EQ(Host::Error::get(), untouched) << "a wrong entry fails no field";
        EXPECT_EQ(Testing::formMessages(log), row.log);
    }
}

TEST(Field, GivesWhatItsEntriesSay) {
    const auto document =
        openWithField("/FT /Sig /Ff 3 /T (t) /TU (u) /TM (m) /DA (d) /DR 21 0 R /Q 1 /AP 22 0 R");
    const auto field = fieldOf(document);
    EXPECT_EQ(field->fieldType(), Field::Kind::Signature);
    EXPECT_EQ(field->flags(), FieldFlags::readOnly | FieldFlags::required);
    EXPECT_EQ(textOf(field->partialName()) + textOf(field->alternateName()) +
                  textOf(field->mappingName()) + textOf(field->defaultAppearance()),
              "tumd");
    EXPECT_EQ(field->quadding(), Quadding::Centered);
    EXPECT_EQ(field->defaultResources(), Testing::valueOf(*document, 21));
    EXPECT_EQ(field->normalAppearance(), Testing::valueOf(*document, 21));
}

/// Under the interface of the field's kind.
bool setValue(const Ref<Field>& field, const Ref<Value>& value) {
    if (const auto text = Host::cast<Fields::Text>(field)) {
        return text->setValue(Host::cast<String>(value));
    }
    if (const auto choice = Host::cast<Fields::Choice>(field)) return choice->setValue(value);
    return Host::cast<Fields::Button>(field)->setValue(Host::cast<Name>(value));
}

TEST(Field, TakesTheValuesOfItsKind) {
    const char* multi = "/Ch /Ff 2097152";
    const std::string needsString =
        "Non-string value not supported for single entry choice field: g.0\n";
    const std::string needsEither =
        "Multi-select field requires either an Array or String value: g.0\n";
    const struct {
        const char* name;
        const char* type;  ///< and further entries
        const char* value; ///< as object 20 holds it; null for none
        std::uint32_t code;
        const char* stored; ///< the text form of V behind it
        std::string log;
    } rows[] = {
        {"text: no limit", "/Tx", "(abcd)", untouched, "abcd", ""},
        {"text: limit 0", "/Tx /MaxLen 0", "(abcd)", untouched, "abcd", ""},
        {"text: at the limit", "/Tx /MaxLen 3", "(abc)", untouched, "abc", ""},
        {"text: too long", "/Tx /MaxLen 3", "(abcd)", InvalidArgument, "old", ""},
        {"text: bytes at the limit", "/Tx /MaxLen 2", "<FEFF00410042>", untouched, "AB", ""},
        {"text: too many bytes", "/Tx /MaxLen 1", "<FEFF00410042>", InvalidArgument, "old", ""},
        {"text: no mark", "/Tx /MaxLen 1", "<0041004200>", untouched, "0041004200", ""},
        {"text: no bytes", "/Tx /MaxLen 1", "<>", untouched, "", ""},
        {"text: none", "/Tx /MaxLen 1", nullptr, untouched, "(null)", ""},
        {"choice: string", "/Ch", "(a)", untouched, "a", ""},
        {"choice: none", "/Ch", nullptr, untouched, "(null)", ""},
        {"choice: array", "/Ch", "[ (a) ]", InvalidArgument, "old", needsString},
        {"several: string", multi, "(a)", untouched, "a", ""},
        {"several: none", multi, nullptr, untouched, "(null)", ""},
        {"several: number", multi, "1", InvalidArgument, "old", needsEither},
        {"several: array", multi, "[ (a) (b) ]", untouched, "[ab ]", ""},
        {"several: array of one", multi, "[ (a) ]", untouched, "a",
         "Keeping only single value of array for field: g.0\n"},
        {"several: empty array", multi, "[ ]", untouched, "(null)",
         "Assuming unset value for empty array for field: g.0\n"},
        {"several: name among them", multi, "[ (a) /b ]", InvalidArgument, "old",
         "Element 1h (1) of new value is not a String for g.0\n"},
        {"button: name", "/Btn", "/On", untouched, "On", ""},
        {"push button: name", "/Btn /Ff 65536", "/On", ButtonHasNoValue, "old", ""},
        {"push button: none", "/Btn /Ff 65536", nullptr, untouched, "(null)", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto document = openWithField(std::string("/V /old /FT ") + row.type,
                                            row.value != nullptr ? row.value : "true");
        const auto field = fieldOf(document);
        const auto value = row.value != nullptr ? Testing::valueOf(*document, 20) : nullptr;
        RecordingLog log;
        const bool set = setValue(field, value);
        EXPECT_EQ(set ? untouched : Host::Error::get(), row.code);
        EXPECT_EQ(Testing::formMessages(log), row.log);
        EXPECT_EQ(document->changed(), set);
        EXPECT_EQ(textOf(field->dictionary()->find("V"_str)), row.stored);
    }
}

TEST(ButtonField, OffersStates) {
    const struct {
        const char* entries;
        std::string states;
        std::string log;
    } rows[] = {
        {"/AP << /N << /On null /Off null >> >>", "Off On ", ""},
        {"/AP 22 0 R", "Off On ", ""},
        {"/AP << /N 21 0 R >> /Opt [ /b /a ]", "b a ", ""},
        {"/AP 22 0 R /Opt [ /b (a) ]", "",
         "Failed to convert Opt entry 1h (1) to Name for field g.0\n"},
        {"/AP 22 0 R /Opt [ ]", "", "No entries in Opt array for field g.0\n"},
        {"", "", "No AP dictionary for field g.0\n"},
        {"/AP << >>", "", "No N dictionary in AP dictionary for field g.0\n"},
        {"/AP << /N 4 0 R >>", "", "No N dictionary in AP dictionary for field g.0\n"},
        {"/AP << /N << >> >>", "", "Empty N dictionary in AP dictionary for field g.0\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.entries);
        const auto document = openWithField(std::string("/FT /Btn ") + row.entries);
        const auto button = fieldOf<Fields::Button>(document);
        RecordingLog log;
        Host::Error::set(untouched);
        std::string states;
        for (const auto& state : button->states())
            states += textOf(state) + " ";
        EXPECT_EQ(states, row.states);
        EXPECT_EQ(Testing::formMessages(log), row.log);
        const bool failed = row.log.starts_with("Failed");
        EXPECT_EQ(Host::Error::get() == StepFailed, failed);
        for (const auto& entry : log.entries())
            EXPECT_EQ(entry.level, failed ? Host::LogLevel::Error : Host::LogLevel::Warning);
    }
}

TEST(Field, QueriesMissingEntriesQuietly) {
    const auto text = fieldOf<Fields::Text>(openWithField("/FT /Tx"));
    const auto choice = fieldOf<Fields::Choice>(openWithField("/FT /Ch /I [ 0 ]"));
    const auto button = fieldOf<Fields::Button>(openWithField("/FT /Btn"));
    RecordingLog log;
    EXPECT_EQ(text->maxLen(), 0U);
    EXPECT_EQ(Host::Error::get(), KeyNotFound);
    EXPECT_FALSE(text->value() || text->defaultValue() || choice->value() ||
                 choice->defaultValue() || choice->options() || button->value() ||
                 button->defaultValue() || button->state() || button->options());
    EXPECT_TRUE(choice->selectedIndices());
    EXPECT_EQ(log.text(), "");
}

/// What applications may hand over: values of their own that do not keep their word.
template <class Interface, Value::Type claimed>
class Hollow final : public Interface {
public:
    [[nodiscard]] Value::Type type() const noexcept override { return claimed; }
    [[nodiscard]] Ref<Host::String> asText() const noexcept override { return nullptr; }
    [[nodiscard]] bool equal(Ref<Value>) const noexcept override { return false; }
    [[nodiscard]] bool changed() const noexcept override { return false; }
};

TEST(Field, RefusesForeignValuesThatAreNotWhatTheyClaim) {
    const auto choice = fieldOf<Fields::Choice>(openWithField("/FT /Ch /Ff 2097152"));
    RecordingLog log;
    EXPECT_FALSE(choice->setValue(Host::make<Hollow<Value, Value::Type::Array>>()));
    EXPECT_EQ(Host::Error::get(), InvalidArgument);
    EXPECT_FALSE(choice->setValue(Host::make<Hollow<Value, Value::Type::String>>()));
    EXPECT_FALSE(choice->setValue(Array::create({nullptr})));
    EXPECT_EQ(Testing::formMessages(log),
              "Failed to cast value to array for field: 0\n"
              "Multi-select field requires either an Array or String value: 0\n"
              "Element 0h (0) of new value is not a String for 0\n");
}

} // namespace
