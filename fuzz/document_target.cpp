// A whole document: open it, look at everything, decode every stream, write it, open what was
// written and write that: the bytes must be the same, but for documents that a rewrite does not
// keep. They are also those that are written when nobody has looked.

#include "rewrite.h"
#include "target.h"
#include "walk.h"

#include <pdf/tools/losses.h>

using namespace Libraries::Files::PDF;
using Fuzzing::claim;
using Fuzzing::Rewriting;

namespace {

void decodeAll(Document& document) {
    for (const Ref<Stream>& stream : Fuzzing::streamsOf(document)) {
        const auto decoded = document.readStreamData(stream, true);
        if (decoded) static_cast<void>(Fuzzing::contentsOf(*decoded));
    }
    claim(!document.changed(), "looking changes nothing");
}

/// Nobody can see from what is written whether an object was touched.
std::string writtenUntouched(Fuzzing::Bytes bytes) {
    const Ref<Document> document = Document::create(Fuzzing::stripeOf(bytes));
    const Fuzzing::Written before = Fuzzing::write(*document);
    for (const auto& object : document->getObjects())
        claim(object->value() != nullptr, "an object has a value");
    claim(!document->changed(), "touching every object changes nothing");
    const Fuzzing::Written after = Fuzzing::write(*document);
    claim(after.complete == before.complete && after.bytes == before.bytes,
          "touching every object changes no byte of what is written");
    return before.bytes;
}

void openAgain(const std::string& bytes, Rewriting expected) {
    // Through a stripe without a window: both ways of reading must agree.
    const auto again = Document::create(Fuzzing::plainStripeOf(Fuzzing::bytesOf(bytes)));
    claim(expected != Rewriting::Unloadable || !again, "an untrue table does not load");
    if (expected != Rewriting::Kept) return;

    claim(again != nullptr, "a written document opens");
    const Fuzzing::Written second = Fuzzing::write(*again);
    claim(second.complete, "a document opened again can be written");
    claim(second.bytes == bytes, "the second writing gives the bytes of the first");
}

/// Numbers as they were read: what comes back loses nothing that a writer can keep.
void rewriteFaithfully(Document& document) {
    document.faithfulNumbers(true);
    const Fuzzing::Written first = Fuzzing::write(document);
    const auto again = Document::create(Fuzzing::stripeOf(Fuzzing::bytesOf(first.bytes)));
    claim(again != nullptr, "a faithful rewrite opens");
    again->faithfulNumbers(true);
    for (const Tools::LossFound& loss : Tools::losses(again).value()) {
        claim(loss.kind != Loss::Fractions && loss.kind != Loss::Signs, "numbers are no loss");
        claim(loss.kind != Loss::EqualKeys, "keys come once");
        claim(loss.kind != Loss::Characters, "what is no character was lost before");
        claim(loss.kind != Loss::Gaps && loss.kind != Loss::Subsections, "the table is whole");
    }
    claim(Fuzzing::write(*again).bytes == first.bytes, "the second one gives the same bytes");
    document.faithfulNumbers(false);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzzing::silenceLog();
    const Ref<Document> document = Document::create(Fuzzing::stripeOf({data, size}));
    if (!document) return 0;

    Fuzzing::lookAtEverything(*document);
    decodeAll(*document);
    const Fuzzing::Written first = Fuzzing::write(*document);
    claim(first.bytes == writtenUntouched({data, size}), "looking changes no byte either");
    const Rewriting expected = Fuzzing::expectedOf(*document);
    claim(first.complete == (expected != Rewriting::Refused), "a writable document is written");
    if (first.complete) openAgain(first.bytes, expected);
    if (expected == Rewriting::Kept) rewriteFaithfully(*document);

    claim(document->cacheStreamData(), "streams can be cached");
    const Fuzzing::Written cached = Fuzzing::write(*document);
    claim(cached.bytes == first.bytes, "caching does not change what is written");
    return 0;
}
