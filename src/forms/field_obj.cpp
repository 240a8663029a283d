#include "forms/field_obj.h"

namespace Libraries::Files::PDF {

using namespace Host::Literals;

FieldData::FieldData(FieldPlace place) : FieldPlace(std::move(place)) {
    if (const Ref<Number> number = dict->findAsNumber("Ff"_str, true)) {
        flags = static_cast<std::uint32_t>(number->integer());
    }
    const Ref<Document> live = document.lock();
    readEntries(*dict, {{"T"_str, storing(partialName)},
                        {"TU"_str, storing(alternateName)},
                        {"TM"_str, storing(mappingName)},
                        {"DA"_str, storing(defaultAppearance)},
                        {"DR"_str, following(live, defaultResources)},
                        {"Q"_str, storingQuadding(quadding)},
                        {"AP"_str, following(live, appearances)}});
}

// The tree belongs to the document. Without it a field stands alone, even if its parent still
// lives.
Ref<Field> FieldData::liveParent() const noexcept {
    return document.lock() ? parent.lock() : nullptr;
}

Ref<Value> FieldData::normalAppearance() const noexcept {
    if (!appearances) return nullptr;
    return followed(document.lock(), appearances->find("N"_str));
}

} // namespace Libraries::Files::PDF
