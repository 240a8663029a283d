#include "document/document_obj.h"
#include "host/pump.h"
#include "support/bytes.h"
#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"
#include "support/values.h"
#include "values/object.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace Libraries::Files::PDF;
using Testing::contentsOf;
using Testing::deflated;
using Testing::DocumentBuilder;
using Testing::FailingStripe;
using Testing::streamOf;

std::string noise(std::size_t size) {
    const Testing::Bytes bytes = Testing::noise(size);
    return {bytes.begin(), bytes.end()};
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
    if (result != Host::PumpResult::Done) return "no zlib data";
    return contentsOf(Host::MemoryStripe::create(std::move(bytes)));
}

/// Everything that a call could change, as text.
std::string snapshot(const Document& document) {
    std::ostringstream all;
    for (const auto& object : document.getObjects()) {
        const auto value = object->value();
        all << object->id() << " " << Testing::textOf(value) << " " << value->changed();
        if (const auto* stream = dynamic_cast<const StreamObj*>(value.get())) {
            all << " " << stream->strmData().get() << " " << stream->dict()->changed();
        }
        all << "\n";
    }
    all << document.changed();
    return all.str();
}

std::string recompressed(const std::string& file, Compression target) {
    const auto document = Testing::open(file);
    if (!document || !document->setCompression(target)) return "failed";
    return Testing::write(*document);
}

TEST(StreamEncoder, GoesFromPlainToFlateAndBackWithoutATrace) {
    DocumentBuilder sizes = DocumentBuilder::minimal();
    const std::string incompressible = noise(65537);
    std::uint32_t id = 5;
    for (const std::size_t size : {0U, 1U, 2U, 65535U, 65536U, 65537U, 300'000U}) {
        sizes.stream(id++, "", incompressible.substr(0, size));
        sizes.stream(id++, "", std::string(size, ' '));
        sizes.stream(id++, "/Filter /FlateDecode ", deflated(std::string(size, 'x')));
    }
    std::vector<std::string> files{sizes.bytes()};
    for (const std::string& name : Testing::sampleNames())
        files.push_back(Testing::sample(name));
    Testing::RecordingLog log;
    for (const std::string& file : files) {
        const std::string plain = recompressed(file, Compression::None);
        const std::string flate = recompressed(plain, Compression::FlateDecode);
        ASSERT_NE(plain, "failed") << log.text();
        EXPECT_TRUE(recompressed(flate, Compression::None) == plain) << log.text();

        const auto document = Testing::open(flate);
        const std::string before = snapshot(*document);
        EXPECT_TRUE(document->setCompression(Compression::FlateDecode));
        EXPECT_EQ(snapshot(*document), before);
        EXPECT_TRUE(Testing::write(*document) == flate);
        const auto original = Testing::open(file);
        for (const auto& object : document->getObjects()) {
            if (object->valueType() != Value::Type::Stream) continue;
            ASSERT_TRUE(decoded(*document, object->id()) == decoded(*original, object->id()));
        }
    }
    EXPECT_FALSE(Testing::open(files[0])->setCompression(Compression::Unknown));
    EXPECT_EQ(Host::Error::get(), InvalidArgument);
}

TEST(StreamEncoder, TellsWhatItChanged) {
    const auto document = Testing::open(
        DocumentBuilder::minimal()
            .object(5, body("/Filter /DCTDecode /Length 6 0 R /DecodeParms << /K 1 >>", "picture"))
            .object(6, "7")
            .stream(7, "/Filter [/FlateDecode] ", "ab")
            .stream(8, "/Filter /FlateDecode ", deflated("cd") + "garbage\n")
            .bytes());
    Testing::RecordingLog log;
    ASSERT_TRUE(document->setCompression(Compression::FlateDecode));
    EXPECT_EQ(log.text(), "Unsupported compression for stream of object 7h (7)\n");
    EXPECT_TRUE(document->changed());
    const std::string size = std::to_string(deflated("picture").size());
    EXPECT_EQ(Testing::textOf(streamOf(*document, 5)->dict()),
              "<< DecodeParms -> << K -> 1.0 >> Filter -> FlateDecode Length -> 6 (0) >>");
    EXPECT_EQ(Testing::textOf(Testing::valueOf(*document, 6)), size + ".0");
    EXPECT_TRUE(streamOf(*document, 5)->changed() && !streamOf(*document, 7)->changed());
    EXPECT_EQ(decoded(*document, 5), "picture");
    // Trailing bytes are no part of the data.
    ASSERT_TRUE(document->setCompression(Compression::None));
    EXPECT_EQ(contentsOf(document->readStreamData(streamOf(*document, 8), false)), "cd");
}

/// Five streams, 5 to 9, stored as `from`, of which 5 has its Length in object 10; `fault` is the
/// body of number `place`.
std::string fiveStreams(Compression from, std::uint32_t place = 0, const std::string& fault = {}) {
    DocumentBuilder builder = DocumentBuilder::minimal(from);
    std::string length = "0";
    for (std::uint32_t id = 5; id < 10; ++id) {
        const bool flate = from == Compression::FlateDecode;
        const std::string content = "content " + std::to_string(id) + std::string(id * 9, '.');
        const std::string data = flate ? deflated(content) : content;
        const std::string size = std::to_string(data.size());
        if (id == 5) length = size;
        const std::string entries = (flate ? "/Filter /FlateDecode " : "/Filter /A ") +
                                    std::string("/Length ") + (id == 5 ? "10 0 R" : size);
        builder.object(id, id == place ? fault : body(entries, data));
    }
    return builder.object(10, length).bytes();
}

TEST(StreamEncoder, UndoesEverythingWhenAStreamFails) {
    const std::string good = deflated(std::string(500, 'a') + noise(500));
    std::string corrupted = good;
    corrupted[good.size() / 2] = static_cast<char>(~corrupted[good.size() / 2]);
    const std::string truncated = good.substr(0, good.size() - 5);
    const struct {
        const char* name;
        std::string entries;
        std::string data;
        bool attach;
        std::uint32_t code;
        std::string message;
    } rows[] = {
        {"corrupted", "/Length " + std::to_string(good.size()), corrupted, false, CodingFailed,
         "Failed to read converted stream data of stream "},
        {"no zlib data", "/Length 4", "abcd", true, CodingFailed,
         "Failed to read converted stream data of stream "},
        {"truncated", "/Length " + std::to_string(truncated.size()), truncated, false, CodingFailed,
         "Failed to flush conversion of stream "},
        {"Length missing in the file", "", good, false, StreamObjectInvalid,
         "Failed to retrieve data for stream "},
        {"Length missing", "", good, true, StreamObjectInvalid,
         "No length entry in dictionary of stream "},
        {"Length mistyped", "/Length /A", good, true, StreamObjectInvalid,
         "Length entry is not valid in dictionary of stream "},
        {"Length leads nowhere", "/Length 77 0 R", good, true, StreamObjectInvalid,
         "Failed to resolve length reference to object 77 (0) for stream "},
        {"Length is a dictionary", "/Length 1 0 R", good, true, StreamObjectInvalid,
         "Length object 1 (0) is not a valid number for stream "},
    };
    for (const auto& row : rows) {
        for (std::uint32_t place = 5; place < 10; ++place) {
            const std::string id = std::to_string(place);
            SCOPED_TRACE(row.name + (" at " + id));
            const std::string fault = body("/Filter /FlateDecode " + row.entries, row.data);
            const std::string file = fiveStreams(Compression::FlateDecode, place, fault);
            const auto document = Testing::open(file);
            Testing::RecordingLog log;
            ASSERT_TRUE(place % 2 == 0 || document->cacheStreamData());
            if (row.attach) {
                auto& stream = dynamic_cast<StreamObj&>(*streamOf(*document, place));
                stream.strmData(Testing::stripeOf(row.data));
                stream.resetChanged();
            }
            const std::string before = snapshot(*document);
            EXPECT_FALSE(document->setCompression(Compression::None));
            EXPECT_EQ(Host::Error::get(), row.code);
            EXPECT_TRUE(log.text().ends_with(row.message + id + "h (" + id + ")\n")) << log.text();
            EXPECT_EQ(snapshot(*document), before);
            EXPECT_TRUE(row.attach ||
                        Testing::write(*document) == Testing::write(*Testing::open(file)));
        }
    }
}

TEST(StreamEncoder, UndoesEverythingWhenTheSourceFails) {
    using Call = FailingStripe::Call;
    using Fault = FailingStripe::Fault;
    for (const Compression from : {Compression::None, Compression::FlateDecode}) {
        const Compression target =
            from == Compression::None ? Compression::FlateDecode : Compression::None;
        const std::string file = fiveStreams(from);
        const std::string untouched = Testing::write(*Testing::open(file));
        for (const auto& [call, fault] :
             {std::pair(Call::Read, Fault::Failed), std::pair(Call::Read, Fault::Short),
              std::pair(Call::Read, Fault::NoByte), std::pair(Call::Seek, Fault::Misplaced)}) {
            std::uint64_t number = 0;
            for (bool done = false; !done;) {
                const auto source = Host::make<FailingStripe>(Testing::stripeOf(file));
                const auto document = Document::create(source);
                const std::string before = snapshot(*document);
                Testing::RecordingLog log;
                source->failAt(call, ++number, fault);
                done = document->setCompression(target);
                if (done) continue;
                EXPECT_EQ(Host::Error::get(), CodingFailed);
                EXPECT_EQ(snapshot(*document), before) << "call " << number;
                EXPECT_TRUE(Testing::write(*document) == untouched) << "call " << number;
                EXPECT_TRUE(document->setCompression(target)) << "a second time";
                EXPECT_TRUE(Testing::write(*document) == recompressed(file, target));
            }
            EXPECT_EQ(number, 7U) << "a call for each of the six streams";
        }
    }
}

TEST(StreamEncoder, LeavesUndoneStreamsLookingUntouched) {
    const auto document = Testing::open(
        DocumentBuilder::minimal().stream(5, "/Filter /FlateDecode ", "no zlib data").bytes());
    auto& first = dynamic_cast<StreamObj&>(*streamOf(*document, 4));
    first.dict()->set(Testing::text("Filter"), Testing::name("FlateDecode"));
    const auto data = Testing::stripeOf(deflated("replaced"));
    first.strmData(data);
    Testing::RecordingLog log;
    ASSERT_FALSE(document->setCompression(Compression::None));
    EXPECT_TRUE(first.strmData() == data);
    EXPECT_EQ(first.compression(), Compression::FlateDecode);
    EXPECT_FALSE(document->changed());
}

TEST(StreamEncoder, KeepsTheDataOfStreamsThatShareALength) {
    const std::string one = noise(100);
    const std::string other(100, 'z');
    const DocumentBuilder builder = DocumentBuilder::minimal()
                                        .object(5, body("/Length 8 0 R", one))
                                        .object(6, body("/Length 8 0 R", other))
                                        .object(7, body("/Filter [/A] /Length 8 0 R", one))
                                        .object(8, "100");
    const auto document = Testing::open(builder.bytes());
    Testing::RecordingLog log;
    ASSERT_TRUE(document->setCompression(Compression::FlateDecode));
    EXPECT_EQ(decoded(*document, 5), one);
    EXPECT_EQ(decoded(*document, 6), other);
    EXPECT_EQ(decoded(*document, 7), one);
    EXPECT_FALSE(streamOf(*document, 7)->changed());
    EXPECT_EQ(Testing::textOf(Testing::valueOf(*document, 8)),
              std::to_string(deflated(other).size()) + ".0");

    const auto broken = Testing::open(DocumentBuilder(builder).object(9, body("", "")).bytes());
    const std::string before = snapshot(*broken);
    EXPECT_FALSE(broken->setCompression(Compression::FlateDecode));
    EXPECT_EQ(snapshot(*broken), before);
}

TEST(StreamEncoder, TakesALargeStream) {
    constexpr std::size_t size = std::size_t{64} << 20;
    Host::ByteBuffer bytes;
    ASSERT_TRUE(bytes.resize(size));
    for (std::size_t index = 0; index < size; ++index)
        bytes.data()[index] = static_cast<std::uint8_t>(index >> 12);
    const auto document = Testing::open(DocumentBuilder::minimal().bytes());
    auto& stream = dynamic_cast<StreamObj&>(*streamOf(*document, 4));
    const Ref<Host::MemoryStripe> data = Host::MemoryStripe::create(std::move(bytes));
    stream.strmData(data);
    ASSERT_TRUE(document->setCompression(Compression::FlateDecode));
    EXPECT_LT(stream.strmData()->size(), size / 100);
    ASSERT_TRUE(document->setCompression(Compression::None));
    const auto back = Host::cast<Host::MemoryStripe>(stream.strmData());
    EXPECT_TRUE(back && std::ranges::equal(back->bytes(), data->bytes()));
}

TEST(StreamEncoder, RefusesForeignStreams) {
    const auto document = Testing::open(DocumentBuilder::minimal().bytes());
    dynamic_cast<DocumentObj&>(*document).state().objects.append(
        Host::make<ObjectObj>(5U, std::uint16_t{0}, Testing::foreign(7)));
    const std::string before = Testing::textOf(streamOf(*document, 4));
    Testing::RecordingLog log;
    EXPECT_FALSE(document->setCompression(Compression::FlateDecode));
    EXPECT_EQ(Host::Error::get(), NoValue);
    EXPECT_EQ(log.text(), "Failed to cast value of object 5h (5) to stream\n");
    EXPECT_EQ(Testing::textOf(streamOf(*document, 4)), before);
}

} // namespace
