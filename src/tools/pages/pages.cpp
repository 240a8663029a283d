#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/new_values.h"
#include "tools/pages/page_tree_changes.h"
#include "tools/references.h"

#include <pdf/tools/pages.h>

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// The object of what is to become a page, which is added where it is a dictionary.
Ref<Object> objectOf(Changes& changes, const Ref<Value>& page) {
    const Document& document = changes.document();
    requireHome(document, page, "page");
    if (const Ref<Dictionary> entries = Host::cast<Dictionary>(page)) {
        const bool own = document.homeOf(*page) == Home::Here;
        if (own || !findEntry(entries, "Parent")) return changes.addObject(page);
        fail(InvalidArgument, "The page has a Parent, and is no object's of this document");
    }
    const Ref<ObjectRef> ref = Host::cast<ObjectRef>(page);
    Ref<Object> object = ref ? quietly([&] { return document.getObject(ref); }) : nullptr;
    if (!object) fail(InvalidArgument, "A page is a dictionary, or a reference to one");
    return object;
}

/// The dictionary of an object that can become a page.
Ref<Dictionary> pageEntries(const Document& document, const Ref<Object>& object,
                            const std::vector<Ref<Value>>& kids) {
    Ref<Dictionary> entries = Host::cast<Dictionary>(quietly([&] { return object->value(); }));
    if (!entries) fail(InvalidArgument, "Object of a page is no dictionary: ", object);
    const auto isThis = [&](const Ref<Value>& kid) { return follow(document, kid) == entries; };
    const auto former = std::ranges::find_if(kids, isThis);
    if (former != kids.end()) {
        fail(InvalidArgument,
             "Object is a page of the tree already: ", objectBehind(document, *former));
    }
    if (!directBox(document, entryOf(document, entries, "MediaBox"))) {
        fail(PageInvalid, "Page has no valid MediaBox: ", object);
    }
    return entries;
}

/// Puts a page in.
Ref<ObjectRef> inserted(Changes& changes, PageTreeChanges& tree, std::uint64_t index,
                        const Ref<Value>& page) {
    auto& kids = tree.kids();
    if (index > kids.size()) failWithoutPage(index, kids.size());
    const Ref<Object> object = objectOf(changes, page);
    const Ref<Dictionary> entries = pageEntries(changes.document(), object, kids);
    Ref<ObjectRef> ref = newReference(object);
    kids.insert(kids.begin() + static_cast<std::ptrdiff_t>(index), ref);
    tree.adopt(entries);
    return ref;
}

} // namespace

Pages::Pages(Ref<Document> document, std::vector<Page> pages) noexcept
    : document_(std::move(document)), pages_(std::move(pages)) {}

Result<Pages> Pages::of(const Ref<Document>& document) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        return Pages(document, pagesOf(*document));
    });
}

/// Changes the flattened tree by `change(changes, tree)`, and reads it anew.
template <class Change>
auto Pages::change(Change change) noexcept {
    return guarded([&] {
        requireArgument(document_, "document");
        Changes changes(*document_);
        PageTreeChanges tree(changes);
        auto given = change(changes, tree);
        tree.complete();
        pages_ = pagesOf(*document_);
        changes.keep();
        return given;
    });
}

Result<void> Pages::flatten() noexcept {
    const auto nothing = [](Changes& /*changes*/, PageTreeChanges& /*tree*/) { return true; };
    return change(nothing).transform([](bool /*done*/) {});
}

Result<Ref<ObjectRef>> Pages::insert(std::uint64_t index, const Ref<Value>& page) noexcept {
    return change([&](Changes& changes, PageTreeChanges& tree) {
        requireArgument(page, "page");
        return inserted(changes, tree, index, page);
    });
}

Result<Ref<ObjectRef>> Pages::add(Bytes content, const Ref<Array>& mediaBox,
                                  const Ref<Value>& resources) noexcept {
    return change([&](Changes& changes, PageTreeChanges& tree) {
        requireArgument(mediaBox, "MediaBox");
        requireHome(*document_, mediaBox, "MediaBox");
        requireHome(*document_, resources, "dictionary of resources");
        const Ref<Value> own = resources ? resources : newDictionary();
        const Ref<Dictionary> page =
            newDictionary({{"Contents", changes.add(newStream(content, Storing::Deflated))},
                           {"MediaBox", mediaBox},
                           {"Resources", own}});
        return inserted(changes, tree, tree.kids().size(), page);
    });
}

Result<Ref<ObjectRef>> Pages::remove(std::uint64_t index) noexcept {
    return change([&](Changes& /*changes*/, PageTreeChanges& tree) {
        auto& kids = tree.kids();
        if (index >= kids.size()) failWithoutPage(index, kids.size());
        const auto place = kids.begin() + static_cast<std::ptrdiff_t>(index);
        Ref<ObjectRef> ref = Host::cast<ObjectRef>(*place);
        kids.erase(place);
        return ref;
    });
}

} // namespace Libraries::Files::PDF::Tools
