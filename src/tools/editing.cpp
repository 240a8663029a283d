#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/new_values.h"
#include "tools/references.h"

#include <pdf/tools/editing.h>

namespace Libraries::Files::PDF::Tools {

Result<Ref<ObjectRef>> referenceTo(const Ref<Object>& object) noexcept {
    return guarded([&] {
        requireArgument(object, "object");
        return newReference(object);
    });
}

Result<Ref<ObjectRef>> addObject(const Ref<Document>& document, const Ref<Value>& value) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        requireArgument(value, "value");
        requireHome(*document, value, "value");
        Changes changes(*document);
        Ref<ObjectRef> ref = changes.add(value);
        changes.keep();
        return ref;
    });
}

Result<void> removeObject(const Ref<Document>& document, const Ref<ObjectRef>& ref) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        requireArgument(ref, "reference");
        const Ref<Object> object = quietly([&] { return document->getObject(ref); });
        if (!object) fail(ObjectNotFound, "There is no object ", ref);
        orFail(document->removeObject(object));
    });
}

Result<Ref<Dictionary>> getOrAdd(const Ref<Document>& document, const Ref<Dictionary>& from,
                                 std::string_view key) noexcept {
    auto found = get<Dictionary>(document, from, key);
    if (found || found.error().code() != KeyNotFound) return found;
    return guarded([&] {
        Changes changes(*document);
        Ref<Dictionary> added = newDictionary();
        changes.set(from, key, changes.add(added));
        changes.keep();
        return added;
    });
}

} // namespace Libraries::Files::PDF::Tools
