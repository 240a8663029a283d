#pragma once

#include <pdf/errors.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// Why a file is not read, and where. Thrown inside this stage alone, which catches it: what the
/// object was, and what stands there, is known where it is caught.
struct Flaw {
    std::uint32_t code;
    std::uint64_t offset;
    const char* what;
};

[[noreturn]] inline void damaged(std::uint64_t offset, const char* what) {
    throw Flaw{FileDamaged, offset, what};
}

} // namespace Libraries::Files::PDF
