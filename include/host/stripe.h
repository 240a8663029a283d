#pragma once

/// @file
/// Stripes. A stripe is a random-access sequence of elements of one fixed width. It is the way in
/// which bytes get into the library and out of it: a document reads its file from a stripe, and
/// writes itself to one. Files (`host/files.h`) and memory (`host/memory_stripe.h`) are there as
/// stripes; an application with storage of its own implements one.

#include <host/export.h>
#include <host/ref.h>

#include <cstdint>
#include <span>

/// What an application may implement for the library to use.
namespace Interfaces {

/// A random-access sequence of elements of one width, with a current position.
///
/// Documents use stripes of 32-bit elements. Each element holds one byte of the file (0 to 255).
///
/// An application that keeps documents in its own storage implements the first six operations. The
/// byte operations below them have default implementations, which go through those six; a stripe
/// that holds bytes overrides them for speed. One thread at a time uses a stripe. No operation
/// throws; one that fails says so by its result and may set the thread's error code.
class FILES_PDF_EXPORT Stripe : public Host::RefCount {
public:
    /// Size of one element in bytes: 4 for every stripe a document accepts.
    [[nodiscard]] virtual std::uint64_t elementSize() const noexcept = 0;
    /// Length in elements.
    [[nodiscard]] virtual std::uint64_t size() const noexcept = 0;
    /// Current position: the zero-based index of the next element.
    [[nodiscard]] virtual std::uint64_t position() const noexcept = 0;
    /// Moves to `position` and gives the position it reached. It has failed if that is another one.
    virtual std::uint64_t position(std::uint64_t position) noexcept = 0;
    /// Reads up to `count` elements into `buffer` and moves behind them. Gives the number of
    /// elements read; fewer than asked for means the end of the data or a fault.
    ///
    /// `buffer` has room for `count` elements, or for the elements between the position and the end
    /// if these are fewer. The stripe writes nothing behind the elements that it gives.
    [[nodiscard]] virtual std::uint64_t read(void* buffer, std::uint64_t count) noexcept = 0;
    /// Writes `count` elements at the position and moves behind them. Gives the number of elements
    /// written; fewer than asked for means a fault.
    [[nodiscard]] virtual std::uint64_t write(const void* buffer, std::uint64_t count) noexcept = 0;

    /// As `read`, but one byte for each element. An element above 255 is no byte and ends the read.
    [[nodiscard]] virtual std::uint64_t readBytes(std::uint8_t* buffer,
                                                  std::uint64_t count) noexcept;
    /// As `write`, but one byte for each element.
    [[nodiscard]] virtual std::uint64_t writeBytes(const std::uint8_t* bytes,
                                                   std::uint64_t count) noexcept;
    /// The consecutive bytes that the stripe holds in memory from `position` on; empty if it holds
    /// none. They are valid until the next operation that is not const. The position stays.
    [[nodiscard]] virtual std::span<const std::uint8_t>
    window(std::uint64_t position) const noexcept;
};

} // namespace Interfaces
