#include "tools/form_documents.h"

namespace {

using namespace Support;
using Tools::FormEditor;

TEST(Filling, SetsStatesByNameAndByWhatPeopleRead) {
    const struct {
        const char *name, *options, *text, *value, *first, *second;
    } rows[] = {
        {"by name", "", "a#20b", "a#20b", "Off", "a#20b"},
        {"by the text of the name", "", "a b", "a#20b", "Off", "a#20b"},
        {"by its option", "/Opt [ (Rot) <FEFF0042006C0061> ]", "Bla", "a#20b", "Off", "a#20b"},
        {"by a pair", "/Opt [ [ (r) (Rot) ] (Bla) ]", "Rot", "1", "1", "Off"},
        {"off", "", "Off", "Off", "Off", "Off"},
        {"empty is off", "", "", "Off", "Off", "Off"},
    };
    const std::string looks = "/Rect [ 0 0 9 9 ] /AS /Off /Parent 10 0 R /AP << /N << /Off 7 0 R /";
    for (const auto& row : rows) {
        const auto document = formDocument({
            {10, "<< /FT /Btn /Ff 32768 /T (r) /Kids [ 11 0 R 12 0 R 13 0 R ] " +
                     std::string(row.options) + " >>"},
            {11, "<< " + looks + "1 7 0 R >> >> >>"},
            {12, "<< " + looks + "a#20b 7 0 R >> >> >>"},
            {13, "<< /Rect [ 0 0 9 9 ] /Parent 10 0 R >>"},
        });
        EXPECT_EQ(fill(document, "r", row.text), "shown") << row.name;
        EXPECT_EQ(entry(document, 10, "V"), row.value) << row.name;
        EXPECT_EQ(entry(document, 11, "AS"), row.first) << row.name;
        EXPECT_EQ(entry(document, 12, "AS"), row.second) << row.name;
        EXPECT_EQ(entry(document, 12, "AP").find("a#20b ->"), 24U) << "looks stay as they are";
        EXPECT_EQ(entry(document, 13, "AS") + entry(document, 13, "AP"), "Off(null)") << row.name;
    }
}

TEST(Filling, SetsRadioButtonsOfOneNameTogether) {
    const std::string lone = "<< /Subtype /Widget /FT /Btn /Ff 32768 /T (r) /Rect [ 0 0 9 9 ] ";
    const auto looks = [&](const std::string& state) {
        return lone + "/V /Off /AP << /N << /" + state + " << >> >> >> >>";
    };
    const auto opened = [&](std::string_view fields) {
        return formDocument(
            {{3,
              "<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 9 9 ] /Annots [ 10 0 R 12 0 R 13 0 R "
              "] >>"},
             {5, fields},
             {10, looks("1")},
             {11, looks("2")},
             {12, looks("\\376\\377\\000c\\000\\d")},
             {13, "<< /Subtype /Widget /FT /Btn /T (r) /Rect [ 0 0 9 9 ] >>"},
             {14, lone + "/Parent 15 0 R >>"},
             {15, "<< /T (p) /Kids [ 14 0 R ] >>"}});
    };
    // 12 is on the page alone, 13 is a check box, 14 is another's kid.
    const auto document = opened("<< /Fields [ 15 0 R 11 0 R 13 0 R 10 0 R ] >>");
    const std::string_view states[] = {"1", "2", "cd"};
    for (const std::string_view state : states) {
        EXPECT_EQ(fill(document, "r", state), "shown");
        for (std::size_t index = 0; index < 3; ++index) {
            const bool on = states[index] == state;
            EXPECT_EQ(entry(document, 10 + static_cast<std::uint32_t>(index), "AS") != "Off", on);
        }
    }
    ASSERT_EQ(entry(document, 5, "Fields"), "[15 (0)16 (0)13 (0) ]");
    EXPECT_EQ(entry(document, 16, "Kids"), "[11 (0)10 (0)12 (0) ]");
    EXPECT_EQ(entry(document, 16, "Ff"), "32768.0");
    EXPECT_EQ(entry(document, 12, "Parent") + entry(document, 12, "T"), "16 (0)(null)");
    const FormEditor form = editorOf(document);
    const auto options = form.options(form.field("r").value()).value();
    ASSERT_EQ(options.size(), 3U);
    EXPECT_EQ(options[2].text, "cd");

    // Of pages that cannot be found nothing is asked.
    const auto unlisted = opened("<< /Fields [ 11 0 R 10 0 R ] >>");
    ASSERT_TRUE(dictionary(unlisted, 2)->set("Kids", number(1)));
    EXPECT_EQ(fill(unlisted, "r", "1"), "shown");
    EXPECT_EQ(entry(unlisted, 16, "Kids"), "[11 (0)10 (0) ]");

    // One button is a group already, and a form that was built before stays what it was.
    const auto single = opened("<< /Fields [ 13 0 R 15 0 R ] >>");
    const auto built = opened("<< /Fields [ 10 0 R 11 0 R ] >>");
    ASSERT_TRUE(built->form());
    for (const auto& same : {single, built}) {
        const std::string before = write(*same);
        EXPECT_FALSE(editorOf(same).empty());
        EXPECT_EQ(write(*same), before);
    }
}

TEST(Filling, MakesLooksForButtonsWithout) {
    const std::pair<const char*, const char*> rows[] = {
        {"/MK << /CA (8) >>", "0 g\n4.15 5.95 m"},
        {"/MK << /CA (l) /BC [ 0 ] >>", "0 g\n14.5 10 m"},
        {"/Ff 32768 /MK << /BC [ 1 ] >>", "1 G\n1 w\n19.5 10 m"},
        {"/AP << /N << >> >>", "0 g\n3.7 9.55 m"},
        {"/AP << /N << /I#20agree << >> >> >>", "0 g\n3.7 9.55 m"},
        {"/MK << /CA (u) >>", "0 g\n3.7 10 m"},
        {"/MK << /CA (n) >>", "0 g\n4.6 4.6 m"},
        {"/MK << /CA (H) >>", "0 g\n10 16.75 m"},
        {"/Kids [ 11 0 R ]", "0 g\n3.7 9.55 m"},
    };
    for (const auto& [entries, drawn] : rows) {
        const auto document =
            formDocument({{10, "<< /FT /Btn /T (c) /DA (/ZaDb 0 Tf 0 g) /Rect [ 0 0 20 20 ] " +
                                   std::string(entries) + " >>"},
                          {11, "<< /Rect [ 0 0 20 20 ] /Parent 10 0 R >>"}});
        EXPECT_EQ(fill(document, "c", "I agree"), "shown") << entries;
        EXPECT_EQ(entry(document, 10, "V"), "I#20agree");
        EXPECT_EQ(entry(document, 10, "AS"), "I#20agree");
        EXPECT_NE(looksOf(document, 10, "I#20agree").find(drawn), std::string::npos)
            << entries << looksOf(document, 10, "I#20agree");
        EXPECT_EQ(looksOf(document, 10, "Off").find(" l "), std::string::npos) << entries;
    }
}

} // namespace
