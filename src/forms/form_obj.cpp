#include "forms/form_obj.h"

#include "forms/field_tree.h"
#include "values/failure.h"

namespace Libraries::Files::PDF {

using namespace Host::Literals;

bool FormObj::build(Document& document, std::uint64_t limit) {
    const Ref<Array> array = acroForm_->findAsArray("Fields"_str);
    return !array || buildFields(document, array, limit, fields_);
}

template <class Interface>
Ref<Interface> FormObj::entry(const Ref<Host::String>& key) const {
    Ref<Interface> result;
    readEntries(*acroForm_, {{key, storing(result)}});
    return result;
}

Ref<Boolean> FormObj::needAppearances() const noexcept {
    return entry<Boolean>("NeedAppearances"_str);
}

Quadding FormObj::quadding() const noexcept {
    Quadding result = Quadding::NotSet;
    readEntries(*acroForm_, {{"Q"_str, storingQuadding(result)}});
    return result;
}

Ref<String> FormObj::defaultAppearance() const noexcept {
    return entry<String>("DA"_str);
}

Ref<Dictionary> FormObj::defaultResources() const noexcept {
    Ref<Dictionary> result;
    const Ref<Document> document = document_.lock();
    readEntries(*acroForm_, {{"DR"_str, following(document, result)}});
    return result;
}

Ref<Array> FormObj::calculationOrder() const noexcept {
    return entry<Array>("CO"_str);
}

bool FormObj::setNeedAppearances(bool needed) noexcept {
    const Ref<Boolean> value = Host::make<BooleanObj>(needed);
    return value && acroForm_->set("NeedAppearances"_str, value);
}

} // namespace Libraries::Files::PDF
