// The tools on any document: its pages before and after flattening, pages that come and go, stream
// data, and its bytes as a value.

#include "document_input.h"
#include "rewrite.h"
#include "target.h"
#include "walk.h"

#include <pdf/tools/pages.h>

#include <algorithm>

using namespace Libraries::Files::PDF;
using Fuzzing::claim;

namespace {

std::string textOf(const Ref<Value>& value) {
    const Ref<Host::String> text = value ? value->asText() : nullptr;
    return text ? text->utf8() : "-";
}

/// What holds for the pages, in order. Nothing where the tree is unsound.
std::string looksOf(const Document& document) {
    std::string looks;
    const auto pages = Tools::allPages(document);
    for (const Tools::Page& page : pages) {
        // Which dictionary the resources are, not what is in it: that may be a page or the root.
        looks += std::to_string(reinterpret_cast<std::uintptr_t>(page.resources.get())) + "\n";
        for (const Ref<Value>& value :
             {Ref<Value>(page.mediaBox), Ref<Value>(page.cropBox), Ref<Value>(page.rotate)})
            looks += textOf(value) + "\n";
    }
    return pages ? looks + "sound" : "";
}

void edit(Document& document, std::string_view text) {
    const auto box = Tools::as<Array>(Tools::parseValue("[ 0 0 9 9 ]"));
    const auto before = Tools::allPages(document);
    const std::uint64_t count = before->size();
    const auto added = Tools::addPage(document, text, box);
    if (!added) return; // no number is left
    claim(Tools::allPages(document)->size() == count + 1, "a page is added");
    claim(document.changed(), "that is a change");
    const auto removed = Tools::removePage(document, count);
    claim(removed && removed->equal(added), "the last page is the one that was added");
    claim(Tools::insertPage(document, count / 2, removed) != nullptr, "a page comes back");
    const auto object = document.getObject(removed);
    claim(document.getPages()[count / 2] == object, "it is where it was put");
    const auto contents =
        Host::cast<Stream>(Tools::resolve(document, object->valueAsDictionary()->find("Contents")));
    const auto bytes = Tools::decodedBytes(document, contents);
    claim(bytes && std::ranges::equal(bytes->bytes(), Tools::Bytes(text).span()), "it shows that");
}

void useStreams(Document& document) {
    for (const Ref<Stream>& stream : Fuzzing::streamsOf(document)) {
        constexpr std::uint64_t limit = 1 << 20;
        const auto bytes = Tools::decodedBytes(document, stream, limit);
        if (!bytes) continue;
        claim(bytes->size() <= limit, "no more than was allowed");
        if (!Tools::setStreamData(document, stream, bytes->bytes())) continue;
        const auto again = Tools::decodedBytes(document, stream);
        claim(again && std::ranges::equal(again->bytes(), bytes->bytes()), "what was set is there");
    }
}

void flatten(Document& document) {
    const std::string looks = looksOf(document);
    const bool changed = document.changed();
    claim(!changed, "looking is no change");
    claim(Tools::flattenPages(document) == !looks.empty(), "what was found can be flattened");
    claim(looksOf(document) == looks, "pages look as before");
    if (looks.empty()) return;
    Host::Error::set(Host::NoError);
    const auto flat = document.getPages();
    claim(flat.size() == Tools::allPages(document)->size(), "all pages are kids of the root");
    edit(document, "0 0 9 9 re f");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzzing::silenceLog();
    SyntaxError error;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto value = Tools::parseValue(text, &error);
    claim(value || error.offset <= size, "a failure is in the text");
    const auto document = Document::create(Fuzzing::stripeOf({data, size}));
    if (!document) return 0;
    flatten(*document);
    useStreams(*document);
    if (value) static_cast<void>(Tools::addObject(*document, value));
    for (const auto& object : document->getObjects()) {
        if (object->id() % 3 == 0) claim(document->removeObject(object), "objects can be removed");
    }
    static_cast<void>(Fuzzing::write(*document));
    return 0;
}
