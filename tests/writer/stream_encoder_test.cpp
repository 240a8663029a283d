#include "host/pump.h"
#include "support/bytes.h"
#include "support/document_builder.h"
#include "support/recording_log.h"
#include "support/values.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace Libraries::Files::PDF;
using namespace Testing;

std::string noiseText(std::size_t size) {
    return contentsOf(Host::MemoryStripe::create(noise(size)));
}

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
    std::vector<std::string> files{sizes.bytes()};
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
    EXPECT_FALSE(open(files[0])->setCompression(Compression::Unknown));
    EXPECT_EQ(Host::Error::get(), InvalidArgument);
}

TEST(StreamEncoder, TellsWhatItChanged) {
    const auto document = open(
        DocumentBuilder::minimal()
            .object(5, body("/Filter /DCTDecode /Length 6 0 R /DecodeParms << /K 1 >>", "picture"))
            .object(6, "7")
            .stream(7, "/Filter [/FlateDecode] ", "ab")
            .stream(8, "/Filter /FlateDecode ", deflated("cd") + "garbage\n")
            .bytes());
    RecordingLog log;
    ASSERT_TRUE(document->setCompression(Compression::FlateDecode));
    EXPECT_EQ(log.text(), "Unsupported compression for stream of object 7h (7)\n");
    EXPECT_TRUE(document->changed());
    const std::string size = std::to_string(deflated("picture").size());
    EXPECT_EQ(textOf(streamOf(*document, 5)->dict()),
              "<< DecodeParms -> << K -> 1.0 >> Filter -> FlateDecode Length -> 6 (0) >>");
    EXPECT_EQ(textOf(valueOf(*document, 6)), size + ".0");
    EXPECT_TRUE(streamOf(*document, 5)->changed() && !streamOf(*document, 7)->changed());
    EXPECT_EQ(decoded(*document, 5), "picture");
    // Trailing bytes are no part of the data.
    ASSERT_TRUE(document->setCompression(Compression::None));
    EXPECT_EQ(contentsOf(document->readStreamData(streamOf(*document, 8), false)), "cd");
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
    const struct {
        std::string entries, data;
        bool attach;
        std::uint32_t code;
        std::string message;
    } rows[] = {
        {"/Length " + std::to_string(good.size()), corrupted, false, CodingFailed,
         "Failed to read converted stream data of stream "},
        {"/Length 4", "abcd", true, CodingFailed,
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
    for (const auto& row : rows) {
        for (std::uint32_t place = 5; place < 10; ++place) {
            const std::string id = std::to_string(place);
            SCOPED_TRACE(row.message + id);
            const std::string fault = body("/Filter /FlateDecode " + row.entries, row.data);
            const std::string file = fiveStreams(place, fault);
            const auto document = open(file);
            const RecordingLog log;
            ASSERT_TRUE(place % 2 == 0 || document->cacheStreamData());
            if (row.attach) {
                auto& stream = dynamic_cast<StreamObj&>(*streamOf(*document, place));
                stream.strmData(stripeOf(row.data));
                stream.resetChanged();
            }
            const std::string before = snapshot(*document);
            EXPECT_FALSE(document->setCompression(Compression::None));
            EXPECT_EQ(Host::Error::get(), row.code);
            EXPECT_TRUE(log.text().ends_with(row.message + id + "h (" + id + ")\n")) << log.text();
            EXPECT_EQ(snapshot(*document), before);
            EXPECT_TRUE(row.attach || write(*document) == write(*open(file)));
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
    const auto document = open(builder.bytes());
    RecordingLog log;
    ASSERT_TRUE(document->setCompression(Compression::FlateDecode));
    EXPECT_EQ(decoded(*document, 5), one);
    EXPECT_EQ(decoded(*document, 6), other);
    EXPECT_EQ(decoded(*document, 7), one);
    EXPECT_EQ(textOf(valueOf(*document, 8)), std::to_string(deflated(other).size()) + ".0");

    const auto broken = open(DocumentBuilder(builder).object(9, body("", "")).bytes());
    const std::string before = snapshot(*broken);
    EXPECT_FALSE(broken->setCompression(Compression::FlateDecode));
    EXPECT_EQ(snapshot(*broken), before);
}

} // namespace
