#pragma once

/// @file
/// The error code of the calling thread, and the codes that the platform layer itself sets.

#include <host/export.h>

#include <cstdint>

/// The platform layer: memory, text, files, stripes, the log and the error code.
namespace Host {

/// An operation that fails returns a null handle, false or 0 and leaves its code here.
///
/// Each thread has its own. A success does not clear the code: look at it only after a failure.
class FILES_PDF_EXPORT Error {
public:
    /// Sets this thread's code. Set `NoError` before an operation whose empty result is not always
    /// a failure.
    static void set(std::uint32_t code) noexcept;
    /// The code of this thread's last failure; `NoError` where there was none.
    [[nodiscard]] static std::uint32_t get() noexcept;
    /// Why the system refused the file that this thread worked with last, in a few English words
    /// for people ("permission denied"). It explains a code about files. Empty if the system gave
    /// no reason, never null. Opening a `FileSource` or making a `FileTarget` empties it.
    [[nodiscard]] static const char* reason() noexcept;
};

/// Codes of the platform layer; those of documents are named in `pdf/errors.h`.
enum : std::uint32_t {
    NoError = 0,             ///< nothing has failed on this thread yet, or it was reset
    StepFailed = 33859,      ///< a step inside a larger operation failed
    NullArgument = 33861,    ///< a required argument is null
    InvalidArgument = 33862, ///< an argument is empty, of the wrong kind or element size
    OutOfRange = 33924,      ///< position or count out of range
    NotSupported = 65538,    ///< operation not supported, such as writing to a read-only view
    OutOfMemory = 34048,     ///< memory is exhausted
    FileNotOpened = 34049,   ///< a file could not be opened or made
    FileNotRead = 34050,     ///< a file could not be read
    FileNotWritten = 34051,  ///< a file could not be written, flushed, closed or renamed
    NotARegularFile = 34052, ///< the path names something other than a regular file
};

} // namespace Host
