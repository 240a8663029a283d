// Any bytes through the import: what comes out opens, comes out of a second import as it is, and
// outlives a rewrite. The first byte says how to import, and whether by the limits that small files
// have to be cheap by.

#include "rewrite.h"
#include "target.h"
#include "walk.h"

#include <host/log.h>
#include <pdf/errors.h>
#include <pdf/import.h>

using namespace Libraries::Files::PDF;
using Fuzzing::claim;
using Import::normalise;

namespace {

void expectSound(const std::string& bytes) {
    const Ref<Document> document = Document::create(Fuzzing::stripeOf(Fuzzing::bytesOf(bytes)));
    claim(document != nullptr, "what was imported opens");
    claim(document->getPageCatalog() != nullptr, "it has a page tree");
    Fuzzing::lookAtEverything(*document);
    const Fuzzing::Written written = Fuzzing::write(*document);
    claim(written.complete, "it can be written");
    claim(Fuzzing::expectedOf(*document) == Fuzzing::Rewriting::Kept, "a rewrite keeps it");
    const auto again = Document::create(Fuzzing::stripeOf(Fuzzing::bytesOf(written.bytes)));
    claim(again != nullptr, "a rewrite opens");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzzing::silenceLog();
    Host::SysLogFilter::state(Host::SysLogFilter::reg("Lib.File.PDF.Import"), false);
    if (size == 0) return 0;
    Import::Options options;
    options.plainFilters = (data[0] & 1U) != 0;
    options.streamLimit = std::uint64_t{1} << 20;
    options.objectLimit = (data[0] & 8U) != 0 ? 0 : std::uint64_t{1} << 20;
    if ((data[0] & 2U) != 0) options.password = "secret";
    const Fuzzing::Bytes bytes(data + 1, size - 1);
    const auto source =
        (data[0] & 4U) != 0 ? Fuzzing::plainStripeOf(bytes) : Fuzzing::stripeOf(bytes);

    Host::Error::set(Host::NoError);
    const auto first = normalise(source, options);
    if (!first) {
        claim(Host::Error::get() >= NotPdf && Host::Error::get() < SourceNotRead,
              "a failure has a code of its own");
        return 0;
    }
    const std::string written = Fuzzing::contentsOf(*first);
    const auto second = normalise(first, options);
    claim(second != nullptr, "what was imported can be imported");
    claim(Fuzzing::contentsOf(*second) == written, "a second import changes nothing");
    claim(Import::openFrom(second, options).has_value(), "it opens in one call");
    expectSound(written);
    return 0;
}
