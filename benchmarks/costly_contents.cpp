#include "costly.h"
#include "modern_file.h"
#include "object_file.h"

#include <host/memory_stripe.h>
#include <pdf/tools/letterheads.h>
#include <pdf/tools/pages.h>
#include <pdf/tools/streams.h>

#include <algorithm>

namespace Benchmarks {
namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

/// A page tree, object 2, of pages with `page`, as many as go into `bytes`, behind object 3, which
/// is `shared`, and object 4, a content stream with `entries` and `data`.
std::string pagesOf(std::size_t bytes, const std::string& page, const std::string& shared,
                    const std::string& entries = "", const std::string& data = "q Q") {
    constexpr std::size_t around = 100; // what else an object takes, and the references to it
    const std::size_t count = bytes / (page.size() + around) + 1;
    ObjectFile file;
    file.add("<</Type/Catalog/Pages 2 0 R>>");
    std::string kids;
    for (std::size_t index = 0; index < count; ++index)
        kids += reference(5 + index);
    file.add("<</Type/Pages/Count " + std::to_string(count) + "/Kids[" + kids + "]>>");
    file.add(shared);
    file.addStream(entries, data);
    while (file.next() < 5 + count)
        file.add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 " + std::to_string(file.next()) + " 9]" +
                 page + ">>");
    return file.file();
}

/// Much more is referred to than may be written.
std::string sharedContents(std::size_t size) {
    return pagesOf(size, "/Contents 3 0 R", "[" + repeated("4 0 R ", 3 * size) + "]");
}

std::string sharedResources(std::size_t size) {
    std::string names;
    for (std::size_t name = 0; names.size() < size / 2; ++name)
        names += "/F" + std::to_string(name) + " 4 0 R";
    return pagesOf(size / 2, "/Contents 4 0 R/Resources 3 0 R", "<</XObject<<" + names + ">>>>");
}

/// Pages that draw one stream, which expands.
std::string sharedExpanding(std::size_t size) {
    return pagesOf(size / 2, "/Contents[4 0 R 4 0 R]", "0", "/Filter/FlateDecode",
                   deflated(repeated("q 1 0 0 1 0 0 cm ", 500 * size)));
}

std::string longPages(std::size_t size) {
    return pagesOf(size / 2, "/Contents 4 0 R/PieceInfo 3 0 R",
                   "<<" + repeated("/A(x)/B 1 ", size / 2) + ">>");
}

/// One page, listed again and again.
std::string listedOften(std::size_t size) {
    ObjectFile file;
    file.add("<</Type/Catalog/Pages 2 0 R>>");
    file.add("<</Type/Pages/Count 1/Kids[" + repeated("3 0 R ", size) + "]>>");
    file.add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents 4 0 R>>");
    file.addStream("", "q Q");
    return file.file();
}

/// Streams whose Filter is one list, object 3.
std::string sharedFilters(std::size_t size) {
    return pagesOf(size / 2, "/Contents 4 0 R", "[" + repeated("/A ", size / 2) + "]",
                   "/Filter 3 0 R");
}

/// A filter that is the stream itself.
std::string filterOfItself(std::size_t size) {
    return pagesOf(size / 2, "/Contents 4 0 R", "0", "/Filter 4 0 R", std::string(size / 2, 'x'));
}

/// Streams with `data`; the other entries are `entries`.
std::string streamsOf(std::size_t size, const std::string& entries, const std::string& data) {
    ObjectFile file;
    file.add("<</Type/Catalog/Pages 2 0 R>>");
    file.add("<</Type/Pages/Count 0/Kids[]>>");
    while (file.size() < size)
        file.addStream(entries, data);
    return file.file();
}

std::string oneBomb(std::size_t size) {
    return pagesOf(1, "", "0", "/Filter/FlateDecode", deflated(std::string(1000 * size, 'x')));
}

std::string predicted(std::size_t size) {
    return streamsOf(size, "/Filter/FlateDecode/DecodeParms<</Predictor 12/Columns 4000000000>>",
                     deflated("\2abc"));
}

Ref<Document> simple() {
    const std::string bytes = pagesOf(1, "/Contents 4 0 R", "0", "", "0 0 5 5 re f");
    const auto file = Host::MemoryStripe::create(
        std::span(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
    if (!file) return nullptr;
    return Document::create(file);
}

template <bool Above>
Tools::Result<void> layOnto(const Ref<Document>& document) {
    return Tools::letterhead(document, simple(), {.above = Above});
}

/// The file is the letterhead, each page of which is laid onto a page.
Ending layFile(const std::string& path) {
    const Ref<Document> letterhead = opened(path);
    if (!letterhead) return Ending::NotOpened;
    const Ref<Document> document = simple();
    Tools::LetterheadOptions options;
    options.mode = Tools::LetterheadPages::PageByPageThenLast;
    if (!document || !Tools::letterhead(document, letterhead, options)) return Ending::Refused;
    return saved(*document, path) ? Ending::Done : Ending::Refused;
}

Tools::Result<Ref<ObjectRef>> isolateFirst(const Ref<Document>& document) {
    auto pages = Tools::Pages::of(document);
    return pages ? pages->isolate(0, "Former") : Tools::Unexpected(pages.error());
}

Tools::Result<void> expand(const Ref<Document>& document) {
    return Tools::expandStreams(document);
}

constexpr CostlyFile files[] = {
    {"letterhead: beneath pages that share their contents", sharedContents,
     changeAndSave<layOnto<false>>, Ending::Refused},
    {"letterhead: above them", sharedContents, changeAndSave<layOnto<true>>, Ending::Refused},
    {"letterhead: beneath pages that share their resources", sharedResources,
     changeAndSave<layOnto<false>>, Ending::Done},
    {"letterhead: above them, of many names", sharedResources, changeAndSave<layOnto<true>>,
     Ending::Done},
    {"letterhead: beneath contents that expand", sharedExpanding, changeAndSave<layOnto<false>>,
     Ending::Done},
    {"letterhead: above contents that expand", sharedExpanding, changeAndSave<layOnto<true>>,
     Ending::Done},
    {"letterhead: beneath one page listed often", listedOften, changeAndSave<layOnto<false>>,
     Ending::Done},
    {"letterhead: beneath pages that share filters", sharedFilters, changeAndSave<layOnto<false>>,
     Ending::Done},
    {"letterhead: of shared contents", sharedContents, layFile, Ending::Refused},
    {"letterhead: of shared resources", sharedResources, layFile, Ending::Done},
    {"letterhead: of long dictionaries", longPages, layFile, Ending::Done},
    {"letterhead: of contents that expand", sharedExpanding, layFile, Ending::Refused},
    {"letterhead: of a filter that is its stream", filterOfItself, layFile, Ending::Done},
    {"letterhead: of a long list of filters", sharedFilters, layFile, Ending::Done},
    {"isolating: a page of many streams", sharedContents, changeAndSave<isolateFirst>,
     Ending::Refused},
    {"isolating: contents that expand", sharedExpanding, changeAndSave<isolateFirst>,
     Ending::Refused},
    {"expanding: one stream", oneBomb, changeAndSave<expand>, Ending::Refused},
    {"expanding: many streams",
     [](std::size_t size) {
         return streamsOf(size, "/Filter/FlateDecode", deflated(std::string(100'000, 'x')));
     },
     changeAndSave<expand>, Ending::Refused},
    {"expanding: predictors of 4000000000 columns", predicted, changeAndSave<expand>, Ending::Done},
    {"expanding: streams inside each other", streamsInsideEachOther, lookAt<expand>, Ending::Done},
    {"compressing: streams inside each other", streamsInsideEachOther,
     lookAt<Tools::compressStreams>, Ending::Refused},
};

} // namespace

std::span<const CostlyFile> costlyContents() {
    return files;
}

} // namespace Benchmarks
