#include "support/testing.h"

#include <pdf/tools/editing.h>
#include <pdf/tools/filling.h>
#include <pdf/tools/pages.h>

#include <map>

namespace {

using namespace Libraries::Files::PDF;
using namespace Support;
using Tools::Filled;

constexpr std::string_view helvetica =
    "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>";
constexpr std::string_view formEntries =
    "<< /Fields [ 10 0 R ] /DA (/Helv 10 Tf 1 0 0 rg) /DR << /Font << /Helv 9 0 R /Wide 8 0 R >> "
    ">> /XFA (x) >>";

using Objects = std::initializer_list<std::pair<std::uint32_t, std::string_view>>;

/// A document with one form, whose first field is object 10.
Ref<Document> openForm(Objects objects, std::string_view entries = formEntries) {
    DocumentBuilder file = DocumentBuilder::minimal();
    file.object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm 5 0 R >>").object(5, entries);
    std::map<std::uint32_t, std::string_view> all = {{8, "<< /Type /Font /Subtype /Type0 >>"},
                                                     {9, helvetica}};
    for (const auto& [id, body] : objects)
        all[id] = body;
    for (std::uint32_t id = 3; id <= all.rbegin()->first; ++id) { // a gap would not be written
        if (id > 5 || all.contains(id)) file.object(id, all.contains(id) ? all[id] : "<< >>");
    }
    return open(file.bytes());
}

Ref<Dictionary> dictionary(const Ref<Document>& document, std::uint32_t id) {
    return Host::cast<Dictionary>(valueOf(*document, id));
}

std::string entry(const Ref<Document>& document, std::uint32_t id, std::string_view key) {
    return textOf(dictionary(document, id)->find(key));
}

/// What a widget's normal appearance draws, in a state where it has several.
std::string looksOf(const Ref<Document>& document, std::uint32_t id, std::string_view state = {}) {
    const auto looks = Host::cast<Dictionary>(dictionary(document, id)->find("AP"));
    auto entry = looks ? Tools::resolve(*document, looks->find("N")) : nullptr;
    if (const auto states = Host::cast<Dictionary>(entry)) {
        entry = Tools::resolve(*document, states->find(state));
    }
    const auto stream = Host::cast<Stream>(entry);
    return stream ? contentsOf(Tools::decodedBytes(*document, stream)) : "none";
}

Filled fill(const Ref<Document>& document, std::string_view path, std::string_view text) {
    return Tools::fillField(*document, *Tools::openForm(*document), path, text);
}

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
        const std::string field =
            "<< /FT /Tx /T (t) /Rect [ 0 0 100 20 ] " + std::string(row.entries) + " >>";
        const auto document = openForm({{10, field}});
        EXPECT_EQ(fill(document, "t", row.text), Filled::Shown) << row.name;
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
        {"of several within the border", "/Rect [ 0 0 50 18 ] /Ff 4096",
         "1 1 48 16 re W n\n2 4.65 Tm"},
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
        const auto document = openForm(
            {{10, field},
             {11, "<< /Subtype /TrueType /BaseFont /Own /FirstChar 87 /Widths [ 500 ] "
                  "/FontDescriptor << /Ascent 750 /Descent 250 /FontFile2 7 0 R /FontBBox [ "
                  "0 -150 900 800 ] >> >>"}});
        EXPECT_EQ(fill(document, "t", row.text), Filled::Shown) << row.name;
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
        const std::string field =
            "<< /FT /Tx /T (t) /Rect [ 100 30 0 10 ] " + std::string(entries) + " >>";
        const auto document = openForm({{10, field}});
        ASSERT_EQ(fill(document, "t", "A"), Filled::Shown) << entries;
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
        const auto document = openForm({{10, "<< /FT /Tx /T (t) /Rect [ 0 0 9.05 20 ] /MK << /R " +
                                                 std::string(turn) + " >> >>"}});
        ASSERT_EQ(fill(document, "t", ""), Filled::Shown);
        const auto looks = Host::cast<Dictionary>(dictionary(document, 10)->find("AP"));
        const auto stream = Host::cast<Stream>(Tools::resolve(*document, looks->find("N")));
        EXPECT_EQ(textOf(stream->dict()->find("Matrix")), matrix);
        EXPECT_EQ(textOf(stream->dict()->find("BBox")), box);
    }
}

TEST(Filling, TakesAwayWhatTheFormerValueLeft) {
    const auto document = openForm(
        {{10, "<< /FT /Tx /T (t) /V (old) /RV (<p>old</p>) /Kids [ 11 0 R 12 0 R ] >>"},
         {11, "<< /Parent 10 0 R /V (old) /Rect [ 0 0 9 9 ] /AP << /N 7 0 R /D 7 0 R >> >>"},
         {12, "<< /Parent 10 0 R /Rect [ 0 0 9.05 9 ] /AP 13 0 R >>"},
         {13, "<< /N 7 0 R >>"},
         {7, "<< >>"}});
    Host::Error::set(4711);
    EXPECT_EQ(fill(document, "t.1", "n\\w (ü)"), Filled::Shown) << "a widget stands for its field";
    EXPECT_EQ(Host::Error::get(), 4711U);
    EXPECT_EQ(entry(document, 10, "V"), "n\\w (ü)");
    for (const char* gone : {"RV", "XFA"})
        EXPECT_EQ(entry(document, gone[0] == 'R' ? 10 : 5, gone), "(null)") << gone;
    EXPECT_EQ(entry(document, 11, "V"), "(null)");
    EXPECT_EQ(entry(document, 11, "AP").find("D ->"), std::string::npos);
    EXPECT_EQ(entry(document, 13, "N"), "7 (0)") << "what may be another widget's as well";
    for (const std::uint32_t widget : {11U, 12U})
        EXPECT_NE(looksOf(document, widget).find("<6E5C772028FC29> Tj"), std::string::npos);
    EXPECT_EQ(entry(document, 5, "NeedAppearances"), "(null)");

    const auto again = open(write(*document));
    EXPECT_EQ(Tools::fieldValues(*again, *again->form()->field(0)),
              std::vector<std::string>{"n\\w (ü)"});
    EXPECT_EQ(fill(again, "t", ""), Filled::Shown);
    EXPECT_EQ(entry(again, 10, "V"), "(null)");
}

TEST(Filling, LeavesToViewersWhatNoFontShows) {
    const struct {
        const char *entries, *text;
        Filled filled;
    } rows[] = {
        {"", "Ω", Filled::ViewerNeeded},
        {"/DA (/Wide 9 Tf)", "A", Filled::ViewerNeeded},
        {"/DA (/None 9 Tf)", "A", Filled::Shown},
        {"/FT /Ch /Opt [ (A) ] /DA (/Wide 9 Tf)", "A", Filled::ViewerNeeded},
        {"/Ff 8192 /DA (/Own 9 Tf) /DR << /Font << /Own << /Type /Font /Subtype /TrueType "
         "/BaseFont "
         "/Own /FirstChar 65 /Widths [ 500 ] /FontDescriptor << /FontFile2 7 0 R >> >> >> >>",
         "A", Filled::ViewerNeeded}, // no asterisk
        {"/Rect [ 0 0 0 9 ]", "Ω", Filled::Shown},
    };
    for (const auto& [entries, text, filled] : rows) {
        const auto document = openForm({{10, "<< /FT /Tx /T (t) /Rect [ 0 0 9 9 ] /AP << /N 9 0 R "
                                             ">> " +
                                                 std::string(entries) + " >>"}});
        EXPECT_EQ(fill(document, "t", text), filled) << entries;
        const bool asked = filled == Filled::ViewerNeeded;
        EXPECT_EQ(entry(document, 5, "NeedAppearances"), asked ? "true" : "(null)") << entries;
        EXPECT_EQ(entry(document, 10, "AP") == "(null)", asked) << entries;
        const bool marks = entry(document, 5, "DR").find("ZaDb ->") != std::string::npos;
        EXPECT_EQ(marks, asked) << "viewers draw buttons anew as well";
        EXPECT_EQ(entry(document, 10, "V"), text);
    }
    // A form that names no font at all gets one.
    const auto bare =
        openForm({{10, "<< /FT /Tx /T (t) /Rect [ 0 0 9 9 ] >>"}}, "<< /Fields [ 10 0 R ] >>");
    EXPECT_EQ(fill(bare, "t", "A"), Filled::Shown);
    EXPECT_NE(looksOf(bare, 10).find("BT\n0 g\n/Helv"), std::string::npos);
    const auto resources = Host::cast<Dictionary>(dictionary(bare, 5)->find("DR"));
    ASSERT_TRUE(resources);
    EXPECT_NE(textOf(resources).find("Helv ->"), std::string::npos);
    EXPECT_EQ(fill(bare, "t", "Ω"), Filled::ViewerNeeded);
    EXPECT_EQ(entry(bare, 5, "DA"), "/Helv 0 Tf 0 g");
}

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
        const auto document = openForm({
            {10, "<< /FT /Btn /Ff 32768 /T (r) /Kids [ 11 0 R 12 0 R 13 0 R ] " +
                     std::string(row.options) + " >>"},
            {11, "<< " + looks + "1 7 0 R >> >> >>"},
            {12, "<< " + looks + "a#20b 7 0 R >> >> >>"},
            {13, "<< /Rect [ 0 0 9 9 ] /Parent 10 0 R >>"},
        });
        EXPECT_EQ(fill(document, "r", row.text), Filled::Shown) << row.name;
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
        return openForm(
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
        const RecordingLog log;
        EXPECT_EQ(fill(document, "r", state), Filled::Shown) << log.text();
        for (std::size_t index = 0; index < 3; ++index) {
            const bool on = states[index] == state;
            EXPECT_EQ(entry(document, 10 + static_cast<std::uint32_t>(index), "AS") != "Off", on);
        }
    }
    ASSERT_EQ(entry(document, 5, "Fields"), "[15 (0)16 (0)13 (0) ]");
    EXPECT_EQ(entry(document, 16, "Kids"), "[11 (0)10 (0)12 (0) ]");
    EXPECT_EQ(entry(document, 16, "Ff"), "32768.0");
    EXPECT_EQ(entry(document, 12, "Parent") + entry(document, 12, "T"), "16 (0)(null)");
    const auto options = Tools::fieldOptions(*document, *document->form()->field(1));
    ASSERT_EQ(options.size(), 3U);
    EXPECT_EQ(options[2].text, "cd");

    // One button is a group already, and a form that was built before stays what it was.
    const auto single = opened("<< /Fields [ 13 0 R 15 0 R ] >>");
    const auto built = opened("<< /Fields [ 10 0 R 11 0 R ] >>");
    ASSERT_TRUE(built->form());
    for (const auto& same : {single, built}) {
        const std::string before = write(*same);
        EXPECT_TRUE(Tools::openForm(*same));
        EXPECT_EQ(write(*same), before);
    }
}

TEST(Filling, LogsNothingOfWhatIsInherited) {
    for (const bool sound : {true, false}) {
        const auto document = openForm({{10, "<< /FT /Tx /T (g) /Kids [ 11 0 R ] >>"},
                                        {11, sound ? "<< /T (a) >>" : "<< /T (a) /FT /No >>"}});
        const RecordingLog log;
        Host::Error::set(4711);
        EXPECT_TRUE(Tools::openForm(*document));
        EXPECT_EQ(log.text().empty(), sound) << log.text();
        EXPECT_EQ(Host::Error::get(), sound ? 4711U : std::uint32_t{FormIncomplete});
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
            openForm({{10, "<< /FT /Btn /T (c) /DA (/ZaDb 0 Tf 0 g) /Rect [ 0 0 20 20 ] " +
                               std::string(entries) + " >>"},
                      {11, "<< /Rect [ 0 0 20 20 ] /Parent 10 0 R >>"}});
        EXPECT_EQ(fill(document, "c", "I agree"), Filled::Shown) << entries;
        EXPECT_EQ(entry(document, 10, "V"), "I#20agree");
        EXPECT_EQ(entry(document, 10, "AS"), "I#20agree");
        EXPECT_NE(looksOf(document, 10, "I#20agree").find(drawn), std::string::npos)
            << entries << looksOf(document, 10, "I#20agree");
        EXPECT_EQ(looksOf(document, 10, "Off").find(" l "), std::string::npos) << entries;
    }
}

TEST(Filling, ChoosesOptionsByWhatTheyShowOrExport) {
    constexpr std::uint32_t combo = FieldFlags::combo;
    const struct {
        std::uint32_t flags;
        std::vector<std::string_view> options;
        const char *value, *places, *drawn;
    } rows[] = {
        {combo, {"Italy"}, "IT", "[1.0 ]", "<4974616C79> Tj"},
        {combo, {"IT"}, "IT", "[1.0 ]", "<4974616C79> Tj"},
        {combo, {}, "(null)", "(null)", "Tf\nET"},
        {combo | FieldFlags::edit, {"Oz"}, "Oz", "(null)", "<4F7A> Tj"},
        {0, {"Spain"}, "Spain", "[2.0 ]", "0.6 0.757 0.855 rg 1 63.5 98 11.5 re f\nBT"},
        {FieldFlags::multiSelect,
         {"Spain", "DE", "Spain"},
         "[DESpain ]",
         "[0.02.0 ]",
         "rg 1 86.5 98 11.5 re f\n0.6 0.757 0.855 rg 1 63.5 98 11.5 re f\nBT"},
        {combo, {"Oz"}, nullptr, "", "Field c has no option Oz\n"},
        {combo | FieldFlags::edit, {"Oz", "IT"}, nullptr, "", "Field c has no option Oz\n"},
        {0, {"IT", "DE"}, nullptr, "", "Field takes one option only: c\n"},
    };
    for (const auto& row : rows) {
        const auto document =
            openForm({{10, "<< /FT /Ch /T (c) /Kids [ 11 0 R ] /V (old) /I [ 9 ] /Ff " +
                               std::to_string(row.flags) + " /Opt 7 0 R >>"},
                      {11, "<< /Rect [ 0 0 100 100 ] /Parent 10 0 R >>"},
                      {7, "[ [ (DE) (Germany) ] [ (IT) <FEFF004900740061006C0079> ] (Spain) ]"}});
        const std::string before = write(*document);
        const auto form = Tools::openForm(*document);
        RecordingLog log;
        const Filled filled = Tools::chooseOptions(*document, *form, "c", row.options);
        ASSERT_EQ(filled == Filled::Shown, row.value != nullptr);
        if (row.value == nullptr) {
            EXPECT_EQ(Host::Error::get(), InvalidArgument);
            EXPECT_EQ(log.text(), row.drawn);
            EXPECT_EQ(write(*document), before);
            continue;
        }
        EXPECT_EQ(entry(document, 10, "V"), row.value);
        EXPECT_EQ(entry(document, 10, "I"), row.places);
        EXPECT_NE(looksOf(document, 11).find(row.drawn), std::string::npos)
            << looksOf(document, 11);
    }
}

TEST(Filling, ScrollsListsToTheirSelection) {
    const struct {
        const char *entries, *chosen, *top, *drawn; // 3 of 5 options are seen
    } rows[] = {
        {"", "a", "(null)", "<61> <62> <63> "},   {"", "c", "(null)", "<61> <62> <63> "},
        {"", "d", "1.0", "<62> <63> <64> "},      {"", "e", "2.0", "<63> <64> <65> "},
        {"/TI 3", "b", "1.0", "<62> <63> <64> "}, {"/TI 1", "b", "1.0", "<62> <63> <64> "},
        {"/TI 1", "", "1.0", "<62> <63> <64> "},  {"/TI 3", "e", "3.0", "<64> <65> "},
        {"/TI 5", "e", "2.0", "<63> <64> <65> "}, {"/TI -1", "", "0.0", "<61> <62> <63> "},
    };
    for (const auto& row : rows) {
        const auto document = openForm(
            {{10, "<< /FT /Ch /T (l) /Kids [ 11 0 R ] /Opt [ (a) (b) (c) (d) (e) ] " +
                      std::string(row.entries) + " >>"},
             {11, "<< /Parent 10 0 R /Rect [ 0 0 50 38.5 ] >>"}}); // 34.5 within, lines of 11.5
        EXPECT_EQ(fill(document, "l", row.chosen), Filled::Shown);
        EXPECT_EQ(entry(document, 10, "TI"), row.top) << row.entries << row.chosen;
        const std::string looks = looksOf(document, 11);
        std::string drawn;
        for (auto at = looks.find(" Tm <"); at != std::string::npos;
             at = looks.find(" Tm <", at + 1))
            drawn += looks.substr(at + 4, 4) + " ";
        EXPECT_EQ(drawn, row.drawn) << row.entries << row.chosen;
        EXPECT_EQ(looks.find(" rg 1 ") != std::string::npos, *row.chosen != 0) << looks;
    }
}

TEST(Filling, FindsFieldsThatInheritAndArraysElsewhere) {
    const auto document = openForm(
        {{5, "<< /Fields 20 0 R /DR << /Font << /Helv 9 0 R >> >> >>"},
         {20, "[ 10 0 R ]"},
         {10, "<< /FT /Tx /T (g) /MaxLen 3 /DA (/Helv 7 Tf) /Kids 21 0 R >>"},
         {21, "[ 11 0 R 12 0 R ]"},
         {11, "<< /T (a) /Rect [ 0 0 99 9 ] /Parent 10 0 R >>"},
         {12, "<< /T (b) /FT /Ch /Ff 2097152 /Parent 10 0 R /Kids [ 13 0 R ] /Opt [ (x) (y) ] >>"},
         {13, "<< /T (c) /Rect [ 0 0 99 99 ] /Parent 12 0 R >>"}});
    EXPECT_EQ(fill(document, "g.a", "abc"), Filled::Shown);
    EXPECT_EQ(entry(document, 11, "V"), "abc");
    EXPECT_NE(looksOf(document, 11).find("/Helv 7 Tf"), std::string::npos);
    EXPECT_EQ(fill(document, "g.a", "abcd"), Filled::Failed);
    const std::string_view both[] = {"y", "x"};
    EXPECT_EQ(Tools::chooseOptions(*document, *document->form(), "g.b.c", both), Filled::Shown);
    EXPECT_EQ(entry(document, 13, "V"), "[xy ]");
    EXPECT_EQ(entry(document, 5, "Fields"), "[10 (0) ]") << "an indirect array is brought in";
    const auto options = Tools::fieldOptions(*document, *document->form()->field(0)->child(1));
    ASSERT_EQ(options.size(), 2U);
    EXPECT_EQ(options[1].value, "y");
}

TEST(Filling, ReadsTextsHoweverTheyAreSpelled) {
    const auto document = openForm(
        {{5, "<< /Fields [ 10 0 R 11 0 R ] >>"},
         {10, "<< /FT /Ch /T (c) /V <E4> /Opt [ (\\376\\377\\000\\344\\040\\200) <FEFF00E4> <E4> "
              "(p) [ (v) (t) ] 7 <FEFFFEFF0000E4000062> <FEFFFEFF> <FEFFFEFF004100420043> ] >>"},
         {11,
          "<< /FT /Btn /T (b) /V /a#20b /AP << /N << /Off 7 0 R /a#c3#A4 7 0 R /b#e4 7 0 R /c#zz "
          "7 0 R /d#4 7 0 R >> >> >>"}});
    const auto texts = [&](std::uint64_t index) {
        const auto field = document->form()->field(index);
        std::string all;
        for (const auto& [value, text] : Tools::fieldOptions(*document, *field))
            all += text + "=" + value + " ";
        return all + Tools::fieldValues(*document, *field).front();
    };
    EXPECT_EQ(texts(0), "ä₀=ä₀ ä=ä ä=ä p=p t=v = äb=äb = ABC=ABC ä");
    EXPECT_EQ(texts(1), "aä=a#c3#A4 bä=b#e4 c#zz=c#zz d#4=d#4 a b");
}

TEST(Filling, RefusesWithoutAChange) {
    const auto document =
        openForm({{5, "<< /Fields [ 10 0 R 13 0 R 14 0 R 15 0 R ] >>"},
                  {10, "<< /T (g) /Kids [ 11 0 R 12 0 R ] >>"},
                  {11, "<< /T (t) /FT /Tx /MaxLen 2 /RV (r) /Rect [ 0 0 9 9 ] /Parent 10 0 R >>"},
                  {12, "<< /T (s) /FT /Sig /Rect [ 0 0 9 9 ] /Parent 10 0 R >>"},
                  {13, "<< /T (p) /FT /Btn /Ff 65536 /Rect [ 0 0 9 9 ] >>"},
                  {14, "<< /T (b) /FT /Btn /Rect [ 0 0 9 9 ] /AP << /N << /On 9 0 R >> >> >>"},
                  {15, "<< /T (r) /FT /Btn /Ff 32768 /Kids [ 16 0 R 17 0 R ] >>"},
                  {16, "<< /Rect [ 0 0 9 9 ] /Parent 15 0 R >>"},
                  {17, "<< /Rect [ 0 0 9 9 ] /Parent 15 0 R >>"}});
    const std::string before = write(*document);
    ASSERT_TRUE(Tools::openForm(*document));
    const struct {
        const char *path, *text;
        std::uint32_t code;
        std::string said;
    } rows[] = {
        {"", "x", InvalidArgument, ""},
        {"g.x", "x", FormNotFound, ""},
        {"g", "x", NotSupported, "Field is a group, a signature or of no kind: g\n"},
        {"g.s", "x", NotSupported, "Field is a group, a signature or of no kind: g.s\n"},
        {"g.t", "xyz", InvalidArgument, "Text is longer than 2 for field g.t\n"},
        {"g.t", "Ωβγ", InvalidArgument, "Text is longer than 2 for field g.t\n"},
        {"p", "x", ButtonHasNoValue, "A push button has no value: p\n"},
        {"b", "Yes", InvalidArgument, "Field b has no state Yes\n"},
        {"r", "On", InvalidArgument, "Field r has no state On\n"},
    };
    for (const auto& [path, text, code, said] : rows) {
        RecordingLog log;
        EXPECT_EQ(fill(document, path, text), Filled::Failed) << path;
        EXPECT_EQ(Host::Error::get(), code) << path << "=" << text;
        EXPECT_EQ(log.text(), said);
        EXPECT_EQ(write(*document), before) << path << "=" << text;
    }
    EXPECT_EQ(Tools::chooseOptions(*document, *document->form(), "g.t", {}), Filled::Failed);
    EXPECT_EQ(Host::Error::get(), NotSupported);
}

TEST(Flattening, DrawsFieldsOnTheirPages) {
    const auto document = openForm(
        {{3,
          "<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 99 99 ] /Contents 4 0 R /Annots [ 10 0 R "
          "11 0 R 12 0 R 13 0 R 14 0 R 15 0 R 16 0 R ] /Resources << /XObject << /Field1 8 0 R >> "
          ">> >>"},
         {10, "<< /Subtype /Widget /Parent 17 0 R /Rect [ 10 10 30 20 ] >>"},
         {11, "<< /Subtype /Link /Rect [ 0 0 9 9 ] >>"},
         {12,
          "<< /Subtype /Widget /FT /Btn /AS /On /AP << /N << /On 20 0 R /Off 21 0 R >> >> /Rect "
          "[ 50 50 60 90 ] >>"},
         {13, "<< /Subtype /Widget /F 2 /FT /Tx /V (hidden) /Rect [ 0 0 9 9 ] >>"},
         {14, "<< /Subtype /Widget /FT /Btn /V /Ja /Rect [ 70 70 80 80 ] >>"},
         {15, "<< /Subtype /Widget /FT /Sig /Rect [ 0 0 9 9 ] >>"},
         {16,
          "<< /Subtype /Widget /FT /Ch /V [ (b) ] /Opt [ (a) (b) ] /DA (/Helv 0 Tf) /Rect [ 0 0 "
          "30 40 ] >>"},
         {17, "<< /FT /Tx /T (t) /V <41> >>"},
         {20, "<< /Length 0 /BBox [ 1 0 11 20 ] /Matrix [ 0 1 -1 0 0 0 ] >>\nstream\n\nendstream"},
         {21, "<< >>"}});
    ASSERT_TRUE(Tools::flattenForm(*document));
    EXPECT_EQ(entry(document, 1, "AcroForm"), "(null)");
    EXPECT_EQ(entry(document, 3, "Annots"), "[11 (0) ]");
    const auto contents = Host::cast<Array>(dictionary(document, 3)->find("Contents"));
    ASSERT_TRUE(contents);
    std::string drawn;
    for (std::uint64_t index = 0; index < contents->size(); ++index) {
        const auto stream = Host::cast<Stream>(Tools::resolve(*document, contents->get(index)));
        drawn += contentsOf(Tools::decodedBytes(*document, stream)) + "|";
    }
    EXPECT_EQ(drawn,
              "q\n|0 0 9 9 re f|\nQ\n|q\n1 0 0 1 10 10 cm\n/Field2 Do\nQ\nq\n0.5 0 0 4 60 46 "
              "cm\n/Field3 Do\nQ\nq\n1 0 0 1 70 70 cm\n/Field4 Do\nQ\nq\n1 0 0 1 0 0 cm\n/Field5 "
              "Do\nQ\n|");
    EXPECT_NE(looksOf(document, 10).find("<41> Tj"), std::string::npos);
    EXPECT_NE(looksOf(document, 16).find("rg 1 10.4 28 13.8 re f"), std::string::npos)
        << looksOf(document, 16);
    EXPECT_TRUE(Tools::flattenForm(*document)) << "nothing is left to do";
    EXPECT_TRUE(open(write(*document)));
}

TEST(Flattening, GivesLooksToWhatHasNoStream) {
    const std::string box = "0 G\n1 w\n0.5 0.5 19 19 re S\n";
    const std::string mark = box + "1 0 0 rg\n3.7 9.55 m";
    const std::string caption = box + "/Tx BMC\nq\n1 1 18 18 re W n\nBT\n1 0 0 rg\n";
    const struct {
        const char *name, *entries, *state;
        std::string drawn;
        bool asked = false;
    } rows[] = {
        {"an empty look", "/FT /Btn /AS /On /AP << /N << /On << >> >> >>", "On", mark},
        {"empty looks, off", "/FT /Btn /AS /Off /AP << /N << /On << >> >> >>", "Off", box},
        {"no AS", "/FT /Btn /V /On /AP << /N << /On << >> >> >>", "On", mark},
        {"the value of another", "/FT /Btn /V /X /AP << /N << /On << >> >> >>", "Off", box},
        {"no looks at all", "/FT /Btn /V /On /AP << /N << >> >>", "On", mark},
        {"drawn by its author", "/FT /Btn /V /On /AP << /N << /On 4 0 R >> >>", "On", "0 0 9 9 re"},
        {"not drawn when off", "/FT /Btn /AP << /N << /On 4 0 R >> >>", "Off", "none"},
        {"the same, asked for", "/FT /Btn /AP << /N << /On 4 0 R >> >>", "Off", box, true},
        {"on, asked for", "/FT /Btn /V /On /AP << /N << /On 4 0 R >> >>", "On", mark, true},
        {"asked for without need", "/FT /Btn /V /On /AP << /N << /On 4 0 R /Off 4 0 R >> >>", "On",
         "0 0 9 9 re", true},
        {"a push button", "/FT /Btn /Ff 65536", "",
         caption + "/Helv 10 Tf\n1 0 0 1 8.335 6.375 Tm"},
        {"an empty one", "/FT /Btn /Ff 65536 /AP << /N << >> >>", "", caption},
        {"an icon's", "/FT /Btn /Ff 65536 /MK << /BC [ 0 ] /CA (i) /TP 1 >>", "", box},
        {"one with looks", "/FT /Btn /Ff 65536 /AP << /N 4 0 R >>", "", "0 0 9 9 re"},
        {"a signature", "/FT /Sig", "", box},
        {"nothing to draw", "/FT /Sig /MK << >>", "", "none"},
    };
    for (const auto& row : rows) {
        const auto document = openForm(
            {{3, "<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 9 9 ] /Annots [ 10 0 R ] >>"},
             {10, "<< /Subtype /Widget /Rect [ 0 0 20 20 ] /MK << /BC [ 0 ] /CA (`) >> " +
                      std::string(row.entries) + " >>"}},
            row.asked ? "<< /DA (/Helv 10 Tf 1 0 0 rg) /NeedAppearances true >>"
                      : "<< /DA (/Helv 10 Tf 1 0 0 rg) >>");
        const RecordingLog log;
        ASSERT_TRUE(Tools::flattenForm(*document)) << row.name << log.text();
        EXPECT_TRUE(looksOf(document, 10, row.state).starts_with(row.drawn))
            << row.name << ": " << looksOf(document, 10, row.state);
        const std::string state = entry(document, 10, "AS");
        EXPECT_EQ(state, *row.state == 0 ? "(null)" : row.state) << row.name;
    }
}

TEST(Flattening, LosesNoValueThatItCannotDraw) {
    const auto document =
        openForm({{3, "<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 9 9 ] /Annots [ 10 0 R ] >>"},
                  {10, "<< /Subtype /Widget /FT /Tx /T (t) /V <FEFF03A9> /Rect [ 0 0 9 9 ] >>"}});
    const std::string before = write(*document);
    const RecordingLog log;
    EXPECT_FALSE(Tools::flattenForm(*document));
    EXPECT_EQ(Host::Error::get(), NotSupported);
    EXPECT_EQ(log.text(),
              "No appearance can be made for the text of field t: its font lacks U+03A9\n");
    EXPECT_EQ(write(*document), before);
}

} // namespace
