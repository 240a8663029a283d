#pragma once

#include "spelling/characters.h"

namespace Libraries::Files::PDF::Characters {

/// Every code from 0 to 32 counts as white space.
constexpr bool isWhite(int code) noexcept {
    return code >= 0 && code <= 32;
}

/// What needs a look at the mode before it can end a bare token; all else belongs to the token.
inline constexpr Spelling::Set tokenStop = Spelling::Set{"%(/<>[]"}.with(isWhite);

} // namespace Libraries::Files::PDF::Characters
