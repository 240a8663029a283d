// A file of any structure: it opens or is refused, through any stripe alike. What opens is written
// so that the exact rules read it with equal values, and writes the same bytes again.

#include "target.h"
#include "walk.h"

#include <pdf/errors.h>

using namespace Libraries::Files::PDF;
using Fuzzing::claim;

namespace {

/// Of streams that is the dictionary; their data shows in what is written again.
Ref<Value> comparable(const Object& object) {
    const Ref<Stream> stream = Host::cast<Stream>(object.value());
    return stream ? Ref<Value>(stream->dict()) : object.value();
}

void compare(const Document& document, const Document& exact) {
    const auto objects = document.getObjects();
    claim(exact.getObjects().size() == objects.size(), "the exact rules find all objects");
    for (const auto& object : objects) {
        const auto other = exact.getObject(ObjectRef::create(object->id()));
        claim(other && other->valueType() == object->valueType(), "each is of the same kind");
        claim(comparable(*object)->equal(comparable(*other)), "each has the same value");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzzing::silenceLog();
    Host::Error::set(Host::NoError);
    const auto document = Document::create(Fuzzing::stripeOf({data, size}), Structure::Any);
    const std::uint32_t code = Host::Error::get();
    const auto same = Document::create(Fuzzing::plainStripeOf({data, size}), Structure::Any);
    claim((document == nullptr) == (same == nullptr), "stripes with and without a window agree");
    if (!document) {
        claim(code == NotPdf || code == FileDamaged || code == FileEncrypted ||
                  code == FilterUnsupported || code == LimitExceeded,
              "a refusal has one of its codes");
        return 0;
    }
    const Fuzzing::Written first = Fuzzing::write(*document);
    claim(first.complete, "what opens can be written");
    claim(Fuzzing::write(*same).bytes == first.bytes, "and is the same through any stripe");
    const auto exact = Document::create(Fuzzing::stripeOf(Fuzzing::bytesOf(first.bytes)));
    claim(exact != nullptr, "the exact rules read what is written");
    compare(*document, *exact);
    claim(!document->changed(), "looking changes nothing");
    const auto again =
        Document::create(Fuzzing::stripeOf(Fuzzing::bytesOf(first.bytes)), Structure::Any);
    claim(again != nullptr, "what is written is sound");
    claim(Fuzzing::write(*again).bytes == first.bytes, "and writes the same bytes");
    return 0;
}
