#include "forms/entries.h"

#include <pdf/errors.h>

#include <new>

namespace Libraries::Files::PDF {

void throwIfExhausted() {
    if (Host::Error::get() == OutOfMemory) throw std::bad_alloc();
}

void readEntries(const Dictionary& dict, std::initializer_list<EntryReader> readers) {
    for (const EntryReader& reader : readers) {
        if (const Ref<Value> value = dict.find(reader.key)) reader.handle(value, reader.key);
    }
}

Ref<Value> followed(const Ref<Document>& document, const Ref<Value>& value) noexcept {
    const Ref<ObjectRef> ref(ofKind<ObjectRef>(value));
    if (!ref) return value;
    const Ref<PDF::Object> object = document ? document->getObject(ref) : nullptr;
    return object ? object->value() : nullptr;
}

EntryHandler following(const Ref<Document>& document, Ref<Dictionary>& place) {
    return [&document, &place](const Ref<Value>& value, const Ref<Host::String>& key) {
        const Ref<Value> target = followed(document, value);
        if (!target) throwIfExhausted();
        place = expectEntry<Dictionary>(target ? target : value, key);
    };
}

EntryHandler storingQuadding(Quadding& place) {
    return [&place](const Ref<Value>& value, const Ref<Host::String>& key) {
        place = Quadding::NotSet;
        const Number* number = as<Number>(value);
        if (number == nullptr) {
            refuseField(castMessage<Number>, key);
        } else if (number->integer() < 0 || number->integer() > 2) {
            refuseField("Unexpected quadding value: ", value);
        } else {
            place = static_cast<Quadding>(number->integer() + 1);
        }
    };
}

} // namespace Libraries::Files::PDF
