#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/new_stream.h"
#include "tools/pages/page_tree_changes.h"
#include "tools/references.h"

#include <pdf/tools/editing.h>
#include <pdf/tools/pages.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// The object of what is to become a page, which is added where it is a dictionary.
Ref<Object> objectOf(Document& document, Changes& changes, const Ref<Value>& page) {
    if (!canBeUsed(document, page)) return nullptr;
    if (const Ref<Dictionary> entries = Host::cast<Dictionary>(page)) {
        const bool own = document.homeOf(*page) == Home::Here;
        if (own || !quietly([&] { return entries->find("Parent"); })) return changes.add(page);
        return fail(InvalidArgument, "A page with a Parent is that of some other document");
    }
    const Ref<ObjectRef> ref = Host::cast<ObjectRef>(page);
    Ref<Object> object = ref ? quietly([&] { return document.getObject(ref); }) : nullptr;
    if (object) return object;
    return fail(InvalidArgument, "A page is a dictionary, or a reference to one");
}

bool isUsable(const Document& document, const Ref<Object>& object,
              const std::vector<Ref<Value>>& kids) {
    const Ref<Value> ref = orThrow(referenceTo(object));
    if (std::ranges::any_of(kids, [&](const auto& kid) { return kid->equal(ref); })) {
        return fail(InvalidArgument, "Object is a page of the tree already: ", object);
    }
    const Ref<Dictionary> entries =
        Host::cast<Dictionary>(quietly([&] { return object->value(); }));
    if (!entries) return fail(InvalidArgument, "Object of a page is no dictionary: ", object);
    if (directBox(document, entryOf(document, *entries, "MediaBox"))) return true;
    return fail(PageInvalid, "Page has no valid MediaBox: ", object);
}

/// Puts a page in, behind the last one where no index is given; the caller keeps the changes.
Ref<ObjectRef> inserted(Document& document, Changes& changes, std::optional<std::uint64_t> index,
                        const Ref<Value>& page) {
    PageTreeChanges tree(document, changes);
    if (!tree.flatten()) return nullptr;
    auto& kids = tree.kids();
    const std::uint64_t place = index.value_or(kids.size());
    if (place > kids.size()) return fail(OutOfRange, "There is no page ", place);
    const Ref<Object> object = objectOf(document, changes, page);
    if (!object || !isUsable(document, object, kids)) return nullptr;
    Ref<ObjectRef> ref = orThrow(referenceTo(object));
    kids.insert(kids.begin() + static_cast<std::ptrdiff_t>(place), ref);
    if (!tree.adopt(Host::cast<Dictionary>(object->value())) || !tree.complete()) return nullptr;
    return ref;
}

Ref<ObjectRef> added(Document& document, Bytes content, const Ref<Array>& mediaBox,
                     const Ref<Value>& resources) {
    if (!canBeUsed(document, mediaBox) || !canBeUsed(document, resources)) return nullptr;
    Changes changes(document);
    const Ref<Stream> stream = newStream(content, true);
    const Ref<Object> object = stream ? changes.add(stream) : nullptr;
    if (!object) return nullptr;
    const Ref<Value> contents = orThrow(referenceTo(object));
    const Ref<Value> own = resources ? resources : orThrow(Dictionary::create());
    const Ref<Dictionary> page = orThrow(
        Dictionary::create({{"Contents", contents}, {"MediaBox", mediaBox}, {"Resources", own}}));
    Ref<ObjectRef> ref = inserted(document, changes, std::nullopt, page);
    if (ref) changes.keep();
    return ref;
}

} // namespace

bool flattenPages(Document& document) noexcept {
    return guarded([&] {
        Changes changes(document);
        PageTreeChanges tree(document, changes);
        if (!tree.flatten() || !tree.complete()) return false;
        changes.keep();
        return true;
    });
}

Ref<ObjectRef> insertPage(Document& document, std::uint64_t index,
                          const Ref<Value>& page) noexcept {
    if (!page) return fail(NullArgument);
    return guarded([&] {
        Changes changes(document);
        Ref<ObjectRef> ref = inserted(document, changes, index, page);
        if (ref) changes.keep();
        return ref;
    });
}

Ref<ObjectRef> addPage(Document& document, Bytes content, const Ref<Array>& mediaBox,
                       const Ref<Value>& resources) noexcept {
    if (!mediaBox) return fail(NullArgument);
    return guarded([&] { return added(document, content, mediaBox, resources); });
}

Ref<ObjectRef> removePage(Document& document, std::uint64_t index) noexcept {
    return guarded([&]() -> Ref<ObjectRef> {
        Changes changes(document);
        PageTreeChanges tree(document, changes);
        if (!tree.flatten()) return nullptr;
        auto& kids = tree.kids();
        if (index >= kids.size()) return fail(OutOfRange, "There is no page ", index);
        const auto place = kids.begin() + static_cast<std::ptrdiff_t>(index);
        Ref<ObjectRef> ref = Host::cast<ObjectRef>(*place);
        kids.erase(place);
        if (!tree.complete()) return nullptr;
        changes.keep();
        return ref;
    });
}

} // namespace Libraries::Files::PDF::Tools
