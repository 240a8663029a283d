#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"
#include "values/kind.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>
#include <libdeflate.h>

namespace {

using namespace Libraries::Files::PDF;
using Testing::contentsOf;
using Testing::DocumentBuilder;
using Testing::streamOf;

/// Object 5 is the last one, so that its data is followed by 10 bytes and the rest of the file.
Ref<Document> openWith(std::string_view entries, std::string_view data) {
    std::string body = "<< ";
    body.append(entries).append(" >>\nstream\n").append(data).append("\nendstream");
    return Testing::open(
        DocumentBuilder::minimal().object(6, "3").object(7, "<< /A 1 >>").object(5, body).bytes());
}

TEST(StreamData, ReadsByLengthAndFilter) {
    const std::string flate = Testing::deflated("drawing");
    const std::string length = "/Length " + std::to_string(flate.size());
    const auto badLength = [](const std::string& log) { return "1292 " + log + "\n"; };
    const struct {
        const char* name;
        std::string entries;
        std::string data;
        bool decode;
        std::string result;
    } rows[] = {
        {"raw", "/Length 3", "abcdef", false, "abc"},
        {"length 0", "/Length 0", "abc", false, ""},
        {"length is a reference", "/Length 6 0 R", "abcdef", false, "abc"},
        {"no Length", "", "abc", false, badLength("Stream has no Length entry")},
        {"reference to nothing", "/Length 9 0 R", "abc", false,
         badLength("Failed to resolve Length object reference")},
        {"reference to a dictionary", "/Length 7 0 R", "abc", false,
         badLength("Stream Length has unexpected type: 6h (6)")},
        {"reference to itself", "/Length 5 0 R", "abc", false,
         badLength("Stream Length has unexpected type: 7h (7)")},
        {"no number", "/Length /A", "abc", false,
         badLength("Stream Length has unexpected type: 1h (1)")},
        {"fraction", "/Length 1.5", "abc", false,
         badLength("Stream Length attribute value is invalid: 1.5")},
        {"negative", "/Length -1", "abc", false,
         badLength("Stream Length attribute value is invalid: -1.0")},
        {"largest length", "/Length 9223372036854775807", "abc", false,
         badLength("Stream end 8000000000000172h (9223372036854776178) is out of range of "
                   "underlying file: 267h (615)")},
        {"no filter", "/Length 3", "abcdef", true, "abc"},
        {"flate", "/Filter /FlateDecode " + length, flate, true, "drawing"},
        {"bytes behind the data", "/Filter /FlateDecode /Length 25", flate, true, "drawing"},
        {"flate, raw", "/Filter /FlateDecode " + length, flate, false, flate},
        {"array of filters", "/Filter [/FlateDecode] " + length, flate, true,
         "1305 Unexpected type for filter property; got = 8h (8), expected = 1h (1)\n"},
        {"array of filters, raw", "/Filter [/FlateDecode] " + length, flate, false, flate},
        {"unknown filter", "/Filter /DCTDecode /Length 3", "abc", true,
         "1305 Unsupported filter type DCTDecode\n"},
        {"filter before length", "/Filter /DCTDecode", "abc", true,
         "1305 Unsupported filter type DCTDecode\n"},
        {"no zlib data", "/Filter /FlateDecode /Length 3", "abc", true,
         "1303 Failed to convert data of stream\n"},
        {"check value wrong", "/Filter /FlateDecode " + length, flate.substr(0, flate.size() - 1),
         true, "1303 Failed to convert data of stream\n"},
        {"cut off", "/Filter /FlateDecode /Length 9", flate, true,
         "1303 Failed to flush conversion of stream\n"},
    };
    for (const auto& row : rows) {
        const auto document = openWith(row.entries, row.data);
        ASSERT_TRUE(document) << row.name;
        const Testing::RecordingLog log;
        const auto data = document->readStreamData(streamOf(*document, 5), row.decode);
        const std::string result =
            data ? contentsOf(data) : std::to_string(Host::Error::get()) + " " + log.text();
        EXPECT_EQ(result, row.result) << row.name;
        EXPECT_FALSE(document->changed()) << row.name;
    }
}

TEST(StreamData, ReachesToTheLastByteOfTheSource) {
    const auto fileWith = [](std::uint64_t length) {
        const std::string body = "<< /Length " + std::to_string(length) + " >>\nstream\n";
        return DocumentBuilder::minimal().object(4, body).bytes();
    };
    const std::string file = fileWith(100);
    const std::uint64_t rest = file.size() - streamOf(*Testing::open(file), 4)->strmOfs();
    for (const std::uint64_t length : {rest - 1, rest, rest + 1}) {
        const auto document = Testing::open(fileWith(length));
        const Testing::RecordingLog log;
        const auto data = document->readStreamData(streamOf(*document, 4), false);
        ASSERT_EQ(static_cast<bool>(data), length <= rest) << length;
        EXPECT_TRUE(!data || contentsOf(data) == file.substr(file.size() - rest, length));
    }
}

TEST(StreamData, StaysAttachedOnceRead) {
    const std::string flate = Testing::deflated("drawing");
    const auto document =
        openWith("/Filter /FlateDecode /Length " + std::to_string(flate.size()), flate);
    ASSERT_TRUE(document);
    const Ref<Stream> stream = streamOf(*document, 5);
    EXPECT_EQ(contentsOf(document->readStreamData(stream, true)), "drawing");
    const auto raw = document->readStreamData(stream, true);
    EXPECT_EQ(contentsOf(raw), flate);
    EXPECT_TRUE(raw == document->readStreamData(stream, false));
    EXPECT_FALSE(stream->changed());
    EXPECT_FALSE(document->readStreamData(nullptr, true));
    EXPECT_EQ(Host::Error::get(), NullArgument);
}

TEST(StreamData, CachedDataOutlivesTheSource) {
    const Ref<Host::MemoryStripe> source =
        Testing::stripeOf(DocumentBuilder::minimal()
                              .stream(6, "", "kept")
                              .object(5, "<< >>\nstream\nno length")
                              .stream(7, "", "last")
                              .bytes());
    const auto document = Document::create(source);
    ASSERT_TRUE(document);
    const Testing::RecordingLog log;
    EXPECT_TRUE(document->cacheStreamData());
    EXPECT_EQ(log.text(), "Stream has no Length entry\n");
    const std::string blank(source->size(), '-');
    source->position(0);
    source->writeBytes(reinterpret_cast<const std::uint8_t*>(blank.data()), blank.size());
    for (const auto& [id, data] : {std::pair(4U, "0 0 9 9 re f"), {6U, "kept"}, {7U, "last"}})
        EXPECT_EQ(contentsOf(document->readStreamData(streamOf(*document, id), false)), data);
    EXPECT_FALSE(document->changed());
}

TEST(StreamData, CachingStopsAtAFailedRead) {
    const auto source =
        Host::make<Testing::FailingStripe>(Testing::stripeOf(DocumentBuilder::minimal().bytes()));
    const auto document = Document::create(source);
    ASSERT_TRUE(document);
    using Stripe = Testing::FailingStripe;
    const Testing::RecordingLog log;
    source->failAt(Stripe::Call::Read, 1, Stripe::Fault::Short);
    EXPECT_FALSE(document->cacheStreamData());
    EXPECT_EQ(Host::Error::get(), StepFailed);
    EXPECT_EQ(log.text(), "Read from base 6h (6) of requested Ch (12)\n"
                          "Failed to read from to be cached stream's data\n");
    EXPECT_TRUE(document->cacheStreamData());
}

TEST(StreamData, FailsWithItsSource) {
    const auto source = Host::make<Testing::FailingStripe>(
        Testing::stripeOf(DocumentBuilder::minimal(Compression::FlateDecode).bytes()));
    const auto document = Document::create(source);
    ASSERT_TRUE(document);
    const Testing::RecordingLog log;
    source->failAt(Testing::FailingStripe::Call::Seek, 1);
    EXPECT_FALSE(document->readStreamData(streamOf(*document, 4), true));
    EXPECT_EQ(Host::Error::get(), CodingFailed);
    EXPECT_EQ(log.text(), "Failed to read converted stream data of stream\n");
    for (const std::uint64_t offset : {source->size(), UINT64_MAX}) {
        EXPECT_FALSE(document->readStreamData(Host::make<StreamObj>(nullptr, offset), false));
        EXPECT_EQ(Host::Error::get(), OutOfRange);
    }
    EXPECT_FALSE(document->readStreamData(Host::make<StreamObj>(nullptr, 0U), false));
    EXPECT_EQ(Host::Error::get(), InvalidArgument);
}

TEST(StreamData, OfTheSamplesDecodesAsTheFormatSays) {
    std::size_t decoded = 0;
    for (const std::string& name : Testing::sampleNames()) {
        const auto document = Testing::open(Testing::sample(name));
        ASSERT_TRUE(document) << name;
        for (const Ref<Object>& object : document->getObjects()) {
            const auto stream = castTo<Stream>(object->value());
            if (!stream || stream->compression() != Compression::FlateDecode) continue;
            const std::string plain = contentsOf(document->readStreamData(stream, true));
            const std::string raw = contentsOf(document->readStreamData(stream, false));
            std::string truth(plain.size() + 1, '\0');
            std::size_t size = 0;
            libdeflate_decompressor* decompressor = libdeflate_alloc_decompressor();
            EXPECT_EQ(libdeflate_zlib_decompress(decompressor, raw.data(), raw.size(), truth.data(),
                                                 truth.size(), &size),
                      LIBDEFLATE_SUCCESS);
            libdeflate_free_decompressor(decompressor);
            EXPECT_EQ(plain, truth.substr(0, size)) << name << " " << Testing::textOf(object);
            ++decoded;
        }
    }
    EXPECT_GT(decoded, 20U);
}

} // namespace
