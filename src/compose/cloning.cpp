#include "compose/cloning.h"

#include "host/on_failure.h"
#include "values/array.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/nesting.h"
#include "values/scalars.h"

#include <limits>

namespace Libraries::Files::PDF {

namespace {

Ref<Value> cloneNumber(const Number& number) {
    if (Ref<Host::String> spelling = number.spelling()) {
        return makeOrThrow<SpelledNumberObj>(number.integer(), number.fraction(),
                                             std::move(spelling));
    }
    return makeOrThrow<NumberObj>(number.integer(), number.fraction());
}

/// Copies a value under the interface of its kind.
template <class Interface, class Copy>
Ref<Value> cloneAs(const Ref<Value>& value, const char* castMessage, Copy copy) {
    const Ref<Interface> typed(as<Interface>(value));
    if (!typed) return fail(InvalidArgument, castMessage);
    return copy(typed);
}

} // namespace

template <class Copy>
auto Cloner::undoneOnFailure(Copy copy) {
    start_ = target_.objects.size();
    depth_ = 0;
    Host::OnFailure undo([this] { target_.objects.truncate(start_); });
    auto result = copy();
    undo.keep(result != nullptr);
    return result;
}

Ref<Value> Cloner::cloneValue(const Ref<Value>& value, const Ref<Document>& source) {
    if (!value || !source) return fail(NullArgument);
    return undoneOnFailure([&] { return clone(value, *source); });
}

Ref<ObjectRef> Cloner::addClonedObject(const Ref<Value>& value, const Ref<Document>& source) {
    if (!value) return fail(NullArgument);
    // Copying fails without a source, and so does adding the null value that it gives.
    if (!source) return fail(StepFailed);
    return undoneOnFailure([&] { return add(value, *source); });
}

bool Cloner::afford(std::uint64_t bytes, const Document& source) noexcept {
    if (&source == &self_ || budget_.takeValue(bytes)) return true;
    return fail(StepFailed, "More is to be copied than a sound document needs");
}

Ref<Value> Cloner::clone(const Ref<Value>& value, Document& source) {
    if (!afford(0, source)) return nullptr;
    switch (value->type()) {
    case Value::Type::Name:
        return cloneAs<Name>(value, "Failed to convert to be cloned name to Name",
                             [&](const auto& name) { return cloneName(*name, source); });
    case Value::Type::Boolean:
        return cloneAs<Boolean>(
            value, "Failed to convert to be cloned boolean to Boolean",
            [](const auto& boolean) { return makeOrThrow<BooleanObj>(boolean->value()); });
    case Value::Type::Number:
        return cloneAs<Number>(value, "Failed to convert to be cloned number to Number",
                               [](const auto& number) { return cloneNumber(*number); });
    case Value::Type::String:
        return cloneAs<String>(value, "Failed to convert to be cloned string to String",
                               [&](const auto& string) { return cloneString(*string, source); });
    case Value::Type::ObjectRef:
        return cloneAs<ObjectRef>(value,
                                  "Failed to convert to be cloned object reference to ObjectRef",
                                  [&](const auto& ref) { return cloneReference(ref, source); });
    case Value::Type::Dictionary:
        return cloneAs<Dictionary>(
            value, "Failed to convert to be cloned dictionary to Dictionary",
            [&](const auto& dict) { return cloneDictionary(*dict, source); });
    case Value::Type::Stream:
        return cloneAs<Stream>(value, "Failed to convert to be cloned stream to Stream",
                               [&](const auto& stream) { return cloneStream(stream, source); });
    case Value::Type::Array:
        return cloneAs<Array>(value, "Failed to convert to be cloned array to Array",
                              [&](const auto& array) { return cloneArray(*array, source); });
    case Value::Type::Null:
        return cloneAs<Null>(value, "Failed to convert to be cloned value to Null",
                             [](const auto&) { return makeOrThrow<NullObj>(); });
    default:
        return fail(NotSupported, "Value type not supported for cloning: ", value->type());
    }
}

Ref<Value> Cloner::cloneName(const Name& name, const Document& source) {
    const Ref<Host::String> text = name.name();
    if (text && !afford(text->length(), source)) return nullptr;
    return Name::create(text);
}

Ref<Value> Cloner::cloneString(const String& string, const Document& source) {
    if (Ref<Host::String> text = string.text()) {
        if (!afford(text->length(), source)) return nullptr;
        return makeOrThrow<StringObj>(std::move(text));
    }
    if (auto bytes = string.bytes()) {
        if (!afford(bytes->size(), source)) return nullptr;
        return makeOrThrow<StringObj>(std::move(bytes));
    }
    return fail(InvalidArgument, "Invalid String value to be cloned");
}

Ref<ObjectRef> Cloner::add(const Ref<Value>& value, Document& source) {
    Ref<Value> copy = clone(value, source);
    if (!copy) return fail(StepFailed);
    if (target_.objects.size() - start_ >= addedLimit) return fail(StepFailed);
    if (!budget_.takeObject()) {
        return fail(StepFailed, "More objects are to be copied than a sound document needs");
    }
    const std::uint32_t id = target_.nextObjectId;
    // Numbers must not wrap around.
    if (id == 0 || id == std::numeric_limits<std::uint32_t>::max()) return fail(StepFailed);

    ++target_.nextObjectId;
    target_.objects.append(id, 0, std::move(copy));
    target_.modified = true;
    return makeOrThrow<ObjectRefObj>(id, std::uint16_t{0});
}

Ref<Value> Cloner::cloneReference(const Ref<ObjectRef>& ref, Document& source) {
    const Nesting nesting(depth_);
    if (nesting.tooDeep()) return fail(StepFailed);
    const Ref<Object> object = source.getObject(ref);
    if (!object) {
        return fail(InvalidArgument, "Failed to resolve to be cloned object reference: ", ref);
    }
    const Ref<Value> value = object->value();
    if (!value) return fail(InvalidArgument, "To be cloned object has no value: ", object);
    if (&source == &self_) return ref;

    Ref<ObjectRef> added = add(value, source);
    if (!added) return fail(InvalidArgument, "Failed to clone object: ", object);
    return added;
}

Ref<Value> Cloner::cloneDictionary(const Dictionary& dict, Document& source) {
    const Nesting nesting(depth_);
    if (nesting.tooDeep()) return fail(StepFailed);
    const auto keys = dict.keys();
    if (!keys) {
        return fail(InvalidArgument, "Failed to retrieve keys of the be cloned dictionary");
    }
    auto result = makeOrThrow<DictionaryObj>();
    for (std::size_t index = 0; index < keys->size(); ++index) {
        const Ref<Host::String>& key = (*keys)[index];
        if (!key) {
            return fail(InvalidArgument, "Key in to be cloned dictionary is NULL: ", index);
        }
        if (!cloneEntry(dict, key, *result, source)) return nullptr;
    }
    return result;
}

bool Cloner::cloneEntry(const Dictionary& dict, const Ref<Host::String>& key, Dictionary& result,
                        Document& source) {
    const Ref<Value> value = dict.find(key);
    if (!value) {
        return fail(InvalidArgument,
                    "Failed to retrieve value of key in to be cloned dictionary: ", key);
    }
    Ref<Value> copy = afford(key->length(), source) ? clone(value, source) : nullptr;
    if (!copy) {
        return fail(InvalidArgument,
                    "Failed to clone value of key in to be cloned dictionary: ", key);
    }
    if (!result.set(key, std::move(copy))) {
        return fail(StepFailed, "Failed to set key to value in new dictionary: ", key);
    }
    return true;
}

Ref<Value> Cloner::cloneArray(const Array& array, Document& source) {
    const Nesting nesting(depth_);
    if (nesting.tooDeep()) return fail(StepFailed);
    auto result = makeOrThrow<ArrayObj>();
    const std::uint64_t size = array.size();
    for (std::uint64_t index = 0; index < size; ++index) {
        const Ref<Value> element = array.get(index);
        if (!element) {
            return fail(InvalidArgument, "Element of to be cloned array is NULL: ", index);
        }
        Ref<Value> copy = clone(element, source);
        if (!copy || !result->add(std::move(copy))) {
            return fail(StepFailed, "Failed to clone array element of to be cloned array: ", index);
        }
    }
    return result;
}

Ref<Value> Cloner::cloneStream(const Ref<Stream>& stream, Document& source) {
    const Ref<Dictionary> dict = stream->dict();
    if (!dict) return fail(InvalidArgument, "Failed to retrieve to be cloned stream's dictionary");
    Ref<SharedBytes> bytes = dataOf(stream, source);
    if (!bytes || !afford(bytes->span().size(), source)) return nullptr;
    Ref<Interfaces::Stripe> data = Host::make<CopiedData>(std::move(bytes));
    if (!data) return fail(StepFailed, "Failed to create adapter stream");

    const Ref<Value> dictCopy = clone(dict, source);
    Ref<Dictionary> newDict(as<Dictionary>(dictCopy));
    if (!newDict) return fail(StepFailed, "Failed to clone dictionary of to be cloned stream");
    return makeOrThrow<StreamObj>(std::move(newDict), std::move(data));
}

Ref<SharedBytes> Cloner::dataOf(const Ref<Stream>& stream, Document& source) {
    const Ref<Interfaces::Stripe> data = source.readStreamData(stream, false);
    if (!data) return fail(InvalidArgument, "Failed to retrieve to be cloned stream's data");
    const std::uint64_t elementSize = target_.source->elementSize();
    if (data->elementSize() != elementSize) {
        return fail(InvalidArgument, "To be cloned raw stream as a different element size (",
                    data->elementSize(), ") than the current stream (", elementSize, ")");
    }
    return streamBytes_.of(stream, *data);
}

} // namespace Libraries::Files::PDF
