#pragma once

/// @file
/// Element sequences: through a stripe passes everything that a document reads and writes.

#include <host/export.h>
#include <host/ref.h>

#include <cstdint>
#include <span>

/// What an application may implement for the library to use.
namespace Interfaces {

/// A sequence of elements of one size with a current position.
///
/// An application that keeps documents in its own storage implements the first six operations;
/// documents ask for 32-bit elements, each holding one byte of the file (0 to 255). The byte
/// operations below them have default implementations that go through those six; a stripe that
/// holds bytes overrides them for speed. A stripe is used by one thread at a time. No operation
/// throws; one that fails says so by its result and may set the thread's error code.
class FILES_PDF_EXPORT Stripe : public Host::RefCount {
public:
    /// Size of one element in bytes: 4 for every stripe a document accepts.
    [[nodiscard]] virtual std::uint64_t elementSize() const noexcept = 0;
    /// Length in elements.
    [[nodiscard]] virtual std::uint64_t size() const noexcept = 0;
    /// Current position: the zero-based index of the next element.
    [[nodiscard]] virtual std::uint64_t position() const noexcept = 0;
    /// Moves to `position` and gives the position reached; any other one is a failure.
    virtual std::uint64_t position(std::uint64_t position) noexcept = 0;
    /// Reads up to `count` elements into `buffer` and moves behind them. Gives the elements read;
    /// fewer than asked means the end of the data or a fault. `buffer` has room for `count`
    /// elements, or for those that are left behind the position where these are fewer; nothing
    /// behind the elements read may be touched.
    [[nodiscard]] virtual std::uint64_t read(void* buffer, std::uint64_t count) noexcept = 0;
    /// Writes `count` elements at the position and moves behind them. Gives the elements written;
    /// fewer than asked means a fault.
    [[nodiscard]] virtual std::uint64_t write(const void* buffer, std::uint64_t count) noexcept = 0;

    /// As `read`, one byte for each element. An element above 255 is no byte: it ends the read.
    [[nodiscard]] virtual std::uint64_t readBytes(std::uint8_t* buffer,
                                                  std::uint64_t count) noexcept;
    /// As `write`, one byte for each element.
    [[nodiscard]] virtual std::uint64_t writeBytes(const std::uint8_t* bytes,
                                                   std::uint64_t count) noexcept;
    /// The consecutive bytes that the stripe holds in memory from `position` on; empty where it
    /// holds none. They stay valid until the next operation that is not const. Does not move.
    [[nodiscard]] virtual std::span<const std::uint8_t>
    window(std::uint64_t position) const noexcept;
};

} // namespace Interfaces
