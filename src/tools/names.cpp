#include "tools/names.h"

#include "spelling/names.h"
#include "tools/failure.h"

#include <pdf/tools/editing.h>

namespace Libraries::Files::PDF::Tools {

namespace {

bool canBeName(std::string_view text) noexcept {
    return !text.empty() && text.find('\0') == std::string_view::npos;
}

} // namespace

std::string spelledName(std::string_view text) {
    std::string name;
    for (const char character : text)
        Spelling::appendNameCharacter(name, character);
    return name;
}

Ref<Host::String> keyOf(std::string_view utf8) noexcept {
    if (!canBeName(utf8)) return fail(InvalidArgument, "No name can be empty or hold a null");
    return guarded([&] { return orThrow(Host::String::create(spelledName(utf8))); });
}

Ref<Name> nameOf(std::string_view utf8) noexcept {
    const Ref<Host::String> key = keyOf(utf8);
    return key ? Name::create(key) : nullptr;
}

} // namespace Libraries::Files::PDF::Tools
