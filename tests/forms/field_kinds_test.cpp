#include "support/document_builder.h"
#include "support/recording_log.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Libraries::Files::PDF;
using namespace Host::Literals;
using namespace Testing;

constexpr std::uint32_t untouched = 4711;

/// A document whose form has one field, found as `g.0`; object 20 is `value`.
Ref<Document> openWithField(const std::string& entries, std::string_view value = "true") {
    const std::string field = "<< " + entries + " >>";
    return open(formFile("<< /Fields [ 10 0 R ] >>", {{10, "<< /FT /Tx /T (g) /Kids [ 11 0 R ] >>"},
                                                      {11, field},
                                                      {20, value},
                                                      {21, "<< /Off null /On null >>"},
                                                      {22, "<< /N 21 0 R >>"}}));
}

template <class Kind = Field>
Ref<Kind> fieldOf(const Ref<Document>& document) {
    return Host::cast<Kind>(document->form()->field(0)->child(0));
}

std::string unexpected(const std::string& key, char expected, char got) {
    return "Unexpected type for value " + key + "; expected = " + expected + "h (" + expected +
           "), got = " + got + "h (" + got + ")\n";
}

TEST(Field, ChecksItsEntriesWhenTheFormIsBuilt) {
    const std::pair<const char*, std::string> rows[] = {
        {"/FT /Tx /T (a) /TU (b) /TM (c) /DA (d) /DR << >> /Q 0 /AP << >> /MaxLen 1", ""},
        {"/FT /Tx /T 1 /TM true /DA [ ]",
         unexpected("T", '4', '3') + unexpected("TM", '4', '2') + unexpected("DA", '4', '8')},
        {"/FT /Tx /AP 99 0 R /DR 20 0 R", unexpected("DR", '6', '2') + unexpected("AP", '6', '5')},
        {"/FT /Ch /Opt << >> /DR (x)", unexpected("DR", '6', '4') + unexpected("Opt", '8', '6')},
        {"/FT /Btn /DV (x) /AS 1", unexpected("DV", '1', '4') + unexpected("AS", '1', '3')},
        {"/FT /Tx /Q -1", "Unexpected quadding value: -1.0\n"},
        {"/FT /Tx /Q /x", "Failed to cast value to Number: Q\n"},
    };
    for (const auto& [entries, messages] : rows) {
        const auto document = openWithField(entries);
        RecordingLog log;
        Host::Error::set(untouched);
        ASSERT_TRUE(document->form()) << entries;
        EXPECT_EQ(Host::Error::get(), untouched) << "a wrong entry fails no field: " << entries;
        EXPECT_EQ(formMessages(log), messages) << entries;
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
    EXPECT_EQ(field->defaultResources(), valueOf(*document, 21));
    EXPECT_EQ(field->normalAppearance(), valueOf(*document, 21));
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
    const char* push = "/Btn /Ff 65536";
    const struct {
        const char* type;   ///< and further entries
        const char* value;  ///< as object 20 holds it; null for none
        const char* stored; ///< the text form of V behind it
        const char* log = "";
    } rows[] = {
        {"/Tx /MaxLen 0", "(abcd)", "abcd"},
        {"/Tx /MaxLen 3", "(abcd)", "old"},
        {"/Tx /MaxLen 2", "<FEFF00410042>", "AB"},
        {"/Tx /MaxLen 1", "<FEFF00410042>", "old"},
        {"/Tx /MaxLen 1", "<0041004200>", "0041004200"},
        {"/Ch", "[ (a) ]", "old",
         "Non-string value not supported for single entry choice field: g.0\n"},
        {multi, nullptr, "(null)"},
        {multi, "1", "old", "Multi-select field requires either an Array or String value: g.0\n"},
        {multi, "[ (a) (b) ]", "[ab ]"},
        {multi, "[ (a) ]", "a", "Keeping only single value of array for field: g.0\n"},
        {multi, "[ ]", "(null)", "Assuming unset value for empty array for field: g.0\n"},
        {multi, "[ (a) /b ]", "old", "Element 1h (1) of new value is not a String for g.0\n"},
        {"/Btn", "/On", "On"},
        {push, "/On", "old"},
        {push, nullptr, "(null)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.type) + " takes " + (row.value ? row.value : "nothing"));
        const auto document = openWithField(std::string("/V /old /FT ") + row.type,
                                            row.value != nullptr ? row.value : "true");
        const auto field = fieldOf(document);
        const auto value = row.value != nullptr ? valueOf(*document, 20) : nullptr;
        RecordingLog log;
        const bool set = setValue(field, value);
        const auto refused = row.type == push ? ButtonHasNoValue : InvalidArgument;
        EXPECT_EQ(set, row.stored != std::string_view("old"));
        EXPECT_TRUE(set || Host::Error::get() == refused);
        EXPECT_EQ(formMessages(log), row.log);
        EXPECT_EQ(document->changed(), set);
        EXPECT_EQ(textOf(field->dictionary()->find("V"_str)), row.stored);
    }
}

TEST(Field, QueriesMissingEntriesQuietly) {
    const auto text = fieldOf<Fields::Text>(openWithField("/FT /Tx"));
    const auto button = fieldOf<Fields::Button>(openWithField("/FT /Btn"));
    const RecordingLog log;
    EXPECT_EQ(text->maxLen(), 0U);
    EXPECT_EQ(Host::Error::get(), KeyNotFound);
    EXPECT_FALSE(text->value() || button->value() || button->state() || button->options());
    EXPECT_EQ(log.text(), "");
}

TEST(ButtonField, OffersStates) {
    const struct {
        const char* entries;
        const char* states;
        std::string log;
    } rows[] = {
        {"/AP << /N << /On null /Off null >> >>", "Off On ", ""},
        {"/AP << /N 21 0 R >> /Opt [ /b /a ]", "b a ", ""},
        {"/AP 22 0 R /Opt [ /b (a) <FEFF00E9> ]", "b a \u00E9 ", ""},
        {"/AP 22 0 R /Opt [ (b) 1 ]", "", "Failed to convert Opt entry 1h (1) to Name"},
        {"/AP 22 0 R /Opt [ () ]", "", "Failed to convert Opt entry 0h (0) to Name"},
        {"/AP 22 0 R /Opt [ ]", "", "No entries in Opt array"},
        {"", "", "No AP dictionary"},
        {"/AP << /N 4 0 R >>", "", "No N dictionary in AP dictionary"},
        {"/AP << /N << >> >>", "", "Empty N dictionary in AP dictionary"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.entries);
        const auto document = openWithField(std::string("/FT /Btn ") + row.entries);
        const auto button = fieldOf<Fields::Button>(document);
        const RecordingLog log;
        Host::Error::set(untouched);
        std::string states;
        for (const auto& state : button->states())
            states += textOf(state) + " ";
        EXPECT_EQ(states, row.states);
        EXPECT_EQ(log.text(), row.log.empty() ? "" : row.log + " for field g.0\n");
        const bool failed = row.log.starts_with("Failed");
        EXPECT_EQ(Host::Error::get() == StepFailed, failed);
    }
}

} // namespace
