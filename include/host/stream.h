#pragma once

/// @file
/// Block filters. They convert a stream of bytes block by block, and keep the bytes that they
/// cannot convert yet.

#include <host/export.h>
#include <host/ref.h>

#include <cstdint>
#include <span>

namespace Interfaces {

/// Converts a stream of bytes block by block.
class FILES_PDF_EXPORT BlockFilter : public Host::RefCount {
public:
    /// How far one conversion came, in bytes.
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

    /// Ends the input and gives the output that is pending. It gives `More` with `produced` bytes
    /// in `output` as often as needed, then `Finished` with none. `Failed` when the input was not
    /// complete.
    [[nodiscard]] virtual Flush flush(std::span<std::uint8_t> output,
                                      std::uint64_t& produced) noexcept = 0;
};

} // namespace Interfaces

namespace Host {

/// Block filters of the zlib format (RFC 1950).
class FILES_PDF_EXPORT ZlibFilter {
public:
    /// Inflates. It verifies the checksum and ignores bytes behind the end of the zlib data. Empty
    /// input gives empty output. Null when memory is exhausted.
    [[nodiscard]] static Ref<Interfaces::BlockFilter> createDecompressorStream() noexcept;

    /// Deflates. `level` is 1 (fastest) to 12 (smallest); 0 stands for 6. `convert` collects the
    /// input and `flush` compresses it. Null with `InvalidArgument` set for another level, or with
    /// `OutOfMemory` set.
    [[nodiscard]] static Ref<Interfaces::BlockFilter>
    createCompressorStream(std::uint32_t level) noexcept;
};

} // namespace Host
