#pragma once

#include <pdf/document.h>

#include <string>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

/// The characters of UTF-8; what is none of it becomes U+FFFD. Throws `std::bad_alloc`, as does
/// what follows.
[[nodiscard]] std::u32string charactersOf(std::string_view utf8);

/// What a text string says (ISO 32000-1, 7.9.2.2), in UTF-8: also where it came as bytes, or as
/// UTF-16 in a literal string.
[[nodiscard]] std::string textOf(const String& string);

/// The same of a value that is no string: empty.
[[nodiscard]] std::string textOf(const Ref<Value>& value);

/// The text of a name, whose number-sign sequences stand for bytes (ISO 32000-1, 7.3.5).
[[nodiscard]] std::string textOf(const Name& name);

} // namespace Libraries::Files::PDF::Tools
