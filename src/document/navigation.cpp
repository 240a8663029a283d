#include "host/guard.h"
#include "values/array.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/look_up.h"
#include "values/scalars.h"

#include <host/string.h>
#include <pdf/document.h>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

using Pages = Host::StackVector<Ref<PDF::Object>>;

/// Appends the page at an index of the Kids array. False, logged with the code set, on failure.
bool collectPage(const Document& document, const Array& kids, std::uint64_t index, Pages& pages) {
    const Ref<ObjectRef> ref = kids.getAsObjectRef(index);
    if (!ref) {
        return fail(PageTreeInvalid,
                    "Failed to retrieve pages object's Kids entry object reference ", index);
    }
    Ref<PDF::Object> page = document.getObject(ref);
    if (!page) {
        return fail(PageTreeInvalid, "Failed to resolve page object reference entry ", index);
    }
    pages.push_back(std::move(page));
    return true;
}

} // namespace

Ref<PDF::Object> Document::getCatalog() const noexcept {
    const Ref<Dictionary> root = trailer();
    if (!root) return fail(NoTrailer, "Document has no root dictionary");
    const Ref<ObjectRef> ref = root->findAsObjectRef("Root"_str);
    if (!ref) return fail(RootMissing, "Failed to retrieve root object reference");
    Ref<PDF::Object> object = getObject(ref);
    if (!object) return fail(RootInvalid, "Document has no root object");
    const Ref<Dictionary> dict = object->valueAsDictionary();
    if (!dict) return fail(RootInvalid, "Failed to retrieve root object dictionary");

    const Ref<Name> type = dict->findAsName("Type"_str);
    if (!type) return fail(CatalogInvalid, "Root object has no valid Type entry");
    if (const Ref<Host::String> name = type->name(); !name || !name->equals("Catalog")) {
        return fail(CatalogInvalid, "Root object Type entry is not of type Catalog. Got: ", name);
    }
    return object;
}

Ref<PDF::Object> Document::getPageCatalog() const noexcept {
    const Ref<PDF::Object> catalog = getCatalog();
    if (!catalog) return fail(RootInvalid, "Document has no root object");
    const Ref<Dictionary> catalogDict = catalog->valueAsDictionary();
    if (!catalogDict) return fail(RootInvalid, "Failed to retrieve root object dictionary");
    const Ref<ObjectRef> ref = catalogDict->findAsObjectRef("Pages"_str);
    if (!ref) return fail(CatalogInvalid, "Failed to retrieve pages object reference");
    Ref<PDF::Object> object = getObject(ref);
    if (!object) return fail(PageTreeInvalid, "Failed to retrieve pages object");
    const Ref<Dictionary> dict = object->valueAsDictionary();
    if (!dict) return fail(PageTreeInvalid, "Failed to retrieve pages object dictionary");

    const Ref<Name> type = dict->findAsName("Type"_str);
    if (!type) return fail(PageTreeInvalid, "Pages object has no valid Type entry");
    if (const Ref<Host::String> name = type->name(); !name || !name->equals("Pages")) {
        return fail(PageTreeInvalid, "Pages object Type entry is not of type Pages. Got: ", name);
    }
    return object;
}

Host::StackVector<Ref<PDF::Object>> Document::getPages() const noexcept {
    const Ref<PDF::Object> pageTree = getPageCatalog();
    if (!pageTree) return fail(PageTreeInvalid, "Failed to retrieve pages object");
    const Ref<Dictionary> dict = pageTree->valueAsDictionary();
    if (!dict) return fail(PageTreeInvalid, "Failed to retrieve pages object dictionary");
    const Ref<Array> kids = dict->findAsArray("Kids"_str);
    if (!kids) return fail(PageTreeInvalid, "Pages object has no valid Kids entry");

    return Host::guarded([&]() -> Pages {
        Pages pages;
        for (std::uint64_t index = 0; index < kids->size(); ++index) {
            if (!collectPage(*this, *kids, index, pages)) return {};
        }
        return pages;
    });
}

Ref<Dictionary> Document::valueAsDict(Ref<Value> value) const noexcept {
    if (!value) return fail(NullArgument);
    if (value->type() == Value::Type::ObjectRef) {
        const Ref<ObjectRef> ref(as<ObjectRef>(value));
        if (!ref) return fail(BadReference, "Failed to object reference value to ObjectRef");
        const Ref<PDF::Object> object = getObject(ref);
        if (!object && Host::Error::get() == OutOfMemory) return nullptr;
        if (!object) return fail(ReferenceNotResolved, "Failed to resolve object reference");
        LookedUp found = lookUpValue(*object);
        if (found.isExhausted()) return fail(OutOfMemory);
        value = std::move(found.value);
        if (!value) return fail(ObjectUnreadable, "Value of resolved object is NULL");
    }
    if (value->type() != Value::Type::Dictionary) {
        return fail(ObjectUnreadable, "Invalid object type ", value->type());
    }
    Ref<Dictionary> dict(as<Dictionary>(value));
    if (!dict) return fail(BadReference, "Failed to cast dictionary value to Dictionary");
    return dict;
}

} // namespace Libraries::Files::PDF
