#pragma once

/// @file
/// The streams of a document, compressed or expanded, such that all that they hold stays the same.

#include <host/export.h>
#include <host/ref.h>
#include <pdf/document.h>
#include <pdf/tools/result.h>

#include <cstdint>
#include <optional>

namespace Libraries::Files::PDF::Tools {

/// Deflates the streams of a document that are stored plainly, where that makes them smaller. Those
/// with a Filter stay as they are, images in formats of their own among them, and so do metadata
/// (Type Metadata), which other programs look for as plain text.
///
/// A Filter that is null or an empty array counts as none. A stream that was changed gets a Length
/// of its own: what others refer to stays as it is. Streams whose data is in another file, of an
/// application's own class, or that share their dictionary with another one stay as they are; so do
/// all streams of an encrypted document, whose data is ciphertext. All or nothing: after a failure
/// the document writes what it would have written before. The deflated data is held in memory; of
/// what is read one stream at a time is.
///
/// Fails with `NotSupported` (a document of an application's own class), `StreamDictionaryMissing`,
/// `SourceNotRead` (data that cannot be read), `CodingFailed` (that cannot be deflated),
/// `ExpansionTooBig` (streams that lie in each other, of which more than 64 times the file and 1
/// MiB would be read), `OutOfMemory` or a code of `Document::readStreamData`.
FILES_PDF_EXPORT Result<void> compressStreams(const Ref<Document>& document) noexcept;

/// How far streams may be expanded.
struct ExpandOptions {
    /// Bytes that all expanded data may take together; else 64 times what is read and 1 MiB.
    std::optional<std::uint64_t> limit = std::nullopt;
};

/// Stores the streams of a document plainly that are stored by FlateDecode alone, in an array of
/// its own or behind a reference too; a predictor (ISO 32000-1, 7.4.4.4) is undone. What has
/// another Filter, or several, stays as it is, and so does data that is damaged, or where the
/// parameters of the predictor are none of the standard or the data is no whole number of rows.
/// Where the line ending of the document is a carriage return, data that begins with a line feed
/// stays deflated: plain it would lose that.
///
/// All else is as for `compressStreams`; `ExpansionTooBig` too for more than `options` allows.
FILES_PDF_EXPORT Result<void> expandStreams(const Ref<Document>& document,
                                            const ExpandOptions& options = {}) noexcept;

} // namespace Libraries::Files::PDF::Tools
