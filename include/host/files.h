#pragma once

/// @file
/// Files as stripes: one to read a file, one to save a file.

#include <host/export.h>
#include <host/ref.h>
#include <host/string.h>
#include <host/stripe.h>
#include <host/stripe_adapters.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace Host {

/// A file opened for reading, presented as 32-bit elements, one for each byte.
class FILES_PDF_EXPORT FileSource : public Adapters::Stripe::Base {
public:
    /// Opens the regular file at `path`. Null with `FileNotOpened`, `NotARegularFile` or
    /// `OutOfMemory` set on failure.
    ///
    /// Once somebody has written to the open file, cut or extended it, reads give fewer elements,
    /// set `FileNotRead` and log through the global filter. Size and time of modification tell.
    /// A new file in its place (by renaming, as `FileTarget` does) does no harm: reads go on in the
    /// file that was opened.
    [[nodiscard]] static Ref<FileSource> open(std::string_view path) noexcept;
};

/// A file that is being saved, presented as 32-bit elements, one for each byte.
///
/// The bytes go to a new file beside the target; only `commit` puts that in the target's place. A
/// `FileTarget` that is released without a commit leaves the user's file as it was and removes the
/// new one. Writes are buffered and always append; the stripe cannot be positioned elsewhere.
class FILES_PDF_EXPORT FileTarget : public Adapters::Stripe::Base {
public:
    /// Starts saving to `path`. It follows symbolic links and keeps the permissions of an existing
    /// file. Null with `FileNotOpened`, `NotARegularFile` (the target exists and is a directory,
    /// a device or the like) or `OutOfMemory` set on failure.
    [[nodiscard]] static Ref<FileTarget> create(std::string_view path) noexcept;

    /// The bytes written so far, as a stripe of its own for reading. Null on failure, with
    /// `FileNotWritten` set when the buffer could not be flushed.
    [[nodiscard]] virtual Ref<FileSource> written() noexcept = 0;

    /// Flushes, forces the data to the device, closes and puts the file in the target's place.
    /// Call it once. False with `FileNotWritten` set when any of that fails or a write has failed
    /// before; the user's file is then as it was.
    [[nodiscard]] virtual bool commit() noexcept = 0;
};

} // namespace Host
