// The tools on any document: its pages before and after flattening, pages that come and go, stream
// data, its entries, and its bytes as a value.

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

/// What holds for the pages, in order.
std::string looksOf(const Tools::Pages& pages) {
    std::string looks;
    for (const Tools::Page& page : pages) {
        // Which dictionary the resources are, not what is in it: that may be a page or the root.
        looks += std::to_string(reinterpret_cast<std::uintptr_t>(page.resources.get())) + "\n";
        for (const Ref<Value>& value :
             {Ref<Value>(page.mediaBox), Ref<Value>(page.cropBox), Ref<Value>(page.rotate)})
            looks += textOf(value) + "\n";
    }
    return looks;
}

/// A page that is added goes, and comes back in the middle.
void edit(Tools::Pages& pages, std::string_view text) {
    const auto& document = pages.document();
    const auto box = Tools::get<Array>(document, Tools::parseValue("[ 0 0 9 9 ]").value()).value();
    const std::size_t count = pages.size();
    const auto added = pages.add(text, box);
    if (!added) return; // no number is left
    claim(pages.size() == count + 1, "a page is added");
    claim(document->changed(), "that is a change");
    const auto removed = pages.remove(count);
    claim(removed && (*removed)->equal(*added), "the last page is the one that was added");
    claim(pages.insert(count / 2, *removed).has_value(), "a page comes back");
    const Tools::Page& page = pages[count / 2];
    claim(page.object == document->getObject(*removed), "it is where it was put");
    claim(document->getPages()[count / 2] == page.object, "there in the document too");
    const auto contents = Tools::get<Stream>(document, page.dictionary, "Contents");
    const auto bytes = Tools::decodedBytes(document, contents.value_or(nullptr));
    claim(bytes && std::ranges::equal((*bytes)->bytes(), Tools::Bytes(text).span()),
          "it shows that");
    claim(looksOf(pages) == looksOf(Tools::Pages::of(document).value()), "what it tells is so");
}

void flatten(const Ref<Document>& document) {
    auto pages = Tools::Pages::of(document);
    claim(!document->changed(), "looking is no change");
    if (!pages) return;
    const std::string looks = looksOf(*pages);
    if (!pages->flatten()) {
        claim(!document->changed(), "a failure is no change");
        return;
    }
    claim(looksOf(*pages) == looks, "pages look as before");
    claim(document->getPages().size() == pages->size(), "all pages are kids of the root");
    edit(*pages, "0 0 9 9 re f");
}

void useStreams(const Ref<Document>& document) {
    for (const Ref<Stream>& stream : Fuzzing::streamsOf(*document)) {
        constexpr std::uint64_t limit = 1 << 20;
        const auto bytes = Tools::decodedBytes(document, stream, limit);
        if (!bytes) continue;
        claim((*bytes)->size() <= limit, "no more than was allowed");
        if (!Tools::setStreamData(document, stream, (*bytes)->bytes())) continue;
        const auto again = Tools::decodedBytes(document, stream);
        claim(again && std::ranges::equal((*again)->bytes(), (*bytes)->bytes()),
              "what was set is there");
    }
}

/// Each entry by each way to it. A failure says why.
void lookUp(const Ref<Document>& document, const Ref<Dictionary>& from) {
    constexpr std::uint32_t former = 77;
    const auto keys = from->keys();
    Host::Error::set(former);
    for (const Ref<Host::String>& key : *keys) {
        const std::string name = key->utf8();
        const auto value = Tools::get<Value>(document, from, name);
        claim(value || *value.error().text() != '\0', "a failure has a text");
        const auto entries = Tools::get<Dictionary>(document, from, name);
        const bool isDictionary = value && (*value)->type() == Value::Type::Dictionary;
        claim(entries.has_value() == isDictionary, "a dictionary is found as one");
        claim(!entries || Ref<Value>(*entries) == *value, "it is that value");
        const auto list = Tools::get<Array>(document, from, name);
        claim(!list || !Tools::get<Value>(document, *list, (*list)->size()), "arrays end");
    }
    claim(Host::Error::get() == former, "the thread's code is left alone");
}

void addEntries(const Ref<Document>& document, const Ref<Dictionary>& to) {
    for (const char* key : {"Info", "Root", "New"}) {
        const bool there = to->find(key) != nullptr;
        const auto found = Tools::get<Dictionary>(document, to, key);
        const auto entries = Tools::getOrAdd(document, to, key);
        claim(!found || entries == found, "what is there is given");
        claim(there || !entries || Tools::get<Dictionary>(document, to, key) == entries,
              "what was added is there");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzzing::silenceLog();
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto value = Tools::parseValue(text);
    claim(value || value.error().code() == Host::InvalidArgument, "it is no value");
    const auto document = Document::create(Fuzzing::stripeOf({data, size}));
    if (!document) return 0;
    flatten(document);
    useStreams(document);
    Fuzzing::visitAll(*document, [&](const Ref<Value>& each) {
        if (const auto entries = Host::cast<Dictionary>(each)) lookUp(document, entries);
    });
    addEntries(document, document->trailer());
    if (value) static_cast<void>(Tools::addObject(document, *value));
    for (const auto& object : document->getObjects()) {
        if (object->id() % 3 == 0) claim(document->removeObject(object), "objects can be removed");
    }
    static_cast<void>(Fuzzing::write(*document));
    return 0;
}
