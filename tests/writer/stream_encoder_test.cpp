#include "host/pump.h"
#include "support/testing.h"

#include <sstream>

namespace {

using namespace Support;

std::string body(std::string_view entries, std::string_view data) {
    return std::string("<< ").append(entries).append(" >>\nstream\n").append(data) + "\nendstream";
}

/// The data of object `id`, decoded even where it is attached.
std::string decoded(Document& document, std::uint32_t id) {
    const auto stream = streamOf(document, id);
    const auto data = document.readStreamData(stream, false);
    if (stream->compression() != Compression::FlateDecode) return contentsOf(data);
    Host::ByteBuffer bytes;
    const auto result = Host::pump(*data, *Host::ZlibFilter::createDecompressorStream(), bytes);
    const auto plain = Host::MemoryStripe::create(std::move(bytes));
    return result == Host::PumpResult::Done ? contentsOf(plain) : "no zlib data";
}

/// Everything that a call could change, as text.
std::string snapshot(const Document& document) {
    std::ostringstream all;
    all << document.changed();
    for (const auto& object : document.getObjects()) {
        const auto value = object->value();
        all << "\n" << object->id() << " " << textOf(value) << " " << value->changed();
        const auto* stream = dynamic_cast<const StreamObj*>(value.get());
        if (stream) all << " " << stream->strmData().get() << " " << stream->dict()->changed();
    }
    return all.str();
}

std::string recompressed(const std::string& file, Compression target) {
    const auto document = open(file);
    if (!document || !document->setCompression(target)) return "failed";
    return write(*document);
}

TEST(StreamEncoder, GoesFromPlainToFlateAndBackWithoutATrace) {
    DocumentBuilder sizes = DocumentBuilder::minimal();
    const std::string incompressible = noiseText(65537);
    std::uint32_t id = 5;
    for (const std::size_t size : {0U, 1U, 2U, 65535U, 65536U, 65537U, 300'000U}) {
        sizes.stream(id++, "", incompressible.substr(0, size));
        sizes.stream(id++, "", std::string(size, ' '));
        sizes.stream(id++, "/Filter /FlateDecode ", deflated(std::string(size, 'x')));
    }
    std::string large;
    while (large.size() < std::size_t{64} << 20)
        large += incompressible;
    DocumentBuilder huge = DocumentBuilder::minimal();
    huge.stream(5, "", large);
    std::vector<std::string> files{sizes.bytes(), huge.bytes()};
    for (const std::string& name : sampleNames())
        files.push_back(sample(name));
    RecordingLog log;
    for (const std::string& file : files) {
        const std::string plain = recompressed(file, Compression::None);
        const std::string flate = recompressed(plain, Compression::FlateDecode);
        ASSERT_NE(plain, "failed") << log.text();
        EXPECT_TRUE(recompressed(flate, Compression::None) == plain) << log.text();

        const auto document = open(flate);
        const std::string before = snapshot(*document);
        EXPECT_TRUE(document->setCompression(Compression::FlateDecode));
        EXPECT_EQ(snapshot(*document), before);
        EXPECT_TRUE(write(*document) == flate);
        const auto original = open(file);
        for (const auto& object : document->getObjects()) {
            if (object->valueType() != Value::Type::Stream) continue;
            ASSERT_TRUE(decoded(*document, object->id()) == decoded(*original, object->id()));
        }
    }
    for (const auto unfit : {Compression::Unknown, static_cast<Compression>(3)}) {
        const auto document = open(files[0]);
        expectFailure(document->setCompression(unfit), InvalidArgument);
        EXPECT_FALSE(document->changed());
    }
}

/// Five compressed streams, 5 to 9, of which 5 has its Length in object 10; `fault` is the body of
/// number `place`.
std::string fiveStreams(std::uint32_t place, const std::string& fault) {
    DocumentBuilder builder = DocumentBuilder::minimal(Compression::FlateDecode);
    for (std::uint32_t id = 5; id < 10; ++id) {
        const std::string data = deflated("content " + std::string(id * 9, '.'));
        const std::string size = std::to_string(data.size());
        if (id == 5) builder.object(10, size);
        const std::string entries = "/Filter /FlateDecode /Length " + (id == 5 ? "10 0 R" : size);
        builder.object(id, id == place ? fault : body(entries, data));
    }
    return builder.bytes();
}

TEST(StreamEncoder, UndoesEverythingWhenAStreamFails) {
    const std::string good = deflated(std::string(500, 'a') + noiseText(500));
    std::string corrupted = good;
    corrupted[good.size() / 2] = static_cast<char>(~corrupted[good.size() / 2]);
    const std::string truncated = good.substr(0, good.size() - 5);
    const std::tuple<std::string, std::string, bool, std::uint32_t, std::string> rows[] = {
        {"/Length " + std::to_string(good.size()), corrupted, false, CodingFailed,
         "Failed to read converted stream data of stream "},
        {"/Length " + std::to_string(truncated.size()), truncated, false, CodingFailed,
         "Failed to flush conversion of stream "},
        {"", good, false, StreamObjectInvalid, "Failed to retrieve data for stream "},
        {"", good, true, StreamObjectInvalid, "No length entry in dictionary of stream "},
        {"/Length /A", good, true, StreamObjectInvalid,
         "Length entry is not valid in dictionary of stream "},
        {"/Length 77 0 R", good, true, StreamObjectInvalid,
         "Failed to resolve length reference to object 77 (0) for stream "},
        {"/Length 1 0 R", good, true, StreamObjectInvalid,
         "Length object 1 (0) is not a valid number for stream "},
    };
    for (const auto& [entries, data, attach, code, message] : rows) {
        for (std::uint32_t place = 5; place < 10; ++place) {
            const std::string id = std::to_string(place);
            SCOPED_TRACE(message + id);
            const std::string fault = body("/Filter /FlateDecode " + entries, data);
            const std::string file = fiveStreams(place, fault);
            const auto document = open(file);
            const RecordingLog log;
            ASSERT_TRUE(place % 2 == 0 || document->cacheStreamData());
            if (attach) {
                auto& stream = dynamic_cast<StreamObj&>(*streamOf(*document, place));
                stream.strmData(stripeOf(data));
                stream.resetChanged();
            }
            const std::string before = snapshot(*document);
            expectFailure(document->setCompression(Compression::None), code);
            EXPECT_TRUE(log.text().ends_with(message + id + "h (" + id + ")\n")) << log.text();
            EXPECT_EQ(snapshot(*document), before);
            EXPECT_TRUE(attach || write(*document) == write(*open(file)));
        }
    }
}

TEST(StreamEncoder, KeepsTheDataOfStreamsThatShareALength) {
    const std::string one = noiseText(100);
    const std::string other(100, 'z');
    const DocumentBuilder builder = DocumentBuilder::minimal()
                                        .object(5, body("/Length 8 0 R", one))
                                        .object(6, body("/Length 8 0 R", other))
                                        .object(7, body("/Filter [/A] /Length 8 0 R", one))
                                        .object(8, "100");
    const auto document = open(builder);
    RecordingLog log;
    ASSERT_TRUE(document->setCompression(Compression::FlateDecode));
    EXPECT_EQ(decoded(*document, 5), one);
    EXPECT_EQ(decoded(*document, 6), other);
    EXPECT_EQ(decoded(*document, 7), one);
    EXPECT_EQ(textOf(valueOf(*document, 8)), std::to_string(deflated(other).size()) + ".0");

    const auto broken = open(DocumentBuilder(builder).object(9, body("", "")));
    const std::string before = snapshot(*broken);
    EXPECT_FALSE(broken->setCompression(Compression::FlateDecode));
    EXPECT_EQ(snapshot(*broken), before);
}

TEST(StreamEncoder, SaysNothingOfALengthThatNobodyNeeds) {
    const std::string filter = "/Filter /DCTDecode /Length 8 0 R";
    const DocumentBuilder builder = DocumentBuilder::minimal()
                                        .object(5, body(filter, "one"))
                                        .object(6, body(filter, "other"))
                                        .object(8, "99999");
    const auto document = open(builder);
    RecordingLog log;
    EXPECT_TRUE(document->setCompression(Compression::None));
    EXPECT_EQ(log.text(), "");
    EXPECT_FALSE(document->setCompression(Compression::FlateDecode));
    EXPECT_EQ(log.entries().size(), 2U) << "each once: " << log.text();
}

TEST(StreamDataWriter, WritesAsTheFilterSays) {
    const std::string plain = noiseText(200'000);
    const std::tuple<const char*, bool, std::string> rows[] = {
        {"", true, plain},
        {"/Filter /FlateDecode ", false, plain},
        {"/Filter /FlateDecode ", true, deflated(plain)},
        {"/Filter /LZWDecode ", true, "Compression method not supported LZWDecode\n"},
        {"/Filter [/FlateDecode] ", true, "Compression method not supported Unknown\n"},
    };
    for (const auto& [filter, encode, result] : rows) {
        SCOPED_TRACE(filter + std::string(encode ? "encoded" : ""));
        const auto document = open(DocumentBuilder::minimal().stream(5, filter, plain));
        const auto target = Host::MemoryStripe::create();
        RecordingLog log;
        const bool written = document->writeStreamData(streamOf(*document, 5), target, encode);
        EXPECT_TRUE((written ? contentsOf(target) : log.text()) == result) << log.text();
        EXPECT_TRUE(written || Host::Error::get() == CodingFailed);
        const std::size_t length = written ? result.size() : plain.size();
        EXPECT_EQ(textOf(streamOf(*document, 5)->dict()->find(text("Length"))),
                  std::to_string(length) + ".0");
        EXPECT_FALSE(document->changed());
    }
}

TEST(StreamDataWriter, ReportsWhatFails) {
    const std::string plain(70'000, 'p');
    const auto document =
        open(DocumentBuilder::minimal().stream(5, "/Filter /FlateDecode ", plain));
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
    expectFailure(document->write(nullptr), NullArgument);
    expectFailure(document->write(bytes), InvalidArgument);
    // A target that is the data itself gets something, and nothing breaks.
    const auto data = stripeOf(plain);
    dynamic_cast<StreamObj&>(*stream).strmData(data);
    EXPECT_EQ(document->writeStreamData(stream, data, false), 1U);
}

} // namespace
