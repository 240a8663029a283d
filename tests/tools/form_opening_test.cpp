#include "tools/form_documents.h"

namespace {

using namespace Support;
using Tools::FormEditor;

TEST(Forms, HaveEveryFieldThatIsNeitherGroupNorWidget) {
    const auto document =
        formDocument({{5, "<< /Fields [ 10 0 R 13 0 R 14 0 R 17 0 R 20 0 R ] >>"},
                      {10, "<< /T (g) /FT /Tx /Ff 4096 /Kids [ 11 0 R 12 0 R ] >>"},
                      {11, "<< /T (a) /Kids [ 21 0 R ] >>"},
                      {12, "<< /T (b) /FT /Sig /Ff 1 >>"},
                      {13, "<< /T (plain) /Kids [ 22 0 R ] >>"},
                      {14, "<< /T (r) /FT 7 0 R /Kids [ 15 0 R 16 0 R ] >>"},
                      {15, "<< /Rect [ 0 0 9 9 ] >>"},
                      {16, "<< /T (both) /FT /Ch >>"},
                      {17, "<< /FT /Btn >>"},
                      {20, "<< /T (none) >>"},
                      {21, "<< /Kids [ 23 0 R ] >>"},
                      {22, "<< /FT /Tx >>"},
                      {23, "<< /FT /Tx >>"},
                      {7, "/Btn"}});
    const FormEditor form = editorOf(document);
    std::string all;
    for (const Ref<Field>& field : form) {
        all += field->fullName()->utf8() + " " +
               std::to_string(static_cast<unsigned>(form.kind(field).value())) + " " +
               std::to_string(form.flags(field).value()) + ", ";
        EXPECT_EQ(form.field(field->fullName()->utf8()).value(), field);
    }
    EXPECT_EQ(all, "g.a 3 4096, g.b 5 1, plain.0 3 0, r 2 0, r.both 4 0, 3 2 0, ");
    EXPECT_EQ(form.size(), 6U);
    EXPECT_EQ(form.field("r.0").value(), form.field("r").value()) << "its widget";
    EXPECT_EQ(form.kind(document->form()->fieldByPath(text("r.0"))).value(), Field::Kind::Button);
    EXPECT_FALSE(form.incomplete());
}

TEST(Forms, TellWhyAFieldIsMissing) {
    const auto opened = [](std::string_view kid) {
        return formDocument({{10, "<< /FT /Tx /T (g) /Kids [ 11 0 R ] >>"}, {11, kid}});
    };
    const RecordingLog log;
    EXPECT_FALSE(editorOf(opened("<< /T (a) >>")).incomplete());
    const auto document = opened("<< /T (a) /FT /No >>");
    for (const std::string_view said : {"unsupported field type", errorText(FormIncomplete)}) {
        const auto why = editorOf(document).incomplete();
        ASSERT_TRUE(why);
        EXPECT_EQ(why->code(), FormIncomplete);
        EXPECT_NE(std::string_view(why->text()).find(said), said.npos) << why->text();
    }
    const auto none = FormEditor::of(open(DocumentBuilder::minimal()));
    EXPECT_EQ(told(none), told(FormNotFound, errorText(FormNotFound)));
    EXPECT_EQ(told(FormEditor::of(nullptr)), told(NullArgument, "No document was given"));
    EXPECT_EQ(log.text(), "");
}

TEST(Forms, FindsFieldsThatInheritAndArraysElsewhere) {
    const auto document = formDocument(
        {{5, "<< /Fields 20 0 R /DR << /Font << /Helv 9 0 R >> >> >>"},
         {20, "[ 10 0 R ]"},
         {10, "<< /FT /Tx /T (g) /MaxLen 3 /DA (/Helv 7 Tf) /Kids 21 0 R >>"},
         {21, "[ 11 0 R 12 0 R ]"},
         {11, "<< /T (a) /Rect [ 0 0 99 9 ] /Parent 10 0 R >>"},
         {12, "<< /T (b) /FT /Ch /Ff 2097152 /Parent 10 0 R /Kids [ 13 0 R ] /Opt [ (x) (y) ] >>"},
         {13, "<< /T (c) /Rect [ 0 0 99 99 ] /Parent 12 0 R >>"}});
    EXPECT_EQ(fill(document, "g.a", "abc"), "shown");
    EXPECT_EQ(entry(document, 11, "V"), "abc");
    EXPECT_NE(looksOf(document, 11).find("/Helv 7 Tf"), std::string::npos);
    const std::string_view both[] = {"y", "x"};
    FormEditor form = editorOf(document);
    EXPECT_EQ(ending(form.choose("g.b.c", both)), "shown");
    EXPECT_EQ(entry(document, 13, "V"), "[xy ]");
    EXPECT_EQ(entry(document, 5, "Fields"), "[10 (0) ]") << "an indirect array is brought in";
    EXPECT_EQ(form.options(form.field("g.b.c").value()).value()[1].value, "y");
}

TEST(Forms, ReadsTextsHoweverTheyAreSpelled) {
    const auto document = formDocument(
        {{5, "<< /Fields [ 10 0 R 11 0 R ] >>"},
         {10, "<< /FT /Ch /T (c) /V <E4> /Opt [ (\\376\\377\\000\\344\\040\\200) <FEFF00E4> <E4> "
              "(p) [ (v) (t) ] 7 <FEFFFEFF0000E4000062> <FEFFFEFF> <FEFFFEFF004100420043> ] >>"},
         {11,
          "<< /FT /Btn /T (b) /V /a#20b /AP << /N << /Off 7 0 R /a#c3#A4 7 0 R /b#e4 7 0 R /c#zz "
          "7 0 R /d#4 7 0 R >> >> >>"}});
    const FormEditor form = editorOf(document);
    const auto texts = [&](std::string_view path) {
        const auto field = form.field(path).value();
        std::string all;
        const auto options = form.options(field).value();
        for (const auto& [value, text] : options)
            all.append(text).append("=").append(value).append(" ");
        return all + form.values(field).value().front();
    };
    EXPECT_EQ(texts("c"), "ä₀=ä₀ ä=ä ä=ä p=p t=v = äb=äb = ABC=ABC ä");
    EXPECT_EQ(texts("b"), "aä=a#c3#A4 bä=b#e4 c#zz=c#zz d#4=d#4 a b");
}

TEST(Forms, RefusesWithoutAChange) {
    const auto document = formDocument(
        {{5, "<< /Fields [ 10 0 R 13 0 R 14 0 R 15 0 R ] >>"},
         {10, "<< /T (g) /Kids [ 11 0 R 12 0 R ] >>"},
         {11, "<< /T (t) /FT /Tx /MaxLen 2 /RV (r) /Rect [ 0 0 9 9 ] /Parent 10 0 R >>"},
         {12, "<< /T (s) /FT /Sig /Rect [ 0 0 9 9 ] /Parent 10 0 R >>"},
         {13, "<< /T (p) /FT /Btn /Ff 65536 /Rect [ 0 0 9 9 ] >>"},
         {14, "<< /T (b) /FT /Btn /Rect [ 0 0 9 9 ] /AP << /N << /On 9 0 R >> >> >>"},
         {15, "<< /T (r) /FT /Btn /Ff 32768 /Kids [ 16 0 R 17 0 R ] >>"},
         {16, "<< /Rect [ 0 0 9 9 ] /Parent 15 0 R >>"},
         {17, "<< /Rect [ 0 0 9 9 ] /Parent 15 0 R >>"}});
    const std::string before = write(*document);
    const std::tuple<const char*, const char*, std::uint32_t, std::string> rows[] = {
        {"", "x", InvalidArgument, "The path of a field is empty"},
        {"g.x", "x", FormNotFound, "There is no field g.x"},
        {"g", "x", NotSupported,
         "field g: no value can be set for a group of fields, a signature or what is of no kind"},
        {"g.s", "x", NotSupported,
         "field g.s: no value can be set for a group of fields, a signature or what is of no kind"},
        {"g.t", "xyz", InvalidArgument, "field g.t: the text has more than 2 characters"},
        {"g.t", "Ωβγ", InvalidArgument, "field g.t: the text has more than 2 characters"},
        {"p", "x", ButtonHasNoValue, "field p: a push button has no value"},
        {"b", "Yes", InvalidArgument, "field b: it has no state Yes"},
        {"r", "On", InvalidArgument, "field r: it has no state On"},
    };
    for (const auto& [path, text, code, said] : rows) {
        EXPECT_EQ(fill(document, path, text), told(code, said)) << path;
        EXPECT_EQ(write(*document), before) << path << "=" << text;
    }
    FormEditor form = editorOf(document);
    EXPECT_EQ(told(form.choose("g.t", {})),
              told(NotSupported, "field g.t: it has no options to choose"));
    EXPECT_EQ(told(form.kind(nullptr)), told(NullArgument, "No field was given"));
    const FormEditor moved = std::move(form);
    EXPECT_EQ(told(form.fill("g.t", "x")), told(NullArgument, "No document was given"));
    EXPECT_EQ(told(form.field("g.t")), told(NullArgument, "No document was given"));
    EXPECT_TRUE(moved.field("g.t"));
}

} // namespace
