#include "values/array.h"

#include "host/guard.h"
#include "values/failure.h"
#include "values/nesting.h"
#include "values/scalars.h"
#include "values/typed_access.h"

namespace Libraries::Files::PDF {

namespace {

template <class Interface>
Ref<Interface> getAs(const Array& array, std::uint64_t index, const char* castMessage) noexcept {
    const Ref<Value> element = array.get(index);
    if (!element) return fail(Host::Error::get(), "Index out of range in array: ", index);
    return expect<Interface>(element, castMessage);
}

} // namespace

Ref<Array> Array::create(const std::vector<Ref<Value>>& elements) noexcept {
    return Host::guarded([&]() -> Ref<Array> {
        return makeOrThrow<ArrayObj>(ArrayObj::Elements(elements.begin(), elements.end()));
    });
}

Ref<ObjectRef> Array::getAsObjectRef(std::uint64_t index) const noexcept {
    return getAs<ObjectRef>(*this, index, "Failed to cast value to ObjectRef");
}

Ref<Name> Array::getAsName(std::uint64_t index) const noexcept {
    return getAs<Name>(*this, index, "Failed to cast value to Name");
}

Ref<String> Array::getAsString(std::uint64_t index) const noexcept {
    return getAs<String>(*this, index, "Failed to cast value to String");
}

Ref<Value> ArrayObj::get(std::uint64_t index) const noexcept {
    return index < elements_.size() ? elements_[index] : nullptr;
}

bool ArrayObj::add(Ref<Value> value) noexcept {
    if (!value) return fail(NullArgument);
    return Host::guarded([&] {
        elements_.push_back(std::move(value));
        return true;
    });
}

Ref<Host::String> ArrayObj::asText() const noexcept {
    const Nesting nesting(walkDepth());
    if (nesting.tooDeep()) return fail(StepFailed);
    return Host::guarded([&]() -> Ref<Host::String> {
        Host::StringBuilder text;
        text.append("[");
        for (const Ref<Value>& element : elements_) {
            if (!element) {
                text.append(" null");
                continue;
            }
            const Ref<Host::String> elementText = element->asText();
            if (!elementText) return nullptr;
            text.append(*elementText);
        }
        text.append(" ]");
        return text.build();
    });
}

bool ArrayObj::equal(Ref<Value> other) const noexcept {
    const Array* array = ofKind<Array>(other);
    if (array == nullptr || array->size() != size()) return false;
    const Nesting nesting(walkDepth());
    if (nesting.tooDeep()) return false;
    for (std::uint64_t index = 0; index < size(); ++index) {
        if (!elements_[index] || !elements_[index]->equal(array->get(index))) return false;
    }
    return true;
}

} // namespace Libraries::Files::PDF
