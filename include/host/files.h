#pragma once

/// @file
/// Files as stripes: read a path, save to a path.

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
    /// Once the file that was opened has been written to, cut or extended, as its size and its time
    /// of modification tell, reads come up short, with `FileNotRead` set and a message through the
    /// global filter. A new file put in its place (by renaming, as `FileTarget` does) does no harm:
    /// what is read stays the file that was opened.
    [[nodiscard]] static Ref<FileSource> open(std::string_view path) noexcept;
};

/// A file being saved, presented as 32-bit elements, one for each byte.
///
/// What is written goes to a new file beside the target; only `commit` puts it in the target's
/// place. A target that is released without a commit leaves the user's file as it was and removes
/// the new one. Writes are buffered and always append; the stripe cannot be positioned elsewhere.
class FILES_PDF_EXPORT FileTarget : public Adapters::Stripe::Base {
public:
    /// Starts saving to `path`. A symbolic link is followed, an existing file's permissions are
    /// kept. Null with `FileNotOpened`, `NotARegularFile` (the target exists and is a directory,
    /// a device or the like) or `OutOfMemory` set on failure.
    [[nodiscard]] static Ref<FileTarget> create(std::string_view path) noexcept;

    /// What has been written so far, as a stripe of its own for reading. Null on failure, with
    /// `FileNotWritten` set when the buffer could not be flushed.
    [[nodiscard]] virtual Ref<FileSource> written() noexcept = 0;

    /// Flushes, forces the data to the device, closes and puts the file in the target's place.
    /// False with `FileNotWritten` set when any of that fails or any write before failed; the
    /// user's file is then as it was. To be called once.
    [[nodiscard]] virtual bool commit() noexcept = 0;
};

} // namespace Host
