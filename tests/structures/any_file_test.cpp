// Files of structures that the exact rules do not read, sound and damaged.

#include "generator/generated_file.h"
#include "import/modern_file.h"
#include "support/sliced_stripe.h"
#include "support/testing.h"

#include <pdf/tools/losses.h>

#include <algorithm>
#include <functional>
#include <iterator>

namespace {

using namespace Support;

Ref<Document> openAny(const std::string& file) {
    return Document::create(stripeOf(file), Structure::Any);
}

/// What the objects from number `first` on are written as, each behind a bar.
std::string objectsOf(const std::string& file, std::uint32_t first) {
    const auto document = openAny(file);
    if (!document) return failure(Host::Error::get());
    const std::string written = write(*document);
    std::string all;
    for (std::uint32_t id = first;; ++id) {
        const std::string head = "\n" + std::to_string(id) + " 0 obj\n";
        const std::size_t begin = written.find(head);
        if (begin == std::string::npos) return all;
        const std::size_t end = written.find("\nendobj\n", begin);
        all += "|" + written.substr(begin + head.size(), end - begin - head.size());
    }
}

/// One object stream, 4, with the objects 9, 10, ...; `data` begins with their offsets.
std::string packedFile(const std::string& data, std::size_t first, std::uint32_t count = 1,
                       const std::string& more = "") {
    std::vector<std::uint32_t> held;
    for (std::uint32_t index = 0; index < count; ++index)
        held.push_back(9 + index);
    return ModernFile()
        .objectStream(4, held,
                      "/First " + std::to_string(first) + " /Length " +
                          std::to_string(data.size()) + " " + more,
                      data)
        .bytes();
}

std::string replaced(std::string text, const std::string& what, const std::string& with) {
    const std::size_t place = text.find(what);
    EXPECT_NE(place, std::string::npos) << what;
    return text.replace(place, what.size(), with);
}

/// What stands behind "startxref".
std::string startOf(const std::string& file) {
    const std::size_t place = file.rfind("startxref\n") + 10;
    return file.substr(place, file.find('\n', place) - place);
}

/// A further revision of a file, with a table of these lines and a trailer of these entries.
std::string revised(std::string file, const std::string& objects, const std::string& lines,
                    const std::string& trailer = "") {
    const std::string prev = startOf(file);
    file += objects;
    const std::string start = std::to_string(file.size());
    return file + "xref\n" + lines + "trailer\n<< /Size 20 /Root 1 0 R /Prev " + prev + trailer +
           " >>\nstartxref\n" + start + "\n%%EOF\n";
}

struct Sound {
    std::string name, file;
    std::string objects; ///< from number 4 or 5 on
    std::uint32_t first = 5;
};

std::vector<Sound> soundFiles() {
    const std::string plain = withFive("<< /A 1 >>").bytes();
    const std::string end = padded(plain.size(), 10);
    return {
        {"object stream", packedFile("9 0 10 2 5 [9 0 R]", 9, 2), "|5|[ 4 0 R ]", 4},
        {"object stream that is not compressed", packedFile("9 0 (a\\\\b)", 4), "|<615C62>", 4},
        {"what it stores is not kept", packedFile("9 0 [4 0 R 11 0 R 9 1 R]", 4),
         "|[ null null null ]", 4},
        {"bytes before the header", "GARBAGE\n" + plain, "|<< /A 1 >>"},
        {"a large value", withFive("(" + std::string(100'000, 'x') + ")").bytes(),
         "|(" + std::string(100'000, 'x') + ")"},
        {"headers that are none before it", "%PDF-x %PDF-1.x %PDF-1 \n" + plain, "|<< /A 1 >>"},
        {"an object stream's length is an object",
         ModernFile()
             .object(5, "7")
             .objectStream(4, {9}, "/First 4 /Length 5 0 R", "9 0 (a)")
             .bytes(),
         "|7|(a)", 4},
        {"an object stream that nobody uses, by a type behind a reference",
         ModernFile()
             .object(5, "/ObjStm")
             .object(6, "<< /Type 5 0 R /Length 0 >>\nstream\n\nendstream")
             .object(9, "[5 0 R 6 0 R]")
             .bytes(),
         "|/ObjStm|[ 4 0 R null ]", 4},
        {"one line", replaced(plain, "5 0 obj\n<< /A 1 >>\nendobj", "5 0 obj<</A 1>>    endobj"),
         "|<< /A 1 >>"},
        {"a comment for the end", replaced(plain, ">>\nendobj", ">>%endobj"), "|<< /A 1 >>"},
        {"white space in the table",
         replaced(replaced(plain, "0000000000 65535 f \n", "0 65535\tf\f"), "xref\n", "xref \r\n"),
         "|<< /A 1 >>"},
        {"a number without an object", replaced(plain, "/Root", "/X 77 0 R /Root"), "|<< /A 1 >>"},
        {"null as an object", replaced(withFive("null/[5 0 R] ").bytes(), "null/[", "null%["), ""},
        {"changed", revised(plain, "5 0 obj\n(new)\nendobj\n", "5 1\n" + end + " 00000 n \n"),
         "|(new)"},
        {"freed", revised(plain, "", "0 1\n0000000005 65535 f \n5 1\n0000000000 00001 f \n"), ""},
        {"taken again",
         revised(plain, "5 1 obj\n[5 0 R 5 1 R]\nendobj\n", "5 1\n" + end + " 00001 n \n"),
         "|[ null 5 0 R ]"},
        {"a gap", revised(plain, "9 0 obj\n[9 0 R 5 0 R]\nendobj\n", "9 1\n" + end + " 00000 n \n"),
         "|<< /A 1 >>|[ 6 0 R 5 0 R ]"},
        {"length behind a reference",
         DocumentBuilder::minimal()
             .object(5, "<< /Length 6 0 R /Filter 7 0 R >>\nstream\r\nabc\nendstream")
             .object(6, "+3")
             .object(7, "[ /A /B ]")
             .bytes(),
         "|<< /Filter [ /A /B ] /Length 6 0 R >>\nstream\nabc\nendstream|+3|[ /A /B ]"},
    };
}

TEST(AnyFile, OpensWhatIsSound) {
    for (const Sound& row : soundFiles()) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(objectsOf(row.file, row.first), row.objects);
    }
}

struct Damaged {
    std::string name, file, message;
    std::uint32_t code = FileDamaged;
};

/// The smallest file, where Kids are `kids`, with these further objects from number 5 on.
Damaged tooMuch(const char* name, const std::string& kids, const std::vector<std::string>& objects,
                const std::string& message) {
    auto builder = DocumentBuilder::minimal();
    builder.object(2, "<< /Type /Pages /Count 1 /Kids [" + kids + "] >>");
    std::uint32_t number = 5;
    for (const std::string& object : objects)
        builder.object(number++, object);
    return {name, builder.bytes(), message, LimitExceeded};
}

/// What a file lists or shares again and again counts each time.
std::vector<Damaged> excessiveFiles() {
    const std::string listed = "File: the page tree, or filters, are listed too often";
    const auto sharing = [](const std::string& object, const std::string& shared) {
        std::vector<std::string> objects(1000, object);
        objects.front() = shared;
        return objects;
    };
    std::string nodes;
    for (int number = 6; number < 1005; ++number)
        nodes += std::to_string(number) + " 0 R ";
    const std::string stream = " >>\nstream\n\nendstream";
    return {
        tooMuch("nodes that share their kids", nodes,
                sharing("<< /Type /Pages /Kids 5 0 R >>", "[" + repeated("3 0 R ", 1000) + "]"),
                listed),
        tooMuch("a long page", repeated("5 0 R ", 5000),
                {"<< /Type /Page /T [" + repeated("0 ", 5000) + "] >>"}, listed),
        tooMuch("filters", "3 0 R",
                sharing("<< /Length 0 /Filter 5 0 R" + stream, "[" + repeated("/A ", 2000) + "]"),
                listed),
    };
}

std::vector<Damaged> damagedFiles() {
    const std::string plain = withFive("<< /A 1 >>").bytes();
    const std::string modern = packedFile("9 0 10 2 5 (abc)", 9, 2);
    const std::string flate = "/Filter /FlateDecode ";
    const std::string noLength = "Object 5h (5): the Length of this stream is no whole number";
    const std::string otherObject = "Object 5h (5): another object stands here";
    const std::string badKid = "File: a kid of the page tree is missing, or its own ancestor";
    const std::string notInflated = "Object 4h (4): the data of this stream cannot be inflated";
    return {
        {"another format", "\x89PNG", "File: no header stands in the first 1024 bytes", NotPdf},
        {"cut off", plain.substr(0, plain.size() - 30),
         "File: \"startxref\" was expected in the last 1054 bytes"},
        {"a revision that is cut off", plain + "5 0 obj\n(new)\nendobj\n",
         "File: behind the last \"startxref\" stands an object"},
        {"a ring",
         revised(plain, "", "0 1\n0000000000 65535 f \n", " /Prev " + std::to_string(plain.size())),
         "File: the sections make a ring"},
        {"encrypted", replaced(plain, "/Root", "/Encrypt 5 0 R /Root"),
         "File: the trailer has an entry Encrypt", FileEncrypted},
        {"a wrong offset", replaced(plain, "startxref\n" + startOf(plain), "startxref\n9"),
         "File: a cross-reference stream was expected"},
        {"an offset out of the file",
         replaced(plain, "startxref\n" + startOf(plain), "startxref\n99999"),
         "File: an offset leads out of the file"},
        {"another object's offset",
         revised(plain, "", "5 1\n" + padded(plain.find("4 0 obj"), 10) + " 00000 n \n"),
         otherObject},
        {"another generation",
         revised(plain, "", "5 1\n" + padded(plain.find("5 0 obj"), 10) + " 00001 n \n"),
         otherObject},
        {"an unknown kind of entry",
         revised(plain, "", "5 1\n" + padded(plain.find("5 0 obj"), 10) + " 00000 x \n"),
         "File: \"n\" or \"f\" was expected"},
        {"a subsection that ends early", revised(plain, "", "0 2\n0000000000 65535 f \n"),
         "File: the offset of an entry was expected"},
        {"a value with something behind it", withFive("4 0 R").bytes(),
         "Object 5h (5): \"endobj\" was expected"},
        {"a stream that ends early", withFive("<< /Length 2 >>\nstream\nabc\nendstream").bytes(),
         "Object 5h (5): the stream does not end where its length says"},
        {"a stream that ends with the file",
         withFive("<< /Length 999 >>\nstream\nabc\nendstream").bytes(),
         "Object 5h (5): the stream is longer than the file"},
        {"a stream without a length", withFive("<< /L 3 >>\nstream\nabc\nendstream").bytes(),
         noLength},
        {"a named length", withFive("<< /Length 1 0 R >>\nstream\nabc\nendstream").bytes(),
         noLength},
        {"a real length", withFive("<< /Length 3.0 >>\nstream\nabc\nendstream").bytes(), noLength},
        {"CR behind \"stream\"", withFive("<< /Length 3 >>\nstream\rabc\nendstream").bytes(),
         "Object 5h (5): no line ending stands behind \"stream\""},
        {"no catalog", replaced(plain, "/Root 1", "/Root 4"), "File: the document has no catalog"},
        {"no page tree", replaced(plain, "/Kids", "/Kidz"), "File: the document has no page tree"},
        {"a kid that is missing", replaced(plain, "/Kids [3", "/Kids [9"), badKid},
        {"a kid that is an ancestor", replaced(plain, "/Kids [3", "/Kids [2"), badKid},

        {"a value in an object stream", packedFile("9 0 (abc", 4),
         "Object 9h (9) in object stream 4h (4): this string does not end"},
        {"objects that overlap", packedFile("9 0 10 2 (abc) ", 9, 2),
         "Object 9h (9) in object stream 4h (4): this object reaches into the next one"},
        {"offsets that descend", packedFile("9 2 10 0 5 6 ", 9, 2),
         "Object 4h (4): the offsets of an object stream do not ascend"},
        {"offsets without an end", packedFile("9 0 10 2 5 6 ", 3, 2),
         "Object 4h (4): First leads into the offsets"},
        {"another number in an object stream", packedFile("8 0 5", 4),
         "Object 9h (9) in object stream 4h (4): the object stream does not have this object where "
         "its entry says"},
        {"an object stream that is another object",
         replaced(modern, "4 0 obj\n<< /Type /ObjStm", "5 0 obj\n<< /Type /ObjStm"),
         "Object 4h (4): another object stands here"},
        {"an object stream whose length is nowhere",
         ModernFile().objectStream(4, {9}, "/First 4 /Length 77 0 R", "9 0 5").bytes(),
         "Object 4h (4): the Length of this stream is no object of the file"},
        {"a place out of range",
         ModernFile().bytes(
             "/W [ 1 3 5 ] /Index [ 9 1 ]",
             [](const std::string&) { return std::string("\2\0\0\0\1\0\0\0\0", 9); }),
         "File: the place of an object is out of range"},
        {"more entries than bytes",
         ModernFile().bytes("/W [ 1 0 0 ] /Index [ 0 90000 ] /Filter /FlateDecode",
                            [](const std::string&) { return deflated(std::string(90000, '\0')); }),
         "File: there are more entries than bytes", LimitExceeded},
        {"parameters that are none", packedFile("9 0 5", 4, 1, flate + "/DecodeParms /X"),
         "Object 4h (4): the parameters of this stream's filter are not read", FilterUnsupported},
        {"a row of an unknown filter",
         packedFile(deflated("\t9 0 5"), 4, 1,
                    flate + "/DecodeParms << /Predictor 12 /Columns 5 >>"),
         "Object 4h (4): a row of this stream has an unknown filter"},
        {"deflated data that ends early", packedFile(deflated("9 0 5").substr(0, 8), 4, 1, flate),
         "Object 4h (4): the data of this stream ends too early"},
        {"an object stream of another type", replaced(modern, "/ObjStm", "/ObjSTM"),
         "Object 4h (4): an object stream was expected"},
        {"another filter", packedFile("9 0 5", 4, 1, "/Filter /LZWDecode"),
         "Object 4h (4): the filter of this stream is not read", FilterUnsupported},
        {"data that is not deflated", packedFile("9 0 5", 4, 1, flate), notInflated},
        {"a predictor that there is not",
         packedFile("9 0 5", 4, 1, flate + "/DecodeParms << /Predictor 9 >>"), notInflated},
    };
}

TEST(AnyFile, RefusesWhatIsDamaged) {
    std::vector<Damaged> rows = damagedFiles();
    std::ranges::move(excessiveFiles(), std::back_inserter(rows));
    for (const Damaged& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string outcome = outcomeOf([&] { return openAny(row.file) != nullptr; });
        EXPECT_EQ(outcome.substr(0, outcome.find("; offset: ")), failure(row.code, row.message));
    }
}

/// Everything a document holds, streams with their data.
bool areEqual(Document& left, Document& right) {
    return std::ranges::equal(left.getObjects(), right.getObjects(), [&](auto& one, auto& other) {
        const auto stream = castTo<Stream>(one->value()), same = castTo<Stream>(other->value());
        if (one->id() != other->id()) return false;
        if (!stream || !same) return one->value()->equal(other->value());
        return stream->dict()->equal(same->dict()) &&
               contentsOf(left.readStreamData(stream, false)) ==
                   contentsOf(right.readStreamData(same, false));
    });
}

TEST(AnyFile, WritesWhatTheExactRulesRead) {
    for (std::uint32_t seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE(seed);
        const std::string file = Generator::generatedFile(seed);
        const auto document = openAny(file);
        ASSERT_TRUE(document);
        const std::string written = write(*document);
        const auto classic = Support::open(written);
        ASSERT_TRUE(classic);
        EXPECT_TRUE(areEqual(*document, *classic));
        EXPECT_FALSE(document->changed());
        const auto again = openAny(written);
        ASSERT_TRUE(again);
        EXPECT_EQ(write(*again), written);
    }
}

TEST(AnyFile, ReadsThroughAnyWindow) {
    for (std::uint32_t seed = 1; seed <= 20; ++seed) {
        const std::string file = Generator::generatedFile(seed);
        const std::string written = write(*openAny(file));
        for (const std::uint64_t slice : {0U, 1U, 7U, 64U, 1000U}) {
            SCOPED_TRACE(std::to_string(seed) + " by " + std::to_string(slice));
            const auto document =
                Document::create(Host::makeOrThrow<SlicedStripe>(file, slice), Structure::Any);
            ASSERT_TRUE(document);
            EXPECT_EQ(write(*document), written);
        }
    }
}

TEST(AnyFile, TakesEveryFaultOfItsSource) {
    const std::string file = Generator::generatedFile(3);
    for (const auto call : {FailingStripe::Call::Read, FailingStripe::Call::Seek}) {
        const auto source = Host::makeOrThrow<FailingStripe>(stripeOf(file));
        ASSERT_TRUE(Document::create(source, Structure::Any));
        const std::uint64_t calls = source->calls(call);
        for (std::uint64_t number = 1; number <= calls; number += 1 + calls / 400) {
            SCOPED_TRACE(number);
            source->failAt(call, number);
            expectFailure(Document::create(source, Structure::Any), SourceNotRead);
        }
    }
}

TEST(AnyFile, TellsRevisionsOnlyAsInformation) {
    const std::string plain = withFive("<< /A 1.05 /A 2 >>").bytes();
    const auto document = openAny(revised(plain, "", "0 1\n0000000000 65535 f \n"));
    ASSERT_TRUE(document);
    const auto found = Tools::losses(document).value();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].kind, Loss::EqualKeys);
    EXPECT_EQ(found[1].kind, Loss::Superseded);
    EXPECT_EQ(found[1].count, 1U);
    EXPECT_FALSE(Tools::isGrave(Loss::Superseded));
}

} // namespace
