#include "tools/form_documents.h"

namespace {

using namespace Support;
using Tools::FormEditor;

/// What is drawn before the first text, and what of it is text: size, places, codes.
std::string placed(const std::string& looks) {
    const auto begin = looks.find("/Helv ");
    return begin == std::string::npos ? looks : looks.substr(begin, looks.find("ET") - begin);
}

TEST(Filling, PlacesTextWhereViewersDo) {
    // Helvetica: from -225 to 950 with accents; A is 667 wide, i 222, a space 278.
    const struct {
        const char *name, *entries, *text, *drawn;
    } rows[] = {
        {"left, in the middle of the height", "", "A", "/Helv 10 Tf\n1 0 0 1 2 6.375 Tm <41> Tj\n"},
        {"right", "/Q 2", "A", "/Helv 10 Tf\n1 0 0 1 91.33 6.375 Tm <41> Tj\n"},
        {"centred", "/Q 1", "A", "/Helv 10 Tf\n1 0 0 1 46.665 6.375 Tm <41> Tj\n"},
        {"too long for its field", "/Q 1 /Rect [ 0 0 9 20 ]", "AAAA",
         "/Helv 10 Tf\n1 0 0 1 2 6.375 Tm <41414141> Tj\n"},
        {"as large as the height takes", "/DA (/Helv 0 Tf)", "A",
         "/Helv 15.31 Tf\n1 0 0 1 2 4.45013 Tm <41> Tj\n"},
        {"as large as the width takes", "/DA (/Helv 0 Tf) /Rect [ 0 0 17.34 20 ]", "AA",
         "/Helv 10 Tf\n1 0 0 1 2 6.375 Tm <4141> Tj\n"},
        {"line ends on one line", "", "A\r\nA", "/Helv 10 Tf\n1 0 0 1 2 6.375 Tm <412041> Tj\n"},
        {"wrapped at spaces and ends", "/Ff 4096 /Rect [ 9 9 30 70 ]", "A iAi iA\n\ni",
         "/Helv 10 Tf\n1 0 0 1 2 49.5 Tm <41> Tj\n1 0 0 1 2 38 Tm <694169> Tj\n"
         "1 0 0 1 2 26.5 Tm <6941> Tj\n1 0 0 1 2 3.5 Tm <69> Tj\n"},
        {"a word that is too long", "/Ff 4096 /Rect [ 0 0 19 60 ]", "AAA",
         "/Helv 10 Tf\n1 0 0 1 2 48.5 Tm <4141> Tj\n1 0 0 1 2 37 Tm <41> Tj\n"},
        {"lines as large as fit", "/Ff 4096 /DA (/Helv 0 Tf) /Rect [ 0 0 100 20 ]", "A\nA",
         "/Helv 6.5 Tf\n1 0 0 1 2 11.825 Tm <41> Tj\n1 0 0 1 2 4.35 Tm <41> Tj\n"},
        {"a comb", "/Ff 16777216 /MaxLen 4 /Rect [ 0 0 42 20 ]", "Ai",
         "/Helv 10 Tf\n1 0 0 1 2.665 6.375 Tm <41> Tj\n1 0 0 1 14.89 6.375 Tm <69> Tj\n"},
        {"a comb from the right", "/Q 2 /Ff 16777216 /MaxLen 4 /Rect [ 0 0 42 20 ]", "A",
         "/Helv 10 Tf\n1 0 0 1 32.665 6.375 Tm <41> Tj\n"},
        {"a comb as large as its cells",
         "/DA (/Helv 0 Tf) /Ff 16777216 /MaxLen 4 /Rect [ 0 0 34 20 ]", "A",
         "/Helv 8 Tf\n1 0 0 1 2.332 7.1 Tm <41> Tj\n"},
        {"a password", "/Ff 8192", "Ai", "/Helv 10 Tf\n1 0 0 1 2 6.375 Tm <2A2A> Tj\n"},
        {"turned", "/MK << /R 90 >> /Rect [ 0 0 20 100 ]", "A",
         "/Helv 10 Tf\n1 0 0 1 2 6.375 Tm <41> Tj\n"},
        {"characters beyond ASCII", "", "é€", "/Helv 10 Tf\n1 0 0 1 2 6.375 Tm <E980> Tj\n"},
        {"nothing", "", "", "/Helv 10 Tf\n"},
        {"lines as small as can be read", "/Ff 4096 /DA (/Helv 0 Tf) /Rect [ 0 0 9 9 ]",
         "A\nA\nA\nA", "/Helv 4 Tf\n1 0 0 1 2 3.2 Tm <41> Tj\n1 0 0 1 2 -1.4 Tm <41> Tj\n"},
    };
    for (const auto& row : rows) {
        const auto document = textDocument(row.entries);
        EXPECT_EQ(fill(document, "t", row.text), "shown") << row.name;
        EXPECT_EQ(placed(looksOf(document, 10)), row.drawn) << row.name;
    }
}

TEST(Filling, CutsNoLineThatItsFieldHasRoomFor) {
    // A line of 12 points is 14.1 high, from -2.7 to 11.4; without accents to 9.
    const struct {
        const char *name, *entries, *drawn, *text = "W";
    } rows[] = {
        {"within the border", "/Rect [ 0 0 50 18 ]", "1 1 48 16 re W n\n2 4.65 Tm"},
        {"over the border", "/Rect [ 0 0 50 15 ]", "1 0 48 15 re W n\n2 3.15 Tm"},
        {"over a border in a turned field", "/Rect [ 0 0 15 50 ] /MK << /R 90 >>",
         "1 0 48 15 re W n\n2 3.15 Tm"},
        {"higher than the field", "/Rect [ 0 0 50 11 ]", "1 0 48 11 re W n\n2 1.15 Tm"},
        {"with accents", "/Rect [ 0 0 50 12 ]", "1 0 48 12 re W n\n2 0.6 Tm", "ÄH"},
        {"below the baseline", "/Rect [ 0 0 50 12 ]", "1 0 48 12 re W n\n2 2.7 Tm", "Hg"},
        {"with both", "/Rect [ 0 0 50 12 ]", "1 0 48 12 re W n\n2 1.65 Tm", "Äg"},
        {"in a comb", "/Rect [ 0 0 50 11 ] /Ff 16777216 /MaxLen 1",
         "1 0 48 11 re W n\n19.336 1.15 Tm"},
        {"of several", "/Rect [ 0 0 50 11 ] /Ff 4096", "1 0 48 11 re W n\n2 1.15 Tm"},
        {"of several in the border", "/Rect [ 0 0 50 18 ] /Ff 4096", "1 1 48 16 re W n\n2 4.65 Tm"},
        {"of several with room", "/Rect [ 0 0 50 19 ] /Ff 4096", "1 1 48 17 re W n\n2 5.6 Tm"},
        {"in a list", "/FT /Ch /Rect [ 0 0 50 11 ]", "1 0 48 11 re W n\n2 1.15 Tm"},
        {"by a font that is embedded", "/Rect [ 0 0 50 15 ] /DA (/Own 12 Tf)",
         "1 1 48 13 re W n\n2 3.6 Tm"}, // from -1.8 to 9.6
    };
    for (const auto& row : rows) {
        const std::string field =
            "<< /FT /Tx /T (t) /DA (/Helv 12 Tf) /Opt [ (W) ] /DR << /Font << "
            "/Helv 9 0 R /Own 11 0 R >> >> " +
            std::string(row.entries) + " >>";
        const auto document = formDocument(
            {{10, field},
             {11, "<< /Subtype /TrueType /BaseFont /Own /FirstChar 87 /Widths [ 500 ] "
                  "/FontDescriptor << /Ascent 750 /Descent 250 /FontFile2 7 0 R /FontBBox [ "
                  "0 -150 900 800 ] >> >>"}});
        EXPECT_EQ(fill(document, "t", row.text), "shown") << row.name;
        const std::string looks = looksOf(document, 10);
        const auto clip = looks.find("q\n") + 2;
        const auto line = looks.find("1 0 0 1 ") + 8;
        EXPECT_EQ(looks.substr(clip, looks.find('\n', clip) + 1 - clip) +
                      looks.substr(line, looks.find(" <", line) - line),
                  row.drawn)
            << row.name;
    }
}

TEST(Filling, DrawsWhatIsAroundTheText) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "/Tx BMC\nq\n1 1 98 18 re W n\nBT\n1 0 0 rg\n/Helv"},
        {"/MK << /BG [ 0.5 ] /BC [ 0 0 1 ] >> /BS << /W 2 >>",
         "0.5 g\n0 0 100 20 re f\n0 0 1 RG\n2 w\n1 1 98 18 re S\n/Tx BMC\nq\n2 2 96 16 re W n\n"},
        {"/MK << /BC [ 0 0 0 1 ] >> /BS << /S /D /D [ 2 1 ] >>",
         "0 0 0 1 K\n[2 1] 0 d\n1 w\n0.5 0.5 99 19 re S\n"},
        {"/MK << /BC [ 1 ] >> /BS << /S /U >>", "1 G\n1 w\n0 0.5 m 100 0.5 l S\n/Tx"},
        {"/MK << /BC [ 1 ] >> /BS << /S /B /W 1 >>",
         "1 g\n1 1 m 1 19 l 99 19 l 98 18 l 2 18 l 2 2 l f\n0.5 g\n1 1 m 99 1 l"},
        {"/MK << /BC [ 1 ] >> /Border [ 0 0 3 [ 4 ] ]", "1 G\n[4] 0 d\n3 w\n1.5 1.5 97 17 re S"},
        {"/MK << /BC [ 1 2 ] /BG [ ] /R 45 >> /BS 7", "/Tx BMC"},
        {"/MK << /BC [ 0 ] >> /Ff 16777216 /MaxLen 2",
         "0 G\n1 w\n0.5 0.5 99 19 re S\n/Tx BMC\nq\n1 1 98 18 re W n\n0 G\n1 w\n50 0 m 50 20 l "
         "S\nBT"},
        {"/MK << /BC [ 0 ] >> /BS << /W 0 >>", "/Tx BMC\nq\n0 0 100 20 re W n"},
        {"/DA (0 0 1 0 k /Helv 9 Tf (x) q 2 g)",
         "/Tx BMC\nq\n1 1 98 18 re W n\nBT\n2 g\n/Helv 9 Tf"},
    };
    for (const auto& [entries, drawn] : rows) {
        const auto document = textDocument(std::string("/Rect [ 100 30 0 10 ] ") + entries);
        ASSERT_EQ(fill(document, "t", "A"), "shown") << entries;
        EXPECT_TRUE(looksOf(document, 10).starts_with(drawn)) << entries << looksOf(document, 10);
    }
}

TEST(Filling, TurnsWhatItsReaderSeesTurned) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"90", "[0.01.0-1.00.00.00.0 ]", "[0.00.020.09.1 ]"},
        {"180", "[-1.00.00.0-1.00.00.0 ]", "[0.00.09.120.0 ]"},
        {"-90", "[0.0-1.01.00.00.00.0 ]", "[0.00.020.09.1 ]"},
        {"45", "(null)", "[0.00.09.120.0 ]"}};
    for (const auto& [turn, matrix, box] : rows) {
        const auto document =
            textDocument(std::string("/Rect [ 0 0 9.05 20 ] /MK << /R ") + turn + " >>");
        ASSERT_EQ(fill(document, "t", ""), "shown");
        const auto stream = castTo<Stream>(at(document, dictionary(document, 10), {"AP", "N"}));
        EXPECT_EQ(textOf(stream->dict()->find("Matrix")), matrix);
        EXPECT_EQ(textOf(stream->dict()->find("BBox")), box);
    }
}

TEST(Filling, TakesAwayWhatTheFormerValueLeft) {
    const auto document = formDocument(
        {{10, "<< /FT /Tx /T (t) /V (old) /RV (<p>old</p>) /Kids [ 11 0 R 12 0 R ] >>"},
         {11, "<< /Parent 10 0 R /V (old) /Rect [ 0 0 9 9 ] /AP << /N 7 0 R /D 7 0 R >> >>"},
         {12, "<< /Parent 10 0 R /Rect [ 0 0 9.05 9 ] /AP 13 0 R >>"},
         {13, "<< /N 7 0 R >>"},
         {7, "<< >>"}});
    EXPECT_EQ(fill(document, "t.1", "n\\w (ü)"), "shown") << "a widget stands for its field";
    EXPECT_EQ(entry(document, 10, "V"), "n\\w (ü)");
    EXPECT_EQ(entry(document, 10, "RV") + entry(document, 5, "XFA"), "(null)(null)");
    EXPECT_EQ(entry(document, 11, "V"), "(null)");
    EXPECT_EQ(entry(document, 11, "AP").find("D ->"), std::string::npos);
    EXPECT_EQ(entry(document, 13, "N"), "7 (0)") << "what may be another widget's as well";
    for (const std::uint32_t widget : {11U, 12U})
        EXPECT_NE(looksOf(document, widget).find("<6E5C772028FC29> Tj"), std::string::npos);
    EXPECT_EQ(entry(document, 5, "NeedAppearances"), "(null)");

    const auto again = open(write(*document));
    const FormEditor form = editorOf(again);
    EXPECT_EQ(form.values(*form.begin()).value(), std::vector<std::string>{"n\\w (ü)"});
    EXPECT_EQ(fill(again, "t", ""), "shown");
    EXPECT_EQ(entry(again, 10, "V"), "(null)");
}

TEST(Filling, LeavesToViewersWhatNoFontShows) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"", "aΩ", "its font lacks U+03A9"},
        {"/DA (/Wide 9 Tf)", "A", "no text can be set in its font"},
        {"/DA (/None 9 Tf)", "A", "shown"},
        {"/FT /Ch /Opt [ (A) ] /DA (/Wide 9 Tf)", "A", "no text can be set in its font"},
        {"/Ff 8192 /DA (/Own 9 Tf) /DR << /Font << /Own << /Subtype /TrueType /BaseFont /Own "
         "/FirstChar 65 /Widths [ 500 ] /FontDescriptor << /FontFile2 7 0 R >> >> >> >>",
         "A", "its font lacks U+002A"},
        {"/Rect [ 0 0 0 9 ]", "Ω", "shown"},
    };
    for (const auto& [entries, text, ending] : rows) {
        const auto document =
            textDocument(std::string("/Rect [ 0 0 9 9 ] /AP << /N 9 0 R >> ") + entries);
        EXPECT_EQ(fill(document, "t", text), ending) << entries;
        const bool asked = std::string_view(ending) != "shown";
        EXPECT_EQ(entry(document, 5, "NeedAppearances"), asked ? "true" : "(null)") << entries;
        EXPECT_EQ(entry(document, 10, "AP") == "(null)", asked) << entries;
        const bool marks = entry(document, 5, "DR").find("ZaDb ->") != std::string::npos;
        EXPECT_EQ(marks, asked) << "viewers draw buttons anew as well";
        EXPECT_EQ(entry(document, 10, "V"), text);
    }
    // A form that names no font at all gets one.
    const auto bare = textDocument("", "<< /Fields [ 10 0 R ] >>");
    EXPECT_EQ(fill(bare, "t", "A"), "shown");
    EXPECT_NE(looksOf(bare, 10).find("BT\n0 g\n/Helv"), std::string::npos);
    EXPECT_NE(entry(bare, 5, "DR").find("Helv ->"), std::string::npos);
    EXPECT_EQ(fill(bare, "t", "Ω"), "its font lacks U+03A9");
    EXPECT_EQ(entry(bare, 5, "DA"), "/Helv 0 Tf 0 g");
}

} // namespace
