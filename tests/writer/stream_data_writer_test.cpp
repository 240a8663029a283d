#include "support/bytes.h"
#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"
#include "support/values.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Libraries::Files::PDF;
using Testing::contentsOf;
using Testing::DocumentBuilder;
using Testing::FailingStripe;
using Testing::streamOf;

TEST(StreamDataWriter, WritesAsTheFilterSays) {
    const Testing::Bytes large = Testing::noise(200'000);
    const std::string plain(large.begin(), large.end());
    const struct {
        const char* name;
        const char* filter;
        bool encode;
        std::string result; ///< or the message
    } rows[] = {
        {"no filter", "", true, plain},
        {"not encoded", "/Filter /FlateDecode ", false, plain},
        {"unsupported, not encoded", "/Filter [/A] ", false, plain},
        {"encoded", "/Filter /FlateDecode ", true, Testing::deflated(plain)},
        {"other filter", "/Filter /LZWDecode ", true,
         "Compression method not supported LZWDecode\n"},
        {"array of filters", "/Filter [/FlateDecode] ", true,
         "Compression method not supported Unknown\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto document =
            Testing::open(DocumentBuilder::minimal().stream(5, row.filter, plain).bytes());
        const auto target = Host::MemoryStripe::create();
        Testing::RecordingLog log;
        const bool written = document->writeStreamData(streamOf(*document, 5), target, row.encode);
        EXPECT_TRUE((written ? contentsOf(target) : log.text()) == row.result) << log.text();
        EXPECT_TRUE(written || Host::Error::get() == CodingFailed);
        const std::size_t length = written ? row.result.size() : plain.size();
        EXPECT_EQ(
            Testing::textOf(streamOf(*document, 5)->dict()->findAsNumber(Testing::text("Length"))),
            std::to_string(length) + ".0");
        EXPECT_FALSE(document->changed());
    }
}

TEST(StreamDataWriter, ReportsWhatFails) {
    const std::string plain(70'000, 'p');
    const auto source = Host::make<FailingStripe>(Testing::stripeOf(
        DocumentBuilder::minimal().stream(5, "/Filter /FlateDecode ", plain).bytes()));
    const auto document = Document::create(source);
    const auto target = Host::make<FailingStripe>(Host::MemoryStripe::create());
    const Ref<Stream> stream = streamOf(*document, 5);
    const Ref<Stream> loose = Host::make<StreamObj>(Ref<Dictionary>(), std::uint64_t{0});
    const auto bytes = Adapters::Stripe::ElementSize::create(Testing::stripeOf(""), 1);
    const auto none = FailingStripe::Call::Seek;
    const struct {
        const char* name;
        Ref<Stream> stream;
        Ref<Interfaces::Stripe> target;
        bool encode;
        Ref<FailingStripe> failing;
        FailingStripe::Call call;
        std::uint64_t number;
        std::uint32_t code;
        const char* message;
    } rows[] = {
        {"no stream", nullptr, target, false, target, none, 0, NullArgument, ""},
        {"no target", stream, nullptr, false, target, none, 0, NullArgument, ""},
        {"target of bytes", stream, bytes, false, target, none, 0, InvalidArgument, ""},
        {"no dictionary, no object", loose, target, false, target, none, 0, StreamDictionaryMissing,
         "Failed to retrieve dictionary of stream 0h (0)\n"},
        {"source", stream, target, false, source, FailingStripe::Call::Read, 65, CodingFailed,
         "Read from base 0h (0) of requested 1170h (4464)\n"
         "Failed to read updated stream data of stream 5h (5); read 0h (0) of 1170h (4464); "
         "error: 7Bh (123)\n"},
        {"target", stream, target, false, target, FailingStripe::Call::Write, 65, CodingFailed,
         "Failed to write stream data of stream 5h (5)\n"},
        {"target of encoded data", stream, target, true, target, FailingStripe::Call::Write, 1,
         CodingFailed, "Failed to write flushed converted stream data of stream 5h (5)\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Testing::RecordingLog log;
        row.failing->failAt(row.call, row.number);
        Host::Error::set(123);
        EXPECT_EQ(document->writeStreamData(row.stream, row.target, row.encode), 0U);
        EXPECT_EQ(Host::Error::get(), row.code);
        EXPECT_EQ(log.text(), row.message);
        source->failAt(none, 0);
        EXPECT_EQ(Testing::textOf(stream->dict()), "<< Filter -> FlateDecode Length -> 70000.0 >>");
    }
    // A target that is the data itself gets something, and nothing breaks.
    const auto data = Testing::stripeOf(plain);
    dynamic_cast<StreamObj&>(*stream).strmData(data);
    EXPECT_EQ(document->writeStreamData(stream, data, false), 1U);
}

} // namespace
