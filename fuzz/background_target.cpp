// Lays one document beneath another: two documents from one input, joined end to beginning. The
// first byte chooses the mode.

#include "document_input.h"
#include "target.h"

#include <pdf/document.h>

using namespace Libraries::Files::PDF;
using Fuzzing::claim;

namespace {

/// What the pages' Contents entries look like.
std::vector<std::string> contentsOfPages(const Document& document) {
    std::vector<std::string> all;
    for (const auto& page : document.getPages()) {
        const Ref<Dictionary> dict = page->valueAsDictionary();
        const Ref<Host::String> key = Host::String::create("Contents");
        const Ref<Value> contents = dict ? dict->find(key) : nullptr;
        const Ref<Host::String> text = contents ? contents->asText() : nullptr;
        all.push_back(text ? text->utf8() : std::string("none"));
    }
    return all;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    Fuzzing::silenceLog();
    const auto [first, second] = Fuzzing::documentsOf({data + 1, size - 1});
    const Ref<Document> document = Document::create(Fuzzing::stripeOf(first));
    Ref<Document> foreign = Document::create(Fuzzing::stripeOf(second));
    if (!document || !foreign) return 0;

    const auto contents = contentsOfPages(*document);
    const Fuzzing::Written foreignBefore = Fuzzing::write(*foreign);
    const bool done = document->addBackground(foreign, data[0] % 5);
    claim(done || contentsOfPages(*document) == contents, "a failure leaves the pages' contents");
    claim(Fuzzing::write(*foreign).bytes == foreignBefore.bytes,
          "the foreign document is only read");
    foreign = nullptr;
    static_cast<void>(Fuzzing::write(*document));
    return 0;
}
