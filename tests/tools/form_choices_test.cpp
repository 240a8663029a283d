#include "tools/form_documents.h"

namespace {

using namespace Support;
using Tools::FormEditor;

TEST(Filling, ChoosesOptionsByWhatTheyShowOrExport) {
    constexpr std::uint32_t combo = FieldFlags::combo, multi = FieldFlags::multiSelect;
    const std::vector<std::string_view> several = {"Spain", "DE", "Spain"};
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
        {multi, several, "[DESpain ]", "[0.02.0 ]",
         "rg 1 86.5 98 11.5 re f\n0.6 0.757 0.855 rg 1 63.5 98 11.5 re f\nBT"},
        {combo, {"Oz"}, nullptr, "", "field c: it has no option Oz"},
        {combo | FieldFlags::edit, {"Oz", "IT"}, nullptr, "", "field c: it has no option Oz"},
        {0, {"IT", "DE"}, nullptr, "", "field c: it takes one option only"},
    };
    for (const auto& row : rows) {
        const auto document = formDocument(
            {{10, "<< /FT /Ch /T (c) /Kids [ 11 0 R ] /V (old) /I [ 9 ] /Ff " +
                      std::to_string(row.flags) + " /Opt 7 0 R >>"},
             {11, "<< /Rect [ 0 0 100 100 ] /Parent 10 0 R >>"},
             {7, "[ [ (DE) (Germany) ] [ (IT) <FEFF004900740061006C0079> ] (Spain) ]"}});
        const std::string before = write(*document);
        FormEditor form = editorOf(document);
        const auto filled = quiet([&] { return form.choose("c", row.options); });
        if (row.value == nullptr) {
            EXPECT_EQ(ending(filled), told(InvalidArgument, row.drawn));
            EXPECT_EQ(write(*document), before);
            continue;
        }
        EXPECT_EQ(ending(filled), "shown");
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
        const auto document = formDocument(
            {{10, "<< /FT /Ch /T (l) /Kids [ 11 0 R ] /Opt [ (a) (b) (c) (d) (e) ] " +
                      std::string(row.entries) + " >>"},
             {11, "<< /Parent 10 0 R /Rect [ 0 0 50 38.5 ] >>"}}); // 34.5 within, lines of 11.5
        EXPECT_EQ(fill(document, "l", row.chosen), "shown");
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

} // namespace
