#pragma once

#include "tools/prediction.h"

#include <host/byte_buffer.h>
#include <host/stripe.h>
#include <pdf/document.h>

#include <cstdint>
#include <span>

namespace Libraries::Files::PDF::Tools {

/// How a stream's data is stored, as far as it is understood here: plainly or by FlateDecode alone,
/// in an array of its own or behind references too.
struct Coding {
    enum class Kind { Plain, Flate, Other };

    Kind kind = Kind::Plain;
    Host::Prediction prediction; ///< of `Flate`
};

/// What the dictionary of a stream says. Throws `std::bad_alloc`, as does what follows.
[[nodiscard]] Coding codingOf(const Document& document, const Dictionary& entries);

enum class Converted {
    Done,
    NotRead,  ///< the data cannot be had
    Damaged,  ///< it cannot be converted
    TooLarge, ///< what comes out is more than was allowed
};

/// Appends all of `data`, inflated or deflated, to `output`, which may become larger than `limit`
/// by some blocks before that is noticed.
///@{
[[nodiscard]] Converted inflate(Interfaces::Stripe& data, Host::ByteBuffer& output,
                                std::uint64_t limit = UINT64_MAX);
[[nodiscard]] Converted deflate(Interfaces::Stripe& data, Host::ByteBuffer& output);
[[nodiscard]] Converted deflate(std::span<const std::uint8_t> data, Host::ByteBuffer& output);
///@}

} // namespace Libraries::Files::PDF::Tools
