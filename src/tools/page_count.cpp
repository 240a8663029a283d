#include "tools/page_count.h"

#include <host/string.h>

namespace Libraries::Files::PDF::Tools {

using namespace Host::Literals;

namespace {

/// The value of an entry, behind a reference where it is one; null where that leads to none.
template <class Interface>
Ref<Interface> follow(const Document& document, const Ref<Dictionary>& from,
                      const Ref<Host::String>& key) noexcept {
    Ref<Value> value = from ? from->find(key) : nullptr;
    if (const Ref<ObjectRef> ref = Host::cast<ObjectRef>(value)) {
        const Ref<PDF::Object> object = document.getObject(ref);
        value = object ? object->value() : nullptr;
    }
    return Host::cast<Interface>(value);
}

} // namespace

std::optional<std::uint64_t> countPages(const Document& document) noexcept {
    const auto catalog = follow<Dictionary>(document, document.trailer(), "Root"_str);
    const auto root = follow<Dictionary>(document, catalog, "Pages"_str);
    const auto kids = follow<Array>(document, root, "Kids"_str);
    if (!kids) return std::nullopt;
    for (std::uint64_t index = 0; index < kids->size(); ++index) {
        const Ref<ObjectRef> ref = Host::cast<ObjectRef>(kids->get(index));
        if (!ref || !document.getObject(ref)) return std::nullopt;
    }
    return kids->size();
}

} // namespace Libraries::Files::PDF::Tools
