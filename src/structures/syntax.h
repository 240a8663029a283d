#pragma once

#include "spelling/characters.h"

/// The characters of any file's syntax, which knows fewer kinds of white space than the exact rules
/// do.
namespace Libraries::Files::PDF::Syntax {

/// What ends a word or a name.
inline constexpr Spelling::Set wordEnd =
    Spelling::Set{Spelling::delimiters}.with(Spelling::isReadAsWhite);

/// What in a literal string does not stand for itself, or is no ASCII.
inline constexpr Spelling::Set notPlainInString = Spelling::Set{"\\()"}.with(0, 31).with(127, 255);

/// What in a literal string needs a look.
inline constexpr Spelling::Set stringStop{"\\()\r"};

} // namespace Libraries::Files::PDF::Syntax
