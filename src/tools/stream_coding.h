#pragma once

#include "host/prediction.h"

#include <host/byte_buffer.h>
#include <host/stripe.h>
#include <pdf/document.h>

#include <cstdint>
#include <optional>
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
[[nodiscard]] Coding codingOf(const Document& document, const Ref<Dictionary>& entries);

/// What decode parameters, which may be null, say that data went through before it was deflated
/// (ISO 32000-1, 7.4.4.4); nothing where their values are none that the standard knows.
[[nodiscard]] std::optional<Host::Prediction> predictionOf(const Document& document,
                                                           const Ref<Dictionary>& parameters);

enum class Inflated {
    Done,
    Damaged,  ///< the data is none that was deflated
    TooLarge, ///< what comes out is more than was allowed
};

/// Appends all of `data`, inflated, to `output`, which may become larger than `limit` by some
/// blocks before that is noticed. Fails where the data cannot be read.
[[nodiscard]] Inflated inflate(Interfaces::Stripe& data, Host::ByteBuffer& output,
                               std::uint64_t limit = UINT64_MAX);

/// All of the data, deflated.
///@{
[[nodiscard]] Host::ByteBuffer deflated(Interfaces::Stripe& data);
[[nodiscard]] Host::ByteBuffer deflated(std::span<const std::uint8_t> data);
///@}

} // namespace Libraries::Files::PDF::Tools
