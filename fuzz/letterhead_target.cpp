// Lays one document beneath another, or over it, page by page or the first page on all: two
// documents from one input, joined end to beginning. The first byte holds the options.

#include "document_input.h"
#include "rewrite.h"
#include "target.h"
#include "walk.h"

#include <pdf/tools/letterheads.h>
#include <pdf/tools/pages.h>

#include <algorithm>

using namespace Libraries::Files::PDF;
using Fuzzing::claim;

namespace {

/// A document, what it writes, and whether that is all of it.
struct Party {
    explicit Party(Fuzzing::Bytes bytes) : document(Document::create(Fuzzing::stripeOf(bytes))) {
        if (!document) return;
        before = Fuzzing::write(*document).bytes;
        isKept = Fuzzing::expectedOf(*document) == Fuzzing::Rewriting::Kept;
        Fuzzing::visitAll(*document, [&](const Ref<Value>& value) {
            const auto ref = Host::cast<ObjectRef>(value);
            if (ref && !document->getObject(ref)) isClosed = false;
        });
    }

    [[nodiscard]] bool isAsBefore() const { return Fuzzing::write(*document).bytes == before; }

    Ref<Document> document;
    std::string before;
    bool isKept = false;
    bool isClosed = true; ///< what leads nowhere may lead to an object that is added
};

/// Whether a page has a form by a name of letterheads.
bool hasLetterhead(const Ref<Document>& document, const Tools::Page& page) {
    const auto forms = Tools::get<Dictionary>(document, page.resources, "XObject");
    if (!forms) return false;
    const auto names = (*forms)->keys();
    return std::ranges::any_of(*names, [&](const Ref<Host::String>& key) {
        const std::string name = key->utf8();
        return name.starts_with("Letterhead") && Tools::get<Stream>(document, *forms, name);
    });
}

/// How many pages have one.
std::uint64_t covered(const Ref<Document>& document) {
    const auto pages = Tools::Pages::of(document).value();
    return static_cast<std::uint64_t>(std::ranges::count_if(
        pages, [&](const Tools::Page& page) { return hasLetterhead(document, page); }));
}

void lay(Party& party, Party& other, const Tools::LetterheadOptions& options) {
    auto pages = Tools::Pages::of(party.document);
    const auto sheets = Tools::Pages::of(other.document);
    if (pages && sheets && !sheets->empty()) {
        claim(!pages->insert(0, (*sheets)[0].dictionary), "it has pages of its own");
        claim(party.isAsBefore(), "no page of the other is taken");
    }
    const bool done = Tools::letterhead(party.document, other.document, options).has_value();
    claim(other.isAsBefore(), "the letterhead is as it was");
    claim(done || party.isAsBefore(), "a failure changes nothing");
    claim(!done || (pages && sheets), "sound trees alone get one");
    if (!done || !party.isClosed) return;
    const bool all = options.mode == Tools::LetterheadPages::FirstOnAll;
    claim(covered(party.document) >=
              (all ? pages->size() : std::min(pages->size(), sheets->size())),
          "each page has its letterhead");
    other.document = nullptr;
    const auto written = Fuzzing::write(*party.document);
    if (!party.isKept || !other.isKept) return;
    claim(written.complete, "it can be written");
    const auto again = Document::create(Fuzzing::stripeOf(Fuzzing::bytesOf(written.bytes)));
    claim(again && covered(again) == covered(party.document), "what is written has them too");
}

void isolate(const Fuzzing::Bytes& bytes) {
    Party party(bytes);
    auto pages = Tools::Pages::of(party.document);
    if (!pages || pages->empty()) return;
    const bool done = pages->isolate(0, "Form").has_value();
    claim(done || party.isAsBefore(), "a page stays as it is");
    claim(!done || !party.isClosed || Tools::Pages::of(party.document), "the tree stays sound");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    Fuzzing::silenceLog();
    const auto [first, second] = Fuzzing::documentsOf({data + 1, size - 1});
    Party party(first), other(second);
    if (!party.document || !other.document) return 0;
    Tools::LetterheadOptions options;
    if ((data[0] & 1) != 0) options.mode = Tools::LetterheadPages::PageByPage;
    options.above = (data[0] & 2) != 0;
    options.asIs = (data[0] & 4) != 0;
    lay(party, other, options);
    isolate(second);
    return 0;
}
