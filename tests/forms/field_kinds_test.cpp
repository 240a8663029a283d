
#include "support/testing.h"

namespace {

using namespace Support;

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
    EXPECT_EQ(field->defaultResources(), valueOf(*document, 21));
    EXPECT_EQ(field->normalAppearance(), valueOf(*document, 21));
    for (const auto& [entry, quadding] : {std::pair("/Q -1", Quadding::NotSet),
                                          {"/Q 0", Quadding::Left},
                                          {"/Q 1", Quadding::Centered},
                                          {"/Q 2", Quadding::Right},
                                          {"/Q 3", Quadding::NotSet}}) {
        const RecordingLog log;
        EXPECT_EQ(fieldOf(openWithField(entry))->quadding(), quadding) << entry;
    }
    // Of another kind each, none of them the kind of another.
    const auto text = fieldOf<Fields::Text>(openWithField("/FT /Tx /V (v) /DV (d) /MaxLen 7"));
    EXPECT_EQ(textOf(text->value()) + textOf(text->defaultValue()), "vd");
    EXPECT_EQ(text->maxLen(), 7U);
    const auto button = fieldOf<Fields::Button>(openWithField("/FT /Btn /V /v /DV /d /AS /s"));
    EXPECT_EQ(textOf(button->value()) + textOf(button->defaultValue()) + textOf(button->state()),
              "vds");
    const auto choice =
        fieldOf<Fields::Choice>(openWithField("/FT /Ch /V (v) /DV (d) /Opt [(o)] /I [1]"));
    EXPECT_EQ(textOf(choice->value()) + textOf(choice->defaultValue()) + textOf(choice->options()) +
                  textOf(choice->selectedIndices()),
              "vd[o ][1.0 ]");
}

/// Under the interface of the field's kind.
bool setValue(const Ref<Field>& field, const Ref<Value>& value) {
    const auto text = Host::cast<Fields::Text>(field);
    if (text) return text->setValue(Host::cast<String>(value));
    if (const auto choice = Host::cast<Fields::Choice>(field)) return choice->setValue(value);
    return Host::cast<Fields::Button>(field)->setValue(Host::cast<Name>(value));
}

TEST(Field, TakesTheValuesOfItsKind) {
    const char* multi = "/Ch /Ff 2097152";
    const char* push = "/Btn /Ff 65536";
    // Type and further entries, object 20, the text form of V behind it, messages.
    const std::tuple<const char*, const char*, const char*, const char*> rows[] = {
        {"/Tx /MaxLen 0", "(abcd)", "abcd", ""},
        {"/Tx /MaxLen 3", "(abcd)", "old", ""},
        {"/Tx /MaxLen 2", "<FEFF00410042>", "AB", ""},
        {"/Tx /MaxLen 1", "<FEFF00410042>", "old", ""},
        {"/Tx /MaxLen 1", "<0041004200>", "0041004200", ""},
        {"/Ch", "[ (a) ]", "old",
         "Non-string value not supported for single entry choice field: g.0\n"},
        {multi, nullptr, "(null)", ""},
        {multi, "1", "old", "Multi-select field requires either an Array or String value: g.0\n"},
        {multi, "[ (a) (b) ]", "[ab ]", ""},
        {multi, "[ (a) ]", "a", "Keeping only single value of array for field: g.0\n"},
        {multi, "[ ]", "(null)", "Assuming unset value for empty array for field: g.0\n"},
        {multi, "[ (a) /b ]", "old", "Element 1h (1) of new value is not a String for g.0\n"},
        {"/Btn", "/On", "On", ""},
        {push, "/On", "old", ""},
        {push, nullptr, "(null)", ""},
    };
    for (const auto& [type, given, stored, messages] : rows) {
        SCOPED_TRACE(std::string(type) + " takes " + (given ? given : "nothing"));
        const auto document = openWithField(std::string("/V /old /AS /old /FT ") + type,
                                            given != nullptr ? given : "true");
        const auto field = fieldOf(document);
        const auto value = given != nullptr ? valueOf(*document, 20) : nullptr;
        RecordingLog log;
        const bool set = setValue(field, value);
        const auto refused = type == push ? ButtonHasNoValue : InvalidArgument;
        EXPECT_EQ(set, stored != std::string_view("old"));
        EXPECT_TRUE(set || Host::Error::get() == refused);
        EXPECT_EQ(formMessages(log), messages);
        EXPECT_EQ(document->changed(), set);
        EXPECT_EQ(textOf(field->dictionary()->find("V"_str)), stored);
        const auto button = Host::cast<Fields::Button>(field);
        if (!button) continue;
        EXPECT_EQ(button->setState(Host::cast<Name>(value)), set) << "just as the value";
        EXPECT_EQ(textOf(field->dictionary()->find("AS"_str)), stored);
        EXPECT_EQ(textOf(field->dictionary()->find("V"_str)), stored);
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
    const std::tuple<const char*, const char*, std::string> rows[] = {
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
    for (const auto& [entries, offered, warning] : rows) {
        SCOPED_TRACE(entries);
        const auto document = openWithField(std::string("/FT /Btn ") + entries);
        const auto button = fieldOf<Fields::Button>(document);
        const RecordingLog log;
        Host::Error::set(untouched);
        std::string states;
        for (const auto& state : button->states())
            states += textOf(state) + " ";
        EXPECT_EQ(states, offered);
        EXPECT_EQ(log.text(), warning.empty() ? "" : warning + " for field g.0\n");
        const bool failed = warning.starts_with("Failed");
        EXPECT_EQ(Host::Error::get() == StepFailed, failed);
    }
}

} // namespace
