#pragma once

#include <string>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

/// A text as a name is spelled (ISO 32000-1, 7.3.5): white space, delimiters, number signs and all
/// that is no printable ASCII by the code of each byte. Throws `std::bad_alloc`.
[[nodiscard]] std::string spelledName(std::string_view text);

} // namespace Libraries::Files::PDF::Tools
