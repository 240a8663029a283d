#include "tools/failure.h"
#include "tools/references.h"

#include <pdf/tools/editing.h>

#include <array>
#include <string>

namespace Libraries::Files::PDF::Tools {

namespace {

/// A kind of value, as people call it.
std::string_view nameOf(Value::Type kind) noexcept {
    constexpr std::array<std::string_view, 10> names = {
        "a value",     "a name",       "a boolean", "a number", "a string",
        "a reference", "a dictionary", "a stream",  "an array", "null"};
    return names[static_cast<std::size_t>(kind) % names.size()];
}

/// What `entry` leads to, of one kind. People know it as `noun` and `name`: "Entry ", "Root".
Ref<Value> found(const Document& document, const Ref<Value>& entry, std::string_view noun,
                 std::string_view name, Value::Type kind) {
    if (isNothing(entry)) fail(KeyNotFound, noun, name, " is not there");
    Ref<Value> value = follow(document, entry);
    if (!isNothing(value) && (kind == Value::Type::Invalid || value->type() == kind)) return value;

    const Ref<ObjectRef> ref = Host::cast<ObjectRef>(entry);
    if (!value && !ref) fail(ReferenceNotResolved, noun, name, " is a reference of another class");
    if (!value) fail(ReferenceNotResolved, noun, name, " leads nowhere, by object ", ref);
    if (isNothing(value)) fail(KeyNotFound, noun, name, " leads to null, by object ", ref);
    const std::string_view is = nameOf(value->type()), wanted = nameOf(kind);
    if (!ref) fail(UnexpectedKind, noun, name, " is ", is, " instead of ", wanted);
    fail(UnexpectedKind, noun, name, " is ", is, " instead of ", wanted, ", by object ", ref);
}

} // namespace

namespace Detail {

Result<Ref<Value>> get(const Ref<Document>& document, const Ref<Value>& value,
                       Value::Type kind) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        return found(*document, value, "The value", "", kind);
    });
}

Result<Ref<Value>> get(const Ref<Document>& document, const Ref<Dictionary>& from,
                       std::string_view key, Value::Type kind) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        requireArgument(from, "dictionary");
        requireHome(*document, from, "dictionary");
        return found(*document, findEntry(from, key), "Entry ", key, kind);
    });
}

Result<Ref<Value>> get(const Ref<Document>& document, const Ref<Array>& from, std::uint64_t index,
                       Value::Type kind) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        requireArgument(from, "array");
        requireHome(*document, from, "array");
        if (index >= from->size())
            fail(OutOfRange, "There is no element ", index, " in an array of ", from->size());
        return found(*document, from->get(index), "Element ", std::to_string(index), kind);
    });
}

} // namespace Detail

} // namespace Libraries::Files::PDF::Tools
