#include "tools/form_documents.h"

namespace {

using namespace Support;

std::string flatten(const Ref<Document>& document) {
    return told(quiet([&] { return Tools::flattenForm(document); }));
}

TEST(Flattening, DrawsFieldsOnTheirPages) {
    const auto document = formDocument(
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
    ASSERT_EQ(flatten(document), "");
    EXPECT_EQ(entry(document, 1, "AcroForm"), "(null)");
    EXPECT_EQ(entry(document, 3, "Annots"), "[11 (0) ]");
    EXPECT_EQ(drawn(document, 0),
              "q\n|0 0 9 9 re f|\nQ\n|q\n1 0 0 1 10 10 cm\n/Field2 Do\nQ\nq\n0.5 0 0 4 60 46 "
              "cm\n/Field3 Do\nQ\nq\n1 0 0 1 70 70 cm\n/Field4 Do\nQ\nq\n1 0 0 1 0 0 cm\n/Field5 "
              "Do\nQ\n");
    EXPECT_NE(looksOf(document, 10).find("<41> Tj"), std::string::npos);
    EXPECT_NE(looksOf(document, 16).find("rg 1 10.4 28 13.8 re f"), std::string::npos)
        << looksOf(document, 16);
    EXPECT_EQ(flatten(document), "") << "nothing is left to do";
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
        {"push button", "/FT /Btn /Ff 65536", "", caption + "/Helv 10 Tf\n1 0 0 1 8.335 6.375 Tm"},
        {"an empty one", "/FT /Btn /Ff 65536 /AP << /N << >> >>", "", caption},
        {"an icon's", "/FT /Btn /Ff 65536 /MK << /BC [ 0 ] /CA (i) /TP 1 >>", "", box},
        {"one with looks", "/FT /Btn /Ff 65536 /AP << /N 4 0 R >>", "", "0 0 9 9 re"},
        {"a signature", "/FT /Sig", "", box},
        {"nothing to draw", "/FT /Sig /MK << >>", "", "none"},
    };
    for (const auto& row : rows) {
        const auto document = formDocument(
            {{3, "<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 9 9 ] /Annots [ 10 0 R ] >>"},
             {10, "<< /Subtype /Widget /Rect [ 0 0 20 20 ] /MK << /BC [ 0 ] /CA (`) >> " +
                      std::string(row.entries) + " >>"}},
            row.asked ? "<< /DA (/Helv 10 Tf 1 0 0 rg) /NeedAppearances true >>"
                      : "<< /DA (/Helv 10 Tf 1 0 0 rg) >>");
        ASSERT_EQ(flatten(document), "") << row.name;
        EXPECT_TRUE(looksOf(document, 10, row.state).starts_with(row.drawn))
            << row.name << ": " << looksOf(document, 10, row.state);
        const std::string state = entry(document, 10, "AS");
        EXPECT_EQ(state, *row.state == 0 ? "(null)" : row.state) << row.name;
    }
}

TEST(Flattening, LosesNoValueThatItCannotDraw) {
    const auto document = formDocument(
        {{3, "<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 9 9 ] /Annots [ 10 0 R ] >>"},
         {10, "<< /Subtype /Widget /Parent 11 0 R /Rect [ 0 0 9 9 ] >>"},
         {11, "<< /FT /Tx /T (t) /V <FEFF03A9> /Parent 12 0 R >>"},
         {12, "<< /T (g) >>"}});
    const std::string before = write(*document);
    EXPECT_EQ(flatten(document),
              told(NotSupported,
                   "field g.t: no appearance can be made for its text: its font lacks U+03A9"));
    EXPECT_EQ(write(*document), before);
}

} // namespace
