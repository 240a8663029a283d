#pragma once

/// @file
/// Documents in files: opened by a path, and saved to one with a look at what comes out.

#include <host/export.h>
#include <host/ref.h>
#include <pdf/document.h>

#include <cstdint>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

/// Opens the document in the file at `path` by `Structure::Any`: every sound file that is not
/// encrypted. Its numbers are written as they were read (`Document::faithfulNumbers`). Null with
/// the code of `Host::FileSource::open` or `Document::create` set.
[[nodiscard]] FILES_PDF_EXPORT Ref<Document> open(std::string_view path) noexcept;

/// What to ask before a document takes a file's place.
struct SaveOptions {
    /// Whether to look at all: at what the rewrite loses, and whether the result opens and has the
    /// pages that the document has.
    bool look = true;
    /// Whether to save although the result is no sound document. It must open all the same.
    bool force = false;
};

/// How saving ended.
enum class Saved : std::uint32_t {
    Done = 0,       ///< the file is in place, whole
    Failed = 1,     ///< it could not be written; the code says why
    Unreadable = 2, ///< the result would not open; the code is that of opening it
    /// A loss is grave, or the result has fewer pages: `ResultUnsound` is set. Or an application
    /// has set a text with a backslash, or a name with white space, a delimiter or, where `open`
    /// opened, a number sign that encodes nothing, which is not read again as it is: `NotReadAgain`
    /// is set, and the log names object and key.
    Unsound = 3
};

/// Saves `document` to the file at `path`: into a new file beside it, which takes its place when
/// all of it was written and nothing speaks against it. After anything but `Done` a file that was
/// there is as it was, and none is made. `losses` tells what else is lost.
[[nodiscard]] FILES_PDF_EXPORT Saved save(Document& document, std::string_view path,
                                          const SaveOptions& options = {}) noexcept;

} // namespace Libraries::Files::PDF::Tools
