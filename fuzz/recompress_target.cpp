// Re-encoding all streams of a document, to and fro, by the document and by the tools. The last
// byte of the input chooses the order.

#include "rewrite.h"
#include "target.h"
#include "walk.h"

#include <host/memory_stripe.h>
#include <host/string.h>
#include <pdf/tools/editing.h>
#include <pdf/tools/streams.h>

#include <algorithm>
#include <set>

using namespace Libraries::Files::PDF;
using namespace Host::Literals;
using Fuzzing::claim;

namespace {

/// The data of each stream, decoded; for those whose data cannot be decoded a mark.
std::vector<std::string> dataOf(const std::string& bytes) {
    const auto document = Document::create(Fuzzing::stripeOf(Fuzzing::bytesOf(bytes)));
    claim(document != nullptr, "a written document opens");
    std::vector<std::string> all;
    for (const Ref<Stream>& stream : Fuzzing::streamsOf(*document)) {
        const auto data = document->readStreamData(stream, true);
        all.push_back(data ? Fuzzing::contentsOf(*data) : "undecodable");
    }
    return all;
}

/// The number that holds a stream's length, wherever it stands.
Ref<Value> lengthOf(const Document& document, const Dictionary& dict) {
    const Ref<Value> length = dict.find("Length"_str);
    const auto* ref = dynamic_cast<const ObjectRef*>(length.get());
    const auto object = ref != nullptr ? document.getObject(dict.findAsObjectRef("Length"_str))
                                       : Ref<Libraries::Files::PDF::Object>();
    return object ? object->value() : length;
}

/// Data under another filter is compressed as it is, and the filter forgotten. Streams that share
/// their length all have that of the last one in the end.
bool staysDecodable(const Document& document) {
    std::set<const Value*> lengths;
    return std::ranges::all_of(Fuzzing::streamsOf(document), [&](const Ref<Stream>& stream) {
        const Ref<Value> filter = stream->dict()->find("Filter"_str);
        const auto* name = dynamic_cast<const Name*>(filter.get());
        const Ref<Value> length = lengthOf(document, *stream->dict());
        return (name == nullptr || name->name()->equals("FlateDecode")) &&
               lengths.insert(length.get()).second;
    });
}

void writeEachStream(Document& document) {
    for (const Ref<Stream>& stream : Fuzzing::streamsOf(document)) {
        const Ref<Host::MemoryStripe> target = Host::MemoryStripe::create();
        static_cast<void>(document.writeStreamData(stream, target, false));
    }
}

void recompress(Document& document, Compression compression, bool kept) {
    const Fuzzing::Written before = Fuzzing::write(document);
    const bool changed = document.changed();
    const bool done = document.setCompression(compression);
    const Fuzzing::Written after = Fuzzing::write(document);
    if (!done) {
        claim(after.bytes == before.bytes, "a failure leaves the document as it was");
        claim(document.changed() == changed, "a failure is no change");
        return;
    }
    if (!kept) return;
    claim(after.complete, "a recompressed document can be written");
    if (Fuzzing::expectedOf(document) != Fuzzing::Rewriting::Kept) return;
    claim(dataOf(after.bytes) == dataOf(before.bytes), "decoded data stays as it was");
}

/// What a reader gets of each stream: what the tools decode, or what is stored and how.
std::vector<std::string> contentsOf(const Ref<Document>& document) {
    constexpr std::uint64_t limit = 1 << 24;
    std::vector<std::string> all;
    for (const Ref<Stream>& stream : Fuzzing::streamsOf(*document)) {
        const auto decoded = Tools::decodedBytes(document, stream, limit);
        const auto raw = decoded ? nullptr : document->readStreamData(stream, false);
        const Ref<Value> filter = raw ? stream->dict()->find("Filter"_str) : nullptr;
        all.push_back(decoded ? Fuzzing::contentsOf(**decoded)
                      : raw   ? (filter ? filter->asText()->utf8() : "") + Fuzzing::contentsOf(*raw)
                              : "unreadable");
    }
    return all;
}

bool hasPredictor(const Document& document) {
    return std::ranges::any_of(Fuzzing::streamsOf(document), [](const Ref<Stream>& stream) {
        return stream->dict()->find("DecodeParms"_str) != nullptr;
    });
}

/// By the tools nothing that a reader gets changes, where it can be compared here.
void store(const Ref<Document>& document, bool compress) {
    const Fuzzing::Written before = Fuzzing::write(*document);
    const bool comparable = !hasPredictor(*document);
    const auto contents = contentsOf(document);
    const auto done = compress ? Tools::compressStreams(document) : Tools::expandStreams(document);
    const Fuzzing::Written after = Fuzzing::write(*document);
    if (!done) claim(after.bytes == before.bytes, "a failure leaves the document as it was");
    claim(after.complete == before.complete, "what could be written still can");
    claim(!done || !compress || after.bytes.size() <= before.bytes.size(),
          "compressing makes nothing larger");
    if (comparable) claim(contentsOf(document) == contents, "contents stay what they were");
    if (!comparable || !after.complete) return;
    if (Fuzzing::expectedOf(*document) != Fuzzing::Rewriting::Kept) return;
    const auto again = Document::create(Fuzzing::stripeOf(Fuzzing::bytesOf(after.bytes)));
    claim(again && contentsOf(again) == contents, "they are what is written, too");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzzing::silenceLog();
    const Ref<Document> document = Document::create(Fuzzing::stripeOf({data, size}));
    if (!document) return 0;

    const bool flateFirst = data[size - 1] == '\n';
    const auto first = flateFirst ? Compression::FlateDecode : Compression::None;
    const auto second = flateFirst ? Compression::None : Compression::FlateDecode;
    for (const bool compress : {flateFirst, !flateFirst}) {
        const Ref<Document> other = Document::create(Fuzzing::stripeOf({data, size}));
        store(other, compress);
        store(other, !compress);
    }
    static_cast<void>(Fuzzing::write(*document));
    const bool kept =
        Fuzzing::expectedOf(*document) == Fuzzing::Rewriting::Kept && staysDecodable(*document);
    recompress(*document, first, kept);
    recompress(*document, second, kept);
    writeEachStream(*document);
    static_cast<void>(Fuzzing::write(*document));
    return 0;
}
