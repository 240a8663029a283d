#include "tools/new_values.h"

#include "spelling/names.h"
#include "tools/failure.h"
#include "tools/stored_data.h"

namespace Libraries::Files::PDF::Tools {

Ref<Name> newName(std::string_view name) {
    return orThrow(Name::create(name));
}

std::string spelledName(std::string_view text) {
    if (text.empty() || text.find('\0') != std::string_view::npos)
        fail(InvalidArgument, "No name is empty or holds a null character");
    std::string name;
    for (const char character : text)
        Spelling::appendNameCharacter(name, character);
    return name;
}

Ref<Number> newNumber(std::uint64_t number) {
    return orThrow(Number::create(static_cast<std::int64_t>(number)));
}

Ref<Array> newArray(const std::vector<Ref<Value>>& elements) {
    return orThrow(Array::create(elements));
}

Ref<Dictionary> newDictionary(std::initializer_list<Dictionary::Entry> entries) {
    return orThrow(Dictionary::create(entries));
}

void put(const Ref<Dictionary>& dictionary, std::string_view key, const Ref<Value>& value) {
    if (!dictionary->set(key, value)) throw std::bad_alloc();
}

Ref<Stream> newStream(Bytes bytes, Storing storing) {
    const Ref<Dictionary> entries = newDictionary();
    if (storing == Storing::Deflated) put(entries, "Filter", newName("FlateDecode"));
    return newStream(entries, stored(bytes, storing));
}

Ref<Stream> newStream(const Ref<Dictionary>& entries, const Ref<Host::MemoryStripe>& data) {
    put(entries, "Length", newNumber(data->size()));
    return makeOrThrow<StreamObj>(entries, Ref<Interfaces::Stripe>(data));
}

Ref<ObjectRef> newReference(const Ref<Object>& object) {
    return orThrow(ObjectRef::create(object->id(), object->generation()));
}

} // namespace Libraries::Files::PDF::Tools
