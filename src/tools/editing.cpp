#include "tools/failure.h"
#include "tools/references.h"

#include <pdf/tools/editing.h>

#include <algorithm>
#include <vector>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Whether the text comes back as it is from a literal string.
bool isPlain(const Host::String& text) noexcept {
    constexpr char32_t firstPrintable = 0x20;
    constexpr char32_t deleteCode = 0x7F;
    const std::string_view codes = text.narrow();
    return std::ranges::all_of(codes, [](char code) {
        const bool control = static_cast<unsigned char>(code) < firstPrintable;
        return code != '\\' && code != deleteCode && (!control || code == '\n');
    });
}

Ref<String> utf16String(const Host::String& text) {
    std::vector<unsigned char> bytes = {0xFE, 0xFF};
    for (const char16_t unit : text.utf16()) {
        bytes.push_back(static_cast<unsigned char>(unit >> 8));
        bytes.push_back(static_cast<unsigned char>(unit & 0xFF));
    }
    return orThrow(String::create(orThrow(Host::TConstArray<unsigned char>::create(bytes))));
}

} // namespace

Ref<String> textString(std::string_view utf8) noexcept {
    return guarded([&]() -> Ref<String> {
        const Ref<Host::String> text = orThrow(Host::String::create(utf8));
        return isPlain(*text) ? orThrow(String::create(text)) : utf16String(*text);
    });
}

Ref<ObjectRef> referenceTo(const Ref<Object>& object) noexcept {
    if (object) return ObjectRef::create(object->id(), object->generation());
    Host::Error::set(NullArgument);
    return nullptr;
}

Ref<ObjectRef> addObject(Document& document, Ref<Value> value) noexcept {
    if (!canBeUsed(document, value)) return nullptr;
    const Ref<Object> object = document.addObject(std::move(value));
    if (!object) return nullptr;
    Ref<ObjectRef> ref = referenceTo(object);
    if (!ref) static_cast<void>(document.removeObject(object));
    return ref;
}

bool removeObject(Document& document, const Ref<ObjectRef>& ref) noexcept {
    const Ref<Object> object = document.getObject(ref);
    return object && document.removeObject(object);
}

} // namespace Libraries::Files::PDF::Tools
