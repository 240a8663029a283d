#pragma once

/// @file
/// Block filters: conversions of a byte stream that keep what they cannot yet convert.

#include <host/export.h>
#include <host/ref.h>

#include <cstdint>
#include <span>

namespace Interfaces {

/// Converts a stream of bytes block by block.
class FILES_PDF_EXPORT BlockFilter : public Host::RefCount {
public:
    /// What one conversion used of its input and put into its output, in bytes.
    struct Progress {
        std::uint64_t consumed = 0; ///< bytes of `input` that need not be given again
        std::uint64_t produced = 0; ///< bytes at the start of `output` that are filled
    };
    /// What `flush` reports.
    enum class Flush : std::uint32_t {
        Failed = 0,  ///< the data ends too early
        More = 1,    ///< `output` holds data; call again
        Finished = 2 ///< all is given, nothing this time
    };

    /// Converts as much of `input` as fits into `output`. Makes progress whenever `input` is not
    /// empty and `output` has room. False when the data cannot be converted.
    [[nodiscard]] virtual bool convert(std::span<const std::uint8_t> input,
                                       std::span<std::uint8_t> output,
                                       Progress& progress) noexcept = 0;

    /// Ends the input and gives what is pending: `More` with `produced` bytes in `output`, again
    /// and again, then `Finished` with nothing. `Failed` when the input was not complete.
    [[nodiscard]] virtual Flush flush(std::span<std::uint8_t> output,
                                      std::uint64_t& produced) noexcept = 0;
};

} // namespace Interfaces

namespace Host {

/// Block filters of the zlib format (RFC 1950).
class FILES_PDF_EXPORT ZlibFilter {
public:
    /// Inflates; the checksum is verified, and bytes behind the end of the zlib data are swallowed.
    /// Input of no bytes at all gives no bytes. Null when memory is exhausted.
    [[nodiscard]] static Ref<Interfaces::BlockFilter> createDecompressorStream() noexcept;

    /// Deflates. `level` is 1 (fastest) to 12 (smallest); 0 stands for 6. The input is collected
    /// and compressed by `flush`. Null with `InvalidArgument` set for another level, or with
    /// `OutOfMemory` set.
    [[nodiscard]] static Ref<Interfaces::BlockFilter>
    createCompressorStream(std::uint32_t level) noexcept;
};

} // namespace Host
