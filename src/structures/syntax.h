#pragma once

#include "reader/characters.h"
#include "spelling/spelling.h"

#include <cstddef>
#include <string_view>

/// The characters of ISO 32000-1, 7.2.2, which knows fewer kinds of white space than the exact
/// rules do.
namespace Libraries::Files::PDF::Syntax {

constexpr bool isWhite(int code) noexcept {
    return code == ' ' || (code >= '\t' && code <= '\r') || code == 0;
}

/// What ends a word or a name.
inline constexpr Characters::Set wordEnd =
    Characters::Set{"%()/<>[]{} ", false}.with('\t', '\r').with(0, 0);

/// What in a name is not plain.
inline constexpr Characters::Set notPlainInName = [] {
    Characters::Set set{"", false};
    for (unsigned code = 0; code < 256; ++code) {
        if (!Spelling::isPlainInName(static_cast<char>(code))) set = set.with(code, code);
    }
    return set;
}();

/// What in a literal string does not stand for itself, or is no ASCII.
inline constexpr Characters::Set notPlainInString =
    Characters::Set{"\\()", false}.with(0, 31).with(127, 255);

/// What in a literal string needs a look.
inline constexpr Characters::Set stringStop{"\\()\r", false};

} // namespace Libraries::Files::PDF::Syntax
