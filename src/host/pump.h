#pragma once

#include <host/byte_buffer.h>
#include <host/stream.h>
#include <host/stripe.h>

#include <cstdint>

namespace Host {

/// How far a pump came.
enum class PumpResult : std::uint32_t {
    Done,
    ReadFailed,
    ConvertFailed,
    WriteFailed,
    FlushFailed,
    FlushedWriteFailed
};

/// The read that gave fewer bytes than asked for, after `ReadFailed`.
struct ShortRead {
    std::uint64_t read = 0;
    std::uint64_t wanted = 0;
};

/// Sends all data of `source`, from its start, through `filter` and appends the result to `target`.
/// Beside the target it takes one block of 64 KiB, or no memory if the source holds its data in
/// memory. Only `WriteFailed` and `FlushedWriteFailed` mean that the target could not grow.
[[nodiscard]] PumpResult pump(Interfaces::Stripe& source, Interfaces::BlockFilter& filter,
                              ByteBuffer& target, ShortRead* shortRead = nullptr) noexcept;

} // namespace Host
