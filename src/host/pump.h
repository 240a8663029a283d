#pragma once

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

/// Sends all data of `source` from its start through `filter` and appends the result to `target`,
/// by way of two blocks of 64 KiB.
[[nodiscard]] PumpResult pump(Interfaces::Stripe& source, Interfaces::BlockFilter& filter,
                              ByteBuffer& target) noexcept;

} // namespace Host
