#include "tools/fonts/text_font.h"

#include "host/windows_1252.h"
#include "support/testing.h"
#include "tools/fonts/latin_glyphs.h"

#include <map>
#include <sstream>

namespace {

using namespace Support;
using namespace std::string_view_literals;
using Libraries::Strings::Encodings::ANSI::Windows_1252;
using Tools::LatinEncoding;
using Tools::TextFont;

/// A font of these entries, which may refer to the objects from 5 on.
std::optional<TextFont> fontOf(std::string_view entries) {
    const auto document = open(
        DocumentBuilder::minimal()
            .object(5, "<< /BaseEncoding /WinAnsiEncoding /Differences 6 0 R >>")
            .object(
                6, "[ /breve 1 /A /F /uni0100 /u1F600 65 7 0 R /nowhere /eacute /.notdef 255 /B /C "
                   "80 -1 /C 99999999999 /C 99 true /c ]")
            .object(7, "/Euro")
            .object(8, "[ 500 9 0 R null 0 (600) -5 99999 ]")
            .object(9, "650")
            .object(10, "<< /Flags 4 /FontFile2 4 0 R /MissingWidth 300 /Ascent 800 /Descent 0 >>")
            .object(11, "<< /Flags 32 /MissingWidth 300 /Ascent 5000 /Descent -100 >>"));
    const auto font = Host::cast<Dictionary>(Value::parse("<< " + std::string(entries) + " >>"));
    const RecordingLog log;
    std::optional<TextFont> found = TextFont::read(*document, font);
    EXPECT_EQ(log.text(), "") << entries;
    return found;
}

/// The code and the width of each of the characters: "65=667", "-" where it has none.
std::string shown(const std::optional<TextFont>& font, std::u32string_view characters) {
    if (!font) return "no text ";
    std::ostringstream out;
    for (const char32_t character : characters) {
        const auto code = font->codeOf(character);
        if (code)
            out << unsigned{*code} << "=" << font->widthOf(*code) << " ";
        else
            out << "- ";
    }
    return out.str();
}

TEST(TextFont, SaysWhichCodeShowsACharacterAndHowWideItIs) {
    const std::string helvetica = "/Subtype /Type1 /BaseFont /Helvetica ";
    const std::string other = "/Subtype /TrueType /BaseFont /Other ";
    const std::string wide = other + "/FirstChar 65 /Widths 8 0 R ";
    const std::string symbolic = wide + "/FontDescriptor 10 0 R ";
    const std::string winAnsi = "/Encoding /WinAnsiEncoding ";
    const std::tuple<std::string, std::u32string_view, std::string_view> rows[] = {
        {helvetica, U"A' `’éž€", "65=667 169=191 32=278 193=333 39=222 - - - "},
        {helvetica + winAnsi, U"A'é€•−Ł", "65=667 39=191 233=556 128=556 149=350 - - "},
        {helvetica + "/Encoding /MacRomanEncoding", U"é€¤", "142=556 - 219=556 "},
        {helvetica + "/Encoding /PDFDocEncoding", U"€•˘−", "160=556 128=350 24=333 138=584 "},
        {helvetica + "/Encoding /MacExpertEncoding", U"A", "- "},
        {helvetica + "/Encoding 7.5 /FontDescriptor << /Flags 4 >>", U"Aé", "65=667 - "},
        {helvetica + "/FontDescriptor 10 0 R", U"A", "- "},
        {helvetica + winAnsi, U"\u00A0\u00ADμ∙ˉ", "32=278 45=333 181=556 183=278 175=333 "},
        {helvetica, U"\0\n\xFFFE\xD800\xFFFFFFFF‐Ā→"sv, "- - - - - - - - "},
        {helvetica + "/Encoding 5 0 R", U"ABCDE€é˘FĀ\U0001F600Pc",
         "1=667 255=667 - - 69=667 65=556 67=556 0=333 70=611 - - 80=667 99=500 "},
        {other +
             "/FirstChar 0 /Widths [ 1 2 3 4 5 6 7 8 9 ] /Encoding << /Differences [ 0 /uni00A0 "
             "/u0042 /u01F600 /uni00043 /u44 /uniD800 /u110000 /uni00ea /u0000045 ] >>",
         U" B\U0001F600CD\xD800\x110000êE", "0=1 1=2 2=3 - - - - - - "},
        {helvetica + "/Encoding << /Differences [ 65 /eacute ] >>", U"Aé'", "- 65=556 169=191 "},
        {helvetica + "/Encoding << /Differences 7 /BaseEncoding [ ] >>", U"A", "65=667 "},
        {wide, U"@ABCDEFGHé", "- 65=500 66=650 - - - - - - - "},
        {wide + winAnsi + "/FontDescriptor 11 0 R", U"@ACDEFGé",
         "64=300 65=500 - - - - - 233=300 "},
        {symbolic, U"@AB", "- - - "},
        {symbolic + winAnsi, U"@ABCé", "- 65=500 66=650 - - "},
        {symbolic + "/Encoding << /Differences [ 66 /A 72 /B ] >>", U"ABC", "66=650 - - "},
        {wide + winAnsi + "/BaseFont /ABCDEF+Other /FontDescriptor 11 0 R", U"@A", "- 65=500 "},
        {other + winAnsi + "/FirstChar 255 /Widths [ 9 8 7 ]", U"ÿA", "255=9 - "},
        {helvetica + "/FirstChar 65 /Widths 8 0 R", U"ABH", "65=500 66=650 - "},
        {helvetica + "/FirstChar 256 /Widths 8 0 R", U"A", "65=667 "},
        {other + "/FirstChar 256 /Widths 8 0 R", U"A", "no text "},
        {other + "/FirstChar -99999999999 /Widths 8 0 R", U"A", "no text "},
        {other + "/FirstChar /A /Widths 8 0 R", U"A", "no text "},
        {other + "/FirstChar 65 /Widths 9 0 R", U"A", "no text "},
        {other + "/FontDescriptor 11 0 R", U"A", "no text "},
        {wide + "/Subtype /Type0", U"A", "no text "},
        {wide + "/Subtype /Type3", U"A", "no text "},
        {wide + "/BaseFont /ABCDEF+ZapfDingbats " + winAnsi, U"A", "no text "},
        {helvetica + "/BaseFont 99 0 R", U"A", "no text "},
        {"/Type /Font", U"A", "no text "},
    };
    for (const auto& [font, characters, expected] : rows)
        EXPECT_EQ(shown(fontOf(font), characters), expected) << font;
}

TEST(TextFont, KnowsTheStandardFontsByManyNames) {
    const std::pair<std::string, std::string_view> rows[] = {
        // the width of a brace tells them
        {"123=334 950 -225", "Helvetica ABCDEF+Helvetica-Oblique Arial ArialMT Arial,Italic"},
        {"123=389 950 -225", "Helvetica-Bold Helvetica-BoldOblique Arial-BoldMT ArialMT,Bold"},
        {"123=480 935 -220", "Times-Roman TimesNewRoman TimesNewRomanPSMT"},
        {"123=394 935 -220", "Times-Bold TimesNewRoman,Bold TimesNewRomanPS-BoldMT"},
        {"123=400 935 -220", "Times-Italic TimesNewRomanPS-ItalicMT"},
        {"123=348 935 -220", "Times-BoldItalic TimesNewRoman,BoldItalic"},
        {"123=600 840 -220", "Courier Courier-BoldOblique CourierNewPS-ItalicMT"},
        {"no text",
         "Arial-Black ArialNarrow ABCDE+Arial ABCDEf+Arial ABC1EF+Arial ABCDEF+ Symbol ,Bold -"},
    };
    for (const auto& [expected, names] : rows) {
        std::istringstream words{std::string(names)};
        for (std::string name; words >> name;) {
            const auto font = fontOf("/Subtype /Type1 /BaseFont /" + name);
            std::ostringstream found;
            found << shown(font, U"{");
            if (font) found << font->ascent() << " " << font->descent() << " ";
            EXPECT_EQ(found.str(), expected + " ") << name;
        }
    }
    const std::tuple<std::string, double, double> reaches[] = {
        {"/Other /FontDescriptor 10 0 R", 933, -225},
        {"/Other /FontDescriptor 11 0 R", 950, -100},
        {"/Other /FontDescriptor << /Ascent 0 /Descent 0 >>", 950, -225},
        {"/Other /FontDescriptor << /Ascent 718 /CapHeight 718 /Descent -207 >>", 933, -207},
        {"/Other /FontDescriptor << /Ascent 1069 /CapHeight 714 /Descent -293 >>", 1069, -293},
        {"/Other /FontDescriptor << /Ascent 600 /Descent 250 >>", 815, -250},
        {"/Other /FontDescriptor << /Ascent 928 /CapHeight 358 /Descent -236 >>", 933, -236},
        {"/Other /FontDescriptor << /CapHeight 600 /FontBBox [ 0 0 0 0 ] >>", 815, -225},
        {"/Other /FontDescriptor << /CapHeight 1109 /FontBBox [ -9 -99 9 870 ] >>", 870, -99},
        {"/Courier /FontDescriptor 10 0 R", 933, -220},
        {"/Arial /FontDescriptor 11 0 R", 950, -225},
    };
    for (const auto& [entries, ascent, descent] : reaches) {
        const auto font = fontOf("/Subtype /Type1 /FirstChar 0 /Widths [ ] /BaseFont " + entries);
        ASSERT_TRUE(font) << entries;
        EXPECT_EQ(std::pair(font->ascent(), font->descent()), std::pair(ascent, descent))
            << entries;
    }
    const auto document = open(DocumentBuilder::minimal());
    const auto read = TextFont::read(*document, TextFont::helveticaDictionary());
    const std::u32string_view text = U" Aé€•'Ł";
    EXPECT_EQ(shown(TextFont::helvetica(), text), shown(read, text));
    EXPECT_EQ(TextFont::helvetica().descent(), read->descent());
}

TEST(LatinGlyphs, AreThoseOfTheEncodings) {
    std::array<std::map<unsigned, char32_t>, 4> encoded;
    std::array<unsigned, 6> widths = {};
    for (const Tools::LatinGlyph& glyph : Tools::latinGlyphs()) {
        EXPECT_EQ(Tools::latinGlyph(char32_t{glyph.character}), &glyph) << glyph.name;
        EXPECT_EQ(Tools::latinGlyph(glyph.name), &glyph) << glyph.name;
        for (std::size_t encoding = 0; encoding < encoded.size(); ++encoding)
            encoded[encoding][glyph.codes[encoding]] = glyph.character;
        for (std::size_t column = 0; column < widths.size(); ++column)
            widths[column] += glyph.widths[column];
    }
    EXPECT_EQ(widths, (std::array<unsigned, 6>{122917, 127536, 117485, 122338, 116662, 118954}));
    const std::array sizes = {149 + 1, 207 + 1, 216 + 1, 229}; // with 0, for what has no code
    for (std::size_t encoding = 0; encoding < encoded.size(); ++encoding)
        EXPECT_EQ(encoded[encoding].size(), sizes[encoding]) << encoding;
    const std::tuple<LatinEncoding, unsigned, std::u32string_view> rows[] = {
        {LatinEncoding::Standard, 0x7F, U"                                  ¡¢£⁄¥ƒ§¤'“«‹›ﬁﬂ –†‡· "},
        {LatinEncoding::Standard, 0xB6, U"¶•‚„”»…‰ ¿ `´ˆ˜¯˘˙¨ ˚¸ ˝˛ˇ—                "},
        {LatinEncoding::Standard, 0xE1, U"Æ ª    ŁØŒº     æ   ı  łøœß    "},
        {LatinEncoding::MacRoman, 0x7F, U" ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨ ÆØ ±  ¥µ"},
        {LatinEncoding::MacRoman, 0xB6, U"     ªº æø¿¡¬ ƒ  «»… ÀÃÕŒœ–—“”‘’÷ ÿŸ⁄¤‹›ﬁﬂ‡·‚„‰Â"},
        {LatinEncoding::MacRoman, 0xE6, U"ÊÁËÈÍÎÏÌÓÔ ÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ"},
        {LatinEncoding::PdfDoc, 0x17, U" ˘ˇˆ˙˝˛˚˜"},
        {LatinEncoding::PdfDoc, 0x7F, U" •†‡…—–ƒ⁄‹›−‰„“”‘’‚™ﬁﬂŁŒŠŸŽıłœšž €"},
    };
    for (const auto& [encoding, first, characters] : rows) {
        auto& found = encoded[static_cast<std::size_t>(encoding)];
        for (unsigned code = first; code < first + characters.size(); ++code) {
            const char32_t character = characters[code - first];
            EXPECT_EQ(found.contains(code) ? found[code] : U' ', character) << first << " " << code;
        }
    }
    for (unsigned code = 0x20; code <= 0xFF; ++code) {
        const bool twin = code == 0x7F || code == 0xA0 || code == 0xAD;
        const char32_t windows = twin ? 0 : Windows_1252::toUnicode(code);
        const char32_t standard = code == '\'' ? U'’' : code == '`' ? U'‘' : code;
        auto& [inStandard, inMacRoman, inWinAnsi, inPdfDoc] = encoded;
        EXPECT_EQ(inWinAnsi.contains(code) ? inWinAnsi[code] : 0, windows) << code;
        EXPECT_EQ(inStandard[code], code < 0x7F ? standard : inStandard[code]) << code;
        EXPECT_EQ(inMacRoman[code], code < 0x7F ? code : inMacRoman[code]) << code;
        EXPECT_EQ(inPdfDoc[code], code > 0xA0 && !twin ? code : inPdfDoc[code]) << code;
    }
}

} // namespace
