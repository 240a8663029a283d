#pragma once

/// @file
/// Documents in files: opened by a path, and saved to one with a look at what comes out.

#include <host/export.h>
#include <host/memory_stripe.h>
#include <host/ref.h>
#include <host/stripe.h>
#include <pdf/document.h>
#include <pdf/tools/result.h>

#include <string_view>

namespace Libraries::Files::PDF::Tools {

/// Opens the document in the file at `path` by `Structure::Any`: every sound file that is not
/// encrypted. Its numbers are written as they were read (`Document::faithfulNumbers`). Fails with a
/// code of `Host::FileSource::open` or `Document::create`; the text says why the system refused the
/// file, or which object is damaged, at which offset, and how.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<Document>> open(std::string_view path) noexcept;

/// The same for the document in `source`, of 32-bit elements, one for each byte.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<Document>>
openFrom(const Ref<Interfaces::Stripe>& source) noexcept;

/// What to ask before a document takes a file's place.
struct SaveOptions {
    /// Whether to look at all: at what the rewrite loses, and whether the result opens and has the
    /// pages that the document has.
    bool look = true;
    /// Whether to save although the result is no sound document. It must open all the same.
    bool force = false;
};

/// Saves `document` to the file at `path`: into a new file beside it, which takes its place when
/// all of it was written and nothing speaks against it. After a failure a file that was there is as
/// it was, and none is made. `losses` tells what else is lost.
///
/// Fails with `ResultUnsound` (a loss is grave, or the result has fewer pages), `NotReadAgain` (an
/// application has set a text with a backslash, or a name with white space, a delimiter or, where
/// `open` opened, a number sign that encodes nothing: it is not read again as it is; the text names
/// object and key), the code of opening the result where it would not open, or a code of
/// `Host::FileTarget::create`, `commit` or `Document::write`.
FILES_PDF_EXPORT Result<void> save(const Ref<Document>& document, std::string_view path,
                                   const SaveOptions& options = {}) noexcept;

/// The same into memory: the bytes of the file, in a stripe that stands at their start.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<Host::MemoryStripe>>
save(const Ref<Document>& document, const SaveOptions& options = {}) noexcept;

} // namespace Libraries::Files::PDF::Tools
