#include "tools/pages/page_tree_changes.h"

#include "tools/failure.h"
#include "tools/references.h"

#include <pdf/tools/editing.h>

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// The dictionary with entries of its own, values shared.
Ref<Dictionary> copyOf(const Dictionary& dictionary) {
    Ref<Dictionary> copy = orThrow(Dictionary::create());
    const auto keys = orThrow(dictionary.keys());
    for (const auto& key : keys) {
        if (!copy->set(key, dictionary.find(key))) throw std::bad_alloc();
    }
    return copy;
}

/// Bytes that copies may take for each byte of what was read, and beyond that.
constexpr std::uint64_t mostCopies = 64;
constexpr std::uint64_t alwaysCopied = 1 << 20;

constexpr std::uint64_t referenceSize = 6; ///< bytes in a file, at least
constexpr std::uint64_t objectSize = 64;   ///< bytes that an object takes beside its value

/// Bytes that a dictionary takes in a file, about.
std::uint64_t sizeOf(const Dictionary& dictionary) {
    const auto text = quietly([&] { return dictionary.asText(); });
    return text ? text->length() : UINT32_MAX; // none: it lies too deep to be written
}

} // namespace

bool PageTreeChanges::flatten() {
    if (!readPageTree(document_, tree_)) return false;
    root_ = orThrow(referenceTo(tree_.root));
    kids_.reserve(tree_.pages.size() + 1);
    room_ = alwaysCopied + mostCopies * referenceSize * tree_.pages.size();
    return std::ranges::all_of(tree_.pages, [&](FoundPage& found) { return flattenPage(found); });
}

bool PageTreeChanges::flattenPage(FoundPage& found) {
    Page& page = found.page;
    if (!seen_.insert(page.object->id()).second && !copyPage(page)) return false;
    kids_.emplace_back(orThrow(referenceTo(page.object)));
    return inherit(found) && makeContentsDirect(page) && adopt(page.dictionary);
}

/// What a page that is listed again inherits, and what is laid beneath it, need not be what the
/// first one has.
bool PageTreeChanges::copyPage(Page& page) {
    const auto [size, isNew] = sizes_.try_emplace(page.object->id());
    if (isNew) {
        size->second = sizeOf(*page.dictionary);
        room_ += mostCopies * size->second;
    }
    if (!takeRoom(size->second + objectSize, page.object)) return false;
    page.dictionary = copyOf(*page.dictionary);
    page.object = changes_.add(page.dictionary);
    return page.object != nullptr;
}

bool PageTreeChanges::takeRoom(std::uint64_t bytes, const Ref<Object>& page) {
    if (bytes > room_) return fail(OutOfRange, "Copies take too much room for page ", page);
    room_ -= bytes;
    return true;
}

bool PageTreeChanges::adopt(const Ref<Dictionary>& page) {
    return setUnlessSame(page, "Type", orThrow(Name::create("Page"))) &&
           setUnlessSame(page, "Parent", root_);
}

bool PageTreeChanges::inherit(const FoundPage& found) {
    const Page& page = found.page;
    Ref<Value> resources;
    if (!findResources(found, resources)) return false;
    const Ref<Value> inherited[] = {resources, page.mediaBox, page.cropBox, page.rotate};
    for (std::size_t index = 0; index < inheritable.size(); ++index) {
        if (found.attributes.own[index]) continue;
        // An entry that is there all the same is null, or that of the page it was copied from.
        const std::string_view key = inheritable[index];
        const bool there = quietly([&] { return page.dictionary->find(key); }) != nullptr;
        if (!there && !inherited[index]) continue;
        if (!changes_.set(page.dictionary, key, inherited[index])) return false;
    }
    return true;
}

bool PageTreeChanges::findResources(const FoundPage& found, Ref<Value>& resources) {
    const Ref<Value>& entry = found.attributes.values.front();
    resources = entry;
    const bool direct = entry && entry->type() != Value::Type::ObjectRef;
    if (!direct || found.attributes.own.front()) return true;
    Ref<ObjectRef>& shared = resources_[entry.get()];
    if (!shared) {
        const Ref<Object> object = changes_.add(entry);
        if (!object) return false;
        shared = orThrow(referenceTo(object));
    }
    resources = shared;
    return true;
}

bool PageTreeChanges::makeContentsDirect(const Page& page) {
    const Ref<Value> entry = entryOf(document_, *page.dictionary, "Contents");
    if (!entry || entry->type() != Value::Type::ObjectRef) return true;
    const Ref<Array> streams = Host::cast<Array>(follow(document_, entry));
    if (!streams) return true;
    const std::uint64_t size = streams->size() * referenceSize;
    if (contents_.emplace(streams.get(), streams).second) room_ += mostCopies * size;
    if (!takeRoom(size, page.object)) return false;
    std::vector<Ref<Value>> elements;
    for (std::uint64_t index = 0; index < streams->size(); ++index)
        elements.push_back(streams->get(index));
    return changes_.set(page.dictionary, "Contents", orThrow(Array::create(elements)));
}

bool PageTreeChanges::setUnlessSame(const Ref<Dictionary>& dictionary, std::string_view key,
                                    const Ref<Value>& value) {
    const Ref<Value> former = quietly([&] { return dictionary->find(key); });
    return (former && former->equal(value)) || changes_.set(dictionary, key, value);
}

bool PageTreeChanges::complete() {
    const Ref<Dictionary>& root = tree_.rootEntries;
    const Ref<Value> count = orThrow(Number::create(static_cast<std::int64_t>(kids_.size())));
    if (!setUnlessSame(root, "Kids", orThrow(Array::create(kids_)))) return false;
    if (!setUnlessSame(root, "Count", count)) return false;
    return std::ranges::all_of(inheritable,
                               [&](std::string_view key) { return changes_.drop(root, key); });
}

} // namespace Libraries::Files::PDF::Tools
