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

/// A read that came up short, where `ReadFailed` says so.
struct ShortRead {
    std::uint64_t read = 0;
    std::uint64_t wanted = 0;
};

/// Sends all data of `source` from its start through `filter` and appends the result to `target`.
/// Beside the target that takes one block of 64 KiB, or nothing where the source holds its data in
/// memory. Only `WriteFailed` and `FlushedWriteFailed` say that the target could not grow.
[[nodiscard]] PumpResult pump(Interfaces::Stripe& source, Interfaces::BlockFilter& filter,
                              ByteBuffer& target, ShortRead* shortRead = nullptr) noexcept;

} // namespace Host
