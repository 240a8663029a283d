#include "tools/pages/page_tree_changes.h"

#include "tools/failure.h"
#include "tools/new_values.h"
#include "tools/references.h"

namespace Libraries::Files::PDF::Tools {

namespace {

/// The dictionary with entries of its own, values shared.
Ref<Dictionary> copyOf(const Dictionary& dictionary) {
    Ref<Dictionary> copy = newDictionary();
    const auto keys = orThrow(dictionary.keys());
    for (const auto& key : keys) {
        if (!copy->set(key, dictionary.find(key))) throw std::bad_alloc();
    }
    return copy;
}

constexpr std::uint64_t referenceSize = 6; ///< bytes in a file, at least
constexpr std::uint64_t objectSize = 64;   ///< bytes that an object takes beside its value

/// Bytes that a dictionary takes in a file, about.
std::uint64_t sizeOf(const Dictionary& dictionary) {
    const auto text = quietly([&] { return dictionary.asText(); });
    return text ? text->length() : UINT32_MAX; // none: it lies too deep to be written
}

} // namespace

PageTreeChanges::PageTreeChanges(Changes& changes)
    : changes_(changes), tree_(readPageTree(changes.document())), root_(newReference(tree_.root)) {
    room_.read(referenceSize * tree_.pages.size());
    kids_.reserve(tree_.pages.size() + 1);
    for (FoundPage& found : tree_.pages)
        flattenPage(found);
}

void PageTreeChanges::flattenPage(FoundPage& found) {
    Page& page = found.page;
    if (!seen_.insert(page.object->id()).second) copyPage(page);
    kids_.emplace_back(newReference(page.object));
    inherit(found);
    makeContentsDirect(page);
    adopt(page.dictionary);
}

/// What a page that is listed again inherits, and what is laid beneath it, need not be what the
/// first one has.
void PageTreeChanges::copyPage(Page& page) {
    const auto [size, isNew] = sizes_.try_emplace(page.object->id());
    if (isNew) {
        size->second = sizeOf(*page.dictionary);
        room_.read(size->second);
    }
    takeRoom(size->second + objectSize, page.object);
    page.dictionary = copyOf(*page.dictionary);
    page.object = changes_.addObject(page.dictionary);
}

void PageTreeChanges::takeRoom(std::uint64_t bytes, const Ref<Object>& page) {
    if (!room_.take(bytes)) fail(OutOfRange, "Copies take too much room for page ", page);
}

void PageTreeChanges::adopt(const Ref<Dictionary>& page) {
    changes_.setUnlessEqual(page, "Type", newName("Page"));
    changes_.setUnlessEqual(page, "Parent", root_);
}

void PageTreeChanges::inherit(const FoundPage& found) {
    const Page& page = found.page;
    const Ref<Value> inherited[] = {resourcesOf(found), page.mediaBox, page.cropBox, page.rotate};
    for (std::size_t index = 0; index < inheritable.size(); ++index) {
        if (found.attributes.own[index]) continue;
        // An entry that is there all the same is null, or that of the page it was copied from.
        const std::string_view key = inheritable[index];
        if (findEntry(page.dictionary, key) || inherited[index])
            changes_.set(page.dictionary, key, inherited[index]);
    }
}

/// The entry for the page: what stands directly above it becomes an object, which pages share.
Ref<Value> PageTreeChanges::resourcesOf(const FoundPage& found) {
    const Ref<Value>& entry = found.attributes.values.front();
    const bool direct = entry && entry->type() != Value::Type::ObjectRef;
    if (!direct || found.attributes.own.front()) return entry;
    Ref<ObjectRef>& shared = resources_[entry.get()];
    if (!shared) shared = changes_.add(entry);
    return shared;
}

void PageTreeChanges::makeContentsDirect(const Page& page) {
    const Document& document = changes_.document();
    const Ref<Value> entry = entryOf(document, page.dictionary, "Contents");
    if (!entry || entry->type() != Value::Type::ObjectRef) return;
    const Ref<Array> streams = followTo<Array>(document, entry);
    if (!streams) return;
    const std::uint64_t size = streams->size() * referenceSize;
    if (contents_.emplace(streams.get(), streams).second) room_.read(size);
    takeRoom(size, page.object);
    changes_.set(page.dictionary, "Contents", newArray(elementsOf(streams)));
}

void PageTreeChanges::complete() {
    const Ref<Dictionary>& root = tree_.rootEntries;
    changes_.setUnlessEqual(root, "Kids", newArray(kids_));
    changes_.setUnlessEqual(root, "Count", newNumber(kids_.size()));
    for (const std::string_view key : inheritable)
        changes_.drop(root, key);
}

} // namespace Libraries::Files::PDF::Tools
