#include "walk.h"

#include "target.h"

namespace Fuzzing {

using namespace Libraries::Files::PDF;

namespace {

void visitDictionary(const Dictionary& dict, const ValueVisitor& visitor) {
    for (const Ref<Host::String>& key : dict.keys())
        visit(dict.find(key), visitor);
}

void lookAt(const Dictionary& dict) {
    for (const Ref<Host::String>& key : dict.keys()) {
        claim(dict.find(key) != nullptr, "a key leads to a value");
        static_cast<void>(dict.findAsObjectRef(key));
        static_cast<void>(dict.findAsArray(key));
        static_cast<void>(dict.findAsDictionary(key));
        static_cast<void>(dict.findAsName(key));
        static_cast<void>(dict.findAsNumber(key));
        static_cast<void>(dict.findAsString(key));
    }
}

void lookAt(const Array& array) {
    for (std::uint64_t index = 0; index < array.size(); ++index) {
        claim(array.get(index) != nullptr, "an index leads to a value");
        static_cast<void>(array.getAsObjectRef(index));
        static_cast<void>(array.getAsName(index));
        static_cast<void>(array.getAsString(index));
    }
    claim(array.get(array.size()) == nullptr, "behind the end of an array there is nothing");
}

void lookAt(const Document& document, const Ref<Value>& value) {
    claim(!value->changed(), "what was only read is not changed");
    static_cast<void>(document.valueAsDict(value));
    if (const auto* dict = dynamic_cast<const Dictionary*>(value.get())) lookAt(*dict);
    if (const auto* array = dynamic_cast<const Array*>(value.get())) lookAt(*array);
    if (const auto* stream = dynamic_cast<const Stream*>(value.get())) {
        static_cast<void>(stream->compression());
    }
}

void lookAt(const Object& object) {
    const Ref<Value> value = object.value();
    claim(value != nullptr, "a loaded object has a value");
    claim(object.asText() != nullptr, "an object has a text form");
    claim(object.valueType() == value->type(), "an object's kind is its value's");
    static_cast<void>(object.valueAsDictionary());
    static_cast<void>(object.valueAsArray());
    static_cast<void>(object.valueAsStream());
    // What nests too deep has no text and equals nothing, so neither answer is certain.
    static_cast<void>(value->asText());
    static_cast<void>(value->equal(value));
}

} // namespace

void visit(const Ref<Value>& value, const ValueVisitor& visitor) {
    visitor(value);
    if (const auto* array = dynamic_cast<const Array*>(value.get())) {
        for (std::uint64_t index = 0; index < array->size(); ++index)
            visit(array->get(index), visitor);
    }
    if (const auto* dict = dynamic_cast<const Dictionary*>(value.get())) {
        visitDictionary(*dict, visitor);
    }
    if (const auto* stream = dynamic_cast<const Stream*>(value.get())) {
        visit(stream->dict(), visitor);
    }
}

void visitAll(const Document& document, const ValueVisitor& visitor) {
    visit(document.trailer(), visitor);
    for (const auto& object : document.getObjects())
        visit(object->value(), visitor);
}

std::vector<Ref<Stream>> streamsOf(const Document& document) {
    std::vector<Ref<Stream>> streams;
    for (const auto& object : document.getObjects()) {
        if (Ref<Stream> stream = object->valueAsStream()) streams.push_back(std::move(stream));
    }
    return streams;
}

void lookAtEverything(const Document& document) {
    static_cast<void>(document.getCatalog());
    static_cast<void>(document.getPageCatalog());
    static_cast<void>(document.getPages());
    for (const auto& object : document.getObjects())
        lookAt(*object);
    visitAll(document, [&](const Ref<Value>& value) { lookAt(document, value); });
}

} // namespace Fuzzing
