#include "support/testing.h"
#include "values/sub_stripe.h"

#include <host/files.h>

#include <filesystem>
#include <fstream>

namespace {

using namespace Support;
using Call = FailingStripe::Call;

/// Object 5 is the last one, so that its data is followed by 10 bytes and the rest of the file.
Ref<Document> openWith(const std::string& entries, const std::string& data) {
    const std::string body = "<< " + entries + " >>\nstream\n" + data + "\nendstream";
    return open(DocumentBuilder::minimal()
                    .object(6, "3")
                    .object(7, "<< /A 1 >>")
                    .object(8, "03.0 ")
                    .object(5, body));
}

TEST(StreamData, ReadsByLengthAndFilter) {
    const std::string flate = deflated("drawing");
    const std::string length = "/Length " + std::to_string(flate.size());
    const std::string packed = "/Filter /FlateDecode " + length;
    const std::string broken = flate.substr(0, flate.size() - 1);
    const std::string kind = "1292 Stream Length has unexpected type: ";
    const std::string invalid = "1292 Stream Length attribute value is invalid: ";
    const std::tuple<std::string, std::string, bool, std::string> rows[] = {
        {"/Length 3", "abcdef", false, "abc"},
        {"/Length 3", "abcdef", true, "abc"},
        {"/Length 0", "abc", false, ""},
        {"/Length 6 0 R", "abcdef", false, "abc"},
        {"/A [+1.05 .5] /Length +3", "abcdef", false, "abc"},
        {"/Length 9 0 R /Length 008 00 R", "abcdef", false, "abc"},
        {"/Length 6 1 R", "abc", false, "1292 Failed to resolve Length object reference\n"},
        {"", "abc", false, "1292 Stream has no Length entry\n"},
        {"/Length 9 0 R", "abc", false, "1292 Failed to resolve Length object reference\n"},
        {"/Length 7 0 R", "abc", false, kind + "6h (6)\n"},
        {"/Length 5 0 R", "abc", false, kind + "7h (7)\n"}, // itself
        {"/Length /A", "abc", false, kind + "1h (1)\n"},
        {"/Length 1.5", "abc", false, invalid + "1.5\n"},
        {"/Length -1", "abc", false, invalid + "-1.0\n"},
        {"/Length 9223372036854775807", "abc", false,
         "1292 Stream end 8000000000000187h (9223372036854776199) is out of range of underlying "
         "file: 290h (656)\n"},
        {"/Length 400", "abc", false,
         "1292 Stream end 308h (776) is out of range of underlying file: 280h (640)\n"},
        {"/Length -9223372036854775808", "abc", false, invalid + "-9223372036854775808.0\n"},
        {"/Length [5 0 R]", "abc", false, kind + "8h (8)\n"},
        {packed, flate, true, "drawing"},
        {packed, flate, false, flate},
        {"/Filter /FlateDecode /Length 25", flate, true, "drawing"},
        {"/Filter [/FlateDecode] " + length, flate, false, flate},
        {"/Filter [/FlateDecode] " + length, flate, true,
         "1305 Unexpected type for filter property; got = 8h (8), expected = 1h (1)\n"},
        {"/Filter /DCTDecode", "abc", true, "1305 Unsupported filter type DCTDecode\n"},
        {packed, broken, true, "1303 Failed to convert data of stream\n"},
        {"/Filter /FlateDecode /Length 9", flate, true,
         "1303 Failed to flush conversion of stream\n"},
    };
    for (const auto& [entries, bytes, decode, result] : rows) {
        const auto document = openWith(entries, bytes);
        ASSERT_TRUE(document) << entries;
        const RecordingLog log;
        const auto data = document->readStreamData(streamOf(*document, 5), decode);
        EXPECT_EQ(data ? contentsOf(data) : std::to_string(Host::Error::get()) + " " + log.text(),
                  result)
            << entries;
        EXPECT_FALSE(document->changed()) << entries;
        Host::Error::set(Host::NoError);
        EXPECT_TRUE(document->cacheStreamData()) << entries;
        const bool unwritable = result.starts_with("1292") || entries.ends_with("DCTDecode");
        EXPECT_EQ(Host::Error::get() == Host::NoError, !unwritable) << entries;
        EXPECT_EQ(write(*document).empty(), unwritable) << entries;
        // Whether anybody looked at the stream makes no difference.
        const auto written = [&](const Ref<Document>& of) {
            const auto target = Host::MemoryStripe::create();
            return outcomeOf([&] { return of->write(target); }) + contentsOf(target);
        };
        EXPECT_EQ(written(openWith(entries, bytes)), written(document)) << entries;
    }
    const auto document = openWith("/Length 6 0 R", "abc");
    dynamic_cast<NumberObj&>(*valueOf(*document, 6)).integer(2); // and that counts
    EXPECT_NE(write(*document).find("stream\nab\nendstream"), std::string::npos);
}

TEST(StreamData, ReachesToTheLastByteOfTheSource) {
    const auto fileWith = [](std::uint64_t length) {
        const std::string body = "<< /Length " + std::to_string(length) + " >>\nstream\n";
        return DocumentBuilder::minimal().object(4, body).bytes();
    };
    const std::string file = fileWith(100);
    const std::uint64_t rest = file.size() - streamOf(*open(file), 4)->strmOfs();
    for (const std::uint64_t length : {rest - 1, rest, rest + 1}) {
        const auto document = open(fileWith(length));
        const RecordingLog log;
        const auto data = document->readStreamData(streamOf(*document, 4), false);
        ASSERT_EQ(static_cast<bool>(data), length <= rest) << length;
        EXPECT_TRUE(!data || contentsOf(data) == file.substr(file.size() - rest, length));
    }
}

TEST(StreamData, CachedDataOutlivesTheSource) {
    const auto source = stripeOf(DocumentBuilder::minimal()
                                     .stream(6, "", "k")
                                     .object(5, "<< >>\nstream\nno length")
                                     .stream(7, "", "last")
                                     .bytes());
    const auto document = Document::create(source);
    const RecordingLog log;
    EXPECT_TRUE(document->cacheStreamData());
    EXPECT_EQ(log.text(), "Stream has no Length entry\n");
    const std::vector<std::uint8_t> blank(source->size());
    source->position(0);
    EXPECT_EQ(source->writeBytes(blank.data(), blank.size()), blank.size());
    for (const auto& [id, data] : {std::pair(4U, "0 0 9 9 re f"), {6U, "k"}, {7U, "last"}})
        EXPECT_EQ(contentsOf(document->readStreamData(streamOf(*document, id), false)), data) << id;
    EXPECT_FALSE(document->changed());
}

// A hole of 4 GiB takes no room on the device.
TEST(StreamData, BeyondFourGiBIsReadInPartsOnly) {
    constexpr std::uint64_t size = std::uint64_t{1} << 32;
    const std::string name = testing::TempDir() + "files-large.pdf";
    const std::string body = "<< /Length 4294967296 >>\nstream\n";
    std::string tail = DocumentBuilder::minimal().object(5, body + "\nendstream").bytes();
    const std::string table = std::to_string(tail.find("xref\n"));
    const std::string head = tail.substr(0, tail.find(body) + body.size());
    tail.replace(tail.rfind(table), table.size(), std::to_string(std::stoull(table) + size));
    std::ofstream(name, std::ios::binary) << head;
    std::filesystem::resize_file(name, head.size() + size);
    std::ofstream(name, std::ios::binary | std::ios::app) << tail.substr(head.size());
    const auto document = Document::create(Host::FileSource::open(name));
    std::filesystem::remove(name);
    ASSERT_TRUE(document);
    const auto data = document->readStreamData(streamOf(*document, 5), false);
    ASSERT_TRUE(data && data->position(size - 1) == size - 1);
    std::uint8_t last = 1;
    EXPECT_TRUE(data->readBytes(&last, 1) == 1 && last == 0);
    const RecordingLog log;
    expectFailure(document->cacheStreamData(), OutOfRange);
    EXPECT_EQ(log.text(), "Stream size is too large: 100000000h (4294967296)\n");
    expectFailure(document->write(Host::MemoryStripe::create()), ObjectNotWritten);
}

TEST(StreamData, FailsWithItsSource) {
    const std::string bytes = DocumentBuilder::minimal(Compression::FlateDecode).bytes();
    const auto source = makeOrThrow<FailingStripe>(stripeOf(bytes));
    const auto document = Document::create(source);
    const RecordingLog log;
    source->failAt(Call::Seek, 1);
    expectFailure(document->readStreamData(streamOf(*document, 4), true), CodingFailed);
    source->failAt(Call::Read, 1, FailingStripe::Fault::Short);
    expectFailure(document->cacheStreamData(), StepFailed);
    EXPECT_EQ(log.text(), "Failed to read converted stream data of stream\n"
                          "Read from base Bh (11) of requested 17h (23)\n"
                          "Failed to read from to be cached stream's data\n");
    EXPECT_TRUE(document->cacheStreamData());
    for (const std::uint64_t offset : {source->size(), UINT64_MAX}) {
        expectFailure(document->readStreamData(makeOrThrow<StreamObj>(nullptr, offset), false),
                      OutOfRange);
    }
    expectFailure(document->readStreamData(makeOrThrow<StreamObj>(nullptr, 0U), false),
                  InvalidArgument);
    expectFailure(document->readStreamData(nullptr, true), NullArgument);
    const auto largest = makeOrThrow<SubStripe>(stripeOf(""), 0U, UINT32_MAX, Host::Mon::create());
    dynamic_cast<StreamObj&>(*streamOf(*document, 4)).strmData(largest);
    expectFailure(document->cacheStreamData(), StepFailed);
    const Ref<Interfaces::Stripe> attached = stripeOf("no zlib data");
    dynamic_cast<StreamObj&>(*streamOf(*document, 4)).strmData(attached);
    EXPECT_EQ(document->readStreamData(streamOf(*document, 4), true), attached);
}

} // namespace
