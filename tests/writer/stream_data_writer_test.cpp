#include "support/bytes.h"
#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"
#include "support/values.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Libraries::Files::PDF;
using namespace Testing;

TEST(StreamDataWriter, WritesAsTheFilterSays) {
    const Bytes large = noise(200'000);
    const std::string plain(large.begin(), large.end());
    const struct {
        const char* filter;
        bool encode;
        std::string result; ///< or the message
    } rows[] = {
        {"", true, plain},
        {"/Filter /FlateDecode ", false, plain},
        {"/Filter [/A] ", false, plain},
        {"/Filter /FlateDecode ", true, deflated(plain)},
        {"/Filter /LZWDecode ", true, "Compression method not supported LZWDecode\n"},
        {"/Filter [/FlateDecode] ", true, "Compression method not supported Unknown\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.filter + std::string(row.encode ? "encoded" : ""));
        const auto document = open(DocumentBuilder::minimal().stream(5, row.filter, plain).bytes());
        const auto target = Host::MemoryStripe::create();
        RecordingLog log;
        const bool written = document->writeStreamData(streamOf(*document, 5), target, row.encode);
        EXPECT_TRUE((written ? contentsOf(target) : log.text()) == row.result) << log.text();
        EXPECT_TRUE(written || Host::Error::get() == CodingFailed);
        const std::size_t length = written ? row.result.size() : plain.size();
        EXPECT_EQ(textOf(streamOf(*document, 5)->dict()->find(text("Length"))),
                  std::to_string(length) + ".0");
        EXPECT_FALSE(document->changed());
    }
}

TEST(StreamDataWriter, ReportsWhatFails) {
    const std::string plain(70'000, 'p');
    const auto document =
        open(DocumentBuilder::minimal().stream(5, "/Filter /FlateDecode ", plain).bytes());
    const auto target = Host::make<FailingStripe>(Host::MemoryStripe::create());
    const Ref<Stream> stream = streamOf(*document, 5);
    const Ref<Stream> loose = Host::make<StreamObj>(Ref<Dictionary>(), std::uint64_t{0});
    const auto bytes = Adapters::Stripe::ElementSize::create(stripeOf(""), 1);
    const struct {
        Ref<Stream> stream;
        Ref<Interfaces::Stripe> target;
        std::uint32_t code;
        std::string message;
        std::uint64_t write = 0; ///< the one that fails
    } rows[] = {
        {nullptr, target, NullArgument, ""},
        {stream, nullptr, NullArgument, ""},
        {stream, bytes, InvalidArgument, ""},
        {loose, target, StreamDictionaryMissing,
         "Failed to retrieve dictionary of stream 0h (0)\n"},
        {stream, target, CodingFailed, "Failed to write stream data of stream 5h (5)\n", 2},
        {stream, target, CodingFailed,
         "Failed to write flushed converted stream data of stream 5h (5)\n", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.message + std::to_string(row.code));
        const RecordingLog log;
        target->failAt(FailingStripe::Call::Write, row.write);
        EXPECT_EQ(document->writeStreamData(row.stream, row.target, row.write == 1), 0U);
        EXPECT_EQ(Host::Error::get(), row.code);
        EXPECT_EQ(log.text(), row.message);
        EXPECT_EQ(textOf(stream->dict()), "<< Filter -> FlateDecode Length -> 70000.0 >>");
    }
    // A target that is the data itself gets something, and nothing breaks.
    const auto data = stripeOf(plain);
    dynamic_cast<StreamObj&>(*stream).strmData(data);
    EXPECT_EQ(document->writeStreamData(stream, data, false), 1U);
}

} // namespace
