#include "writer/serializer.h"

#include "support/bytes.h"
#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"
#include "support/values.h"
#include "values/sub_stripe.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace std::literals;
using namespace Testing;
using namespace Libraries::Files::PDF;
using Data = Ref<Interfaces::Stripe>;

/// The bytes that a value adds to an output; where it fails, the code and the messages too.
std::string serialize(const AnyValue& value, std::string_view lineEnding = "\n") {
    const auto target = Host::MemoryStripe::create();
    const RecordingLog log;
    Output output(*target);
    output.append("kept ");
    Serializer serializer(output, lineEnding, [](const Ref<Stream>& stream) {
        return static_cast<StreamObj&>(*stream).strmData();
    });
    Host::Error::set(Host::NoError);
    std::string failure;
    if (!serializer.write(value)) failure = std::to_string(Host::Error::get()) + " " + log.text();
    EXPECT_TRUE(output.flush());
    EXPECT_EQ(target->size(), output.offset());
    EXPECT_TRUE(contentsOf(target).starts_with("kept "));
    return contentsOf(target).substr(5) + failure;
}

AnyValue literal(std::string_view utf8) {
    return newValue<StringObj>(text(utf8));
}
AnyValue stream(Data data, Ref<Dictionary> dict = dictionary({})) {
    return newValue<StreamObj>(std::move(dict), std::move(data));
}
Data view(std::string_view bytes, std::uint64_t length) {
    return newValue<SubStripe>(stripeOf(bytes), 0U, length, Host::Mon::create());
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
        {String::create(text("\x7F")), R"((\177))"},
        {String::create(text("\u00E9\U0001F600")), "<FEFF00E9D83DDE00>"},
        {dictionary({{"Type", boolean(false)}, {"Le n", null()}, {"A", name("A B#20(\u00E9")}}),
         "<< /A /A B#20(\xE9 /Le n null /Type false >>"},
    };
    for (const auto& [value, result] : rows)
        EXPECT_EQ(serialize(value), result);
}

TEST(Serializer, ReportsWhatItCannotWrite) {
    const auto misplaced = newValue<FailingStripe>(stripeOf("data"));
    misplaced->failAt(FailingStripe::Call::Seek, 1, FailingStripe::Fault::Misplaced);
    const std::string character = "Failed to convert character: 4E2Dh (20013)\n"
                                  "Failed to convert string to PDF compatible string\n";
    const std::pair<AnyValue, std::string> rows[] = {
        {nullptr, "33861 "},
        {array({null(), nullptr}), "33862 Array element is NULL: 1h (1)\n"},
        {newValue<StringObj>(Ref<Host::String>()), "33862 Invalid Stirng value\n"},
        {literal("\u4E2D"), "33862 " + character},
        {stream(stripeOf(""), nullptr), "33862 Stream has no dictionary\n"},
        {stream(nullptr), "33862 Failed to retrieve data of stream\n"},
        {stream(stripeOf(""), dictionary({{"A", literal("\u4E2D")}})),
         "33859 " + character +
             "Failed to convert value of dictionary key to buffer: A\n"
             "Failed to convert stream dictionary to buffer\n"},
        {stream(misplaced), "33859 Failed to navigate stream data\n"},
        {stream(view("", 1ULL << 32)), "33924 Stream is too large\n"},
        {stream(view("12", 3)),
         "33859 Read from base 2h (2) of requested 3h (3)\nFailed to retrieve stream data\n"},
        {array({null(), dictionary({{"K", foreign(9)}})}),
         "33859 Failed to cast value to Null\n"
         "Failed to convert value of dictionary key to buffer: K\n"
         "Failed to convert value of array element to buffer 1h (1)\n"},
    };
    for (const auto& [value, result] : rows)
        EXPECT_EQ(serialize(value), result);
    const char* foreigners[] = {"Writing not supported for value of type 0h (0)",
                                "Failed to cast name to Name",
                                "Failed to cast boolean to Boolean",
                                "Failed to cast number to Number",
                                "Failed to cast string to String",
                                "Failed to cast object reference to ObjectRef",
                                "Failed to convert dictionary to Dictionary",
                                "Failed to convert stream to Stream",
                                "Failed to cast array to Array",
                                "Failed to cast value to Null",
                                "Writing not supported for value of type Ah (10)"};
    for (std::uint32_t type = 0; type < std::size(foreigners); ++type)
        EXPECT_EQ(serialize(foreign(type)), "33862 " + std::string(foreigners[type]) + "\n");
    EXPECT_TRUE(serialize(nested(512)).ends_with(" ] >> ] >>"));
    EXPECT_TRUE(serialize(nested(513)).starts_with("33859 Failed to convert value of "));
}

TEST(Serializer, LaysStreamsOut) {
    std::vector<std::string> contents{"", "x", "x\r", "x\n", "\r\n", "\n ", "\xFF\x00"s};
    for (const std::size_t size : {65535U, 65536U, 65537U, 200000U}) {
        const Bytes data = noise(size);
        contents.emplace_back(data.begin(), data.end());
    }
    for (const std::string eol : {"\n", "\r", "\r\n"}) {
        for (const std::string& data : contents) {
            const bool ended = data.empty() || data.back() == '\r' || data.back() == '\n';
            const std::string expected =
                "<< >>" + eol + "stream" + eol + data + (ended ? "" : eol) + "endstream";
            const auto memory = stripeOf(data);
            memory->position(data.size() / 2);
            for (const Data& source : {Data(memory), Data(newValue<FailingStripe>(memory))})
                EXPECT_TRUE(serialize(stream(source), eol) == expected) << data.size();
        }
    }
}

} // namespace
