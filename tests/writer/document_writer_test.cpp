#include "support/testing.h"
#include "values/sub_stripe.h"
#include "writer/serializer.h"
#include "writer/writer.h"

#include <regex>

namespace {

using namespace Support;
using namespace std::literals;
using Call = FailingStripe::Call;
using Fault = FailingStripe::Fault;
using Data = Ref<Interfaces::Stripe>;

DocumentState document(std::string_view lineEnding = "\n") {
    DocumentState state;
    state.source = Host::MemoryStripe::create();
    state.lineEnding = lineEnding;
    state.version = PdfVersion::V1_4;
    state.trailer = dictionary({{"Size", number(99)}, {"Z", null()}});
    return state;
}

void add(DocumentState& state, std::uint32_t id, AnyValue value, std::uint16_t generation = 0) {
    state.objects.append(id, generation, std::move(value));
}

std::string replaced(const std::string& text, const std::string& from, const char* to) {
    return std::regex_replace(text, std::regex(from), to);
}

/// Writes the document into `target` and gives the code, or `NoError`.
std::uint32_t write(DocumentState& state, Interfaces::Stripe& target) {
    Host::Error::set(Host::NoError);
    const bool written = writeDocument(state, target);
    EXPECT_EQ(written, Host::Error::get() == Host::NoError);
    return Host::Error::get();
}

TEST(DocumentWriter, WritesEveryByteAsAgreed) {
    const std::array<const char*, 6> rows[] = {
        // line ending, what stands before it in the table, offsets
        {"\n", " ", "0000000009", "0000000030", "0000000050", "70"},
        {"\r\n", "", "0000000010", "0000000034", "0000000057", "80"},
        {"", " ", "0000000008", "0000000026", "0000000043", "60"},
    };
    for (const auto& row : rows) {
        DocumentState state = document(row[0]);
        state.xrefFirstId = 6;
        add(state, 1, array({number(1)}));
        add(state, 2, null());
        add(state, 5, boolean(true), 7);
        std::string expected = "%PDF-1.4\n1 0 obj\n[ 1 ]\nendobj\n2 0 obj\nnull\nendobj\n"
                               "5 7 obj\ntrue\nendobj\nxref\n6 4\n0000000000 65535 f@1\n"
                               "@2 00000 n@1\n@3 00000 n@1\n@4 00007 n@1\n"
                               "trailer\n<< /Size 4 /Z null >>\nstartxref\n@5\n%%EOF\n";
        for (std::size_t mark = 1; mark < row.size(); ++mark)
            expected = replaced(expected, "@" + std::to_string(mark), row[mark]);
        for (int repeat = 0; repeat < 2; ++repeat) {
            const auto target = Host::MemoryStripe::create();
            EXPECT_EQ(write(state, *target), Host::NoError);
            EXPECT_EQ(contentsOf(target), replaced(expected, "\n", row[0])) << repeat;
        }
        EXPECT_EQ(textOf(state.trailer), "<< Size -> 4.0 Z -> Null >>");
    }
}

TEST(DocumentWriter, NamesTheVersion) {
    const std::string names[] = {"",    "1.0", "1.1", "1.2", "1.3", "1.4", "1.5", "1.6",
                                 "1.7", "",    "",    "",    "",    "2.0", ""};
    for (std::uint32_t version = 0; version < std::size(names); ++version) {
        DocumentState state = document();
        state.version = static_cast<PdfVersion>(version);
        const auto target = Host::MemoryStripe::create();
        const RecordingLog log;
        const bool known = !names[version].empty();
        EXPECT_EQ(write(state, *target), known ? Host::NoError : std::uint32_t{VersionNotWritten})
            << version;
        EXPECT_EQ(contentsOf(target).substr(0, 9), known ? "%PDF-" + names[version] + "\n" : "")
            << version;
        if (version != 9) continue;
        EXPECT_EQ(log.text(), "PDF version can not be converted to string 9h (9)\n"
                              "Failed to convert version to string: 9h (9)\n"
                              "Failed to write PDF version\n");
        EXPECT_EQ(log.entries()[0].level, Host::LogLevel::Warning);
    }
}

TEST(DocumentWriter, StopsAtWhatCannotBeWritten) {
    const auto bad = dictionary({{"A", foreign(9)}});
    const std::string badLog = "Failed to cast value to Null\n"
                               "Failed to convert value of dictionary key to buffer: A\n"
                               "Failed to convert value to buffer\n";
    const std::string object = "Failed to write object 2 (0)\n";
    const std::string before = "%PDF-1.4\n1 0 obj\nnull\nendobj\n";
    const std::tuple<AnyValue, Ref<Dictionary>, std::uint32_t, std::string, std::string> rows[] = {
        {nullptr, dictionary({}), ObjectNotWritten, before,
         "Object has no value: 2 (0)\n" + object},
        {bad, dictionary({}), ObjectNotWritten, before + "2 0 obj\n",
         badLog + "Failed to write value of object 2 (0)\n" + object},
        {null(), nullptr, TrailerNotWritten, "trailer\n",
         "Failed to update trailer dictionary Size entry\nFailed to write trailer\n"},
        {null(), bad, TrailerNotWritten, "trailer\n",
         badLog + "Failed to write trailer dictionary\nFailed to write trailer\n"},
    };
    for (const auto& [value, trailer, code, end, message] : rows) {
        DocumentState state = document();
        add(state, 1, null());
        add(state, 2, value);
        state.trailer = trailer;
        const auto target = Host::MemoryStripe::create();
        const RecordingLog log;
        EXPECT_EQ(write(state, *target), code) << message;
        EXPECT_EQ(log.text(), message);
        EXPECT_TRUE(contentsOf(target).ends_with(end)) << message << contentsOf(target);
    }
}

TEST(DocumentWriter, TellsHowFarAFailingTargetCame) {
    DocumentState state = document();
    for (const std::uint32_t id : {1U, 2U}) {
        const Ref<Interfaces::Stripe> data = Host::MemoryStripe::create(noise(66000, id));
        add(state, id, makeOrThrow<StreamObj>(dictionary({}), data));
    }
    for (std::uint32_t id = 3; id < 4'000; ++id) // whose table is larger than a block
        add(state, id, null());
    const auto target = makeOrThrow<FailingStripe>(Host::MemoryStripe::create());
    ASSERT_EQ(write(state, *target), Host::NoError);
    const std::string whole = contentsOf(target);
    const std::uint64_t xref = whole.rfind("\nxref");
    const std::uint64_t block = 12 + 3'277 * 20; // up to the line that fills it
    using Outcome = std::pair<std::uint32_t, std::string_view>;
    const Outcome header{VersionNotWritten, "length 8h (8)\nFailed to write PDF version\n"};
    const Outcome object{ObjectNotWritten, " (0)\n"};
    const Outcome table{TrailerNotWritten, "Failed to write xref line\nFailed to write trailer\n"};
    const Outcome trailer{TrailerNotWritten,
                          "length 5h (5)\nFailed to write EOF marker\nFailed to write trailer\n"};
    for (std::uint64_t call = 1; call <= target->calls(Call::Write); ++call) {
        for (const Fault fault : {Fault::Failed, Fault::Short}) {
            const auto written = Host::MemoryStripe::create();
            const auto broken = makeOrThrow<FailingStripe>(written);
            broken->failAt(Call::Write, call, fault);
            const RecordingLog log;
            const std::uint32_t code = write(state, *broken);
            const std::uint64_t size = written->size();
            const auto& [expected, end] = size < 9              ? header
                                          : size <= xref        ? object
                                          : size < xref + block ? table
                                                                : trailer;
            EXPECT_EQ(code, expected) << call;
            EXPECT_TRUE(log.text().ends_with(end)) << call << log.text();
            EXPECT_EQ(log.text().find("retrieve"), std::string::npos) << "not the data's fault";
            EXPECT_TRUE(whole.starts_with(contentsOf(written))) << call;
        }
    }
}

TEST(DocumentWriter, RefusesWhatItsDataLiesIn) {
    const std::string file =
        DocumentBuilder::minimal().stream(5, "", std::string(300'000, 'd')).bytes();
    const auto source = stripeOf(file);
    const auto document = Document::create(source);
    const auto held = Host::MemoryStripe::create(noise(300'000));
    const RecordingLog log;
    for (const auto& target : {source, held}) {
        dynamic_cast<StreamObj&>(*streamOf(*document, 4)).strmData(held);
        const std::string before = contentsOf(target);
        expectFailure(document->write(target), InvalidArgument);
        EXPECT_TRUE(contentsOf(target) == before);
    }
    const std::string line = "A document cannot be written into what its data lies in\n";
    EXPECT_EQ(log.text(), line + line);
    // Behind an adapter nobody can tell; what grows meanwhile is not read where it was.
    source->position(file.size());
    EXPECT_TRUE(document->write(Adapters::Stripe::ElementSize::create(source, 4)));
}

/// The bytes that a value adds to an output; where it fails, the code and the messages too.
std::string serialize(const AnyValue& value, std::string_view lineEnding = "\n") {
    const auto target = Host::MemoryStripe::create();
    const RecordingLog log;
    Output output(*target);
    output.append("kept ");
    const DocumentState state = document(lineEnding);
    Serializer serializer(output, state);
    Host::Error::set(Host::NoError);
    std::string failure;
    if (!serializer.write(value)) failure = std::to_string(Host::Error::get()) + " " + log.text();
    EXPECT_TRUE(output.flush());
    EXPECT_EQ(target->size(), output.offset());
    EXPECT_TRUE(contentsOf(target).starts_with("kept "));
    return contentsOf(target).substr(5) + failure;
}

AnyValue literal(std::string_view utf8) {
    return makeOrThrow<StringObj>(text(utf8));
}
AnyValue stream(Data data, Ref<Dictionary> dict = dictionary({})) {
    return makeOrThrow<StreamObj>(std::move(dict), std::move(data));
}
Data view(std::string_view bytes, std::uint64_t length) {
    return makeOrThrow<SubStripe>(stripeOf(bytes), 0U, length, Host::Mon::create());
}

TEST(Serializer, WritesOneCanonicalForm) {
    const std::pair<AnyValue, std::string_view> rows[] = {
        {array({null(), boolean(true), array({}), dictionary({})}), "[ null true [ ] << >> ]"},
        {array({number(0), number(-2, 50), reference(7, 65535)}), "[ 0 -2.50 7 65535 R ]"},
        {number(INT64_MIN, UINT64_MAX), "-9223372036854775808.18446744073709551615"},
        {literal("a(b)c\\\r\b\t\n\f\0\x01\x0B\x1F ~"s),
         "(a\\(b\\)c\\\\\\r\\b\\t\\n\\f\0\x01\x0B\x1F ~)"sv},
        {literal("\x7F\u0080\u00E9\u00FF"), R"((\177\200\351\377))"},
        {literal("\u20AC(\u2122\u0178\u017D"), R"((\200\(\231\237\216))"},
        {array({byteString({}), byteString({0x00, 0xFF, 0x4A})}), "[ <> <00FF4A> ]"},
        {String::create(text("\u00E9\U0001F600")), "<FEFF00E9D83DDE00>"},
        {dictionary({{"Type", boolean(false)}, {"Le n", null()}, {"A", name("A B#20(\u00E9")}}),
         "<< /A /A B#20(\xE9 /Le n null /Type false >>"},
    };
    for (const auto& [value, result] : rows)
        EXPECT_EQ(serialize(value), result);
}

TEST(Serializer, ReportsWhatItCannotWrite) {
    const auto misplaced = makeOrThrow<FailingStripe>(stripeOf("data"));
    misplaced->failAt(FailingStripe::Call::Seek, 1, FailingStripe::Fault::Misplaced);
    const std::string character = "Failed to convert character: 4E2Dh (20013)\n"
                                  "Failed to convert string to PDF compatible string\n";
    const std::pair<AnyValue, std::string> rows[] = {
        {nullptr, "33861 "},
        {array({null(), nullptr}), "33862 Array element is NULL: 1h (1)\n"},
        {makeOrThrow<StringObj>(Ref<Host::String>()), "33862 Invalid Stirng value\n"},
        {literal("\u4E2D"), "33862 " + character},
        {stream(stripeOf(""), nullptr), "33862 Stream has no dictionary\n"},
        {stream(nullptr), "33862 Failed to retrieve data of stream\n"},
        {stream(stripeOf(""), dictionary({{"A", literal("\u4E2D")}})),
         "33859 " + character +
             "Failed to convert value of dictionary key to buffer: A\n"
             "Failed to convert stream dictionary to buffer\n"},
        {stream(misplaced), "33859 Failed to navigate stream data\n"},
        {stream(view("", 1ULL << 32)), "33924 Stream is too large\n"},
        {stream(view("", UINT32_MAX)), "<< >>\nstream\n33859 Read from base 0h (0) of requested "
                                       "10000h (65536)\nFailed to retrieve stream "
                                       "data\n"},
        {stream(view("12", 3)),
         "33859 Read from base 2h (2) of requested 3h (3)\nFailed to retrieve stream data\n"},
        {array({null(), dictionary({{"K", foreign(9)}})}),
         "33859 Failed to cast value to Null\n"
         "Failed to convert value of dictionary key to buffer: K\n"
         "Failed to convert value of array element to buffer 1h (1)\n"},
    };
    for (const auto& [value, result] : rows)
        EXPECT_EQ(serialize(value), result);
    std::uint32_t type = 0;
    for (const std::string what :
         {"Writing not supported for value of type 0h (0)", "Failed to cast name to Name",
          "Failed to cast boolean to Boolean", "Failed to cast number to Number",
          "Failed to cast string to String", "Failed to cast object reference to ObjectRef",
          "Failed to convert dictionary to Dictionary", "Failed to convert stream to Stream",
          "Failed to cast array to Array", "Failed to cast value to Null",
          "Writing not supported for value of type Ah (10)"})
        EXPECT_EQ(serialize(foreign(type++)), "33862 " + what + "\n");
    EXPECT_TRUE(serialize(nested(512)).ends_with(" ] >> ] >>"));
    EXPECT_TRUE(serialize(nested(513)).starts_with("33859 Failed to convert value of "));
}

TEST(Serializer, LaysStreamsOut) {
    std::vector<std::string> contents{"", "x", "x\r", "x\n", "\r\n", "\n ", "\xFF\x00"s};
    for (const std::size_t size : {65535U, 65536U, 65537U, 200000U})
        contents.push_back(noiseText(size));
    for (const std::string eol : {"\n", "\r", "\r\n"}) {
        for (const std::string& data : contents) {
            const bool ended = data.empty() || data.back() == '\r' || data.back() == '\n';
            const std::string expected =
                "<< >>" + eol + "stream" + eol + data + (ended ? "" : eol) + "endstream";
            const auto memory = stripeOf(data);
            memory->position(data.size() / 2);
            for (const Data& source : {Data(memory), Data(makeOrThrow<FailingStripe>(memory))})
                EXPECT_TRUE(serialize(stream(source), eol) == expected) << data.size();
        }
    }
}

} // namespace
