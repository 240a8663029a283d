#pragma once

/// @file
/// The library files-pdf-import. It opens any PDF document, and turns it into a document that
/// `Document::create` opens. It stands on libqpdf; nothing else of Files PDF needs it.

#include <host/export.h>
#include <host/ref.h>
#include <host/stripe.h>
#include <pdf/document.h>
#include <pdf/tools/result.h>

#include <cstdint>
#include <string_view>

/// Turns documents of any structure into documents of the structure that `Document::create` reads.
namespace Libraries::Files::PDF::Import {

using Host::Ref;

/// How to import a document. The defaults suit a document from anywhere.
struct Options {
    /// The user's or the owner's password, in UTF-8. It is ignored if the document is not encrypted
    /// or opens with the empty password.
    std::string_view password = {};

    /// Whether to store streams such that the library decodes them. Data with other filters than
    /// FlateDecode alone, which libqpdf decodes without loss (ASCII85Decode, ASCIIHexDecode,
    /// LZWDecode, RunLengthDecode, chains of them, predictors), is then decoded and deflated. Plain
    /// data, and data whose filters end in an image format such as DCTDecode, stays as it is
    /// stored.
    bool plainFilters = false;

    /// The most bytes that the filters of the document's cross-reference and object streams may
    /// give together, those of each filter of a chain counted (ISO 32000-1, 7.4). 0 stands for
    /// 8 MiB and 16 times the size of the source. Such streams may also have 65,536 entries and one
    /// more for each byte of the source, or for each 16 bytes of this limit, and 65,536 values and
    /// two more for each byte of the source, or one for each 8 bytes of this limit.
    std::uint64_t objectLimit = 0;

    /// The most bytes that `plainFilters` has the filters of one stream give, each of them counted;
    /// a stream that takes more stays as it is stored. All streams together may take 64 times the
    /// size of the source more than that.
    std::uint64_t streamLimit = std::uint64_t{256} << 20;
};

/// Opens the document in the file at `path`, of whatever structure, encrypted or damaged, as it is
/// in its last revision. Numbers are written as they were read (`Document::faithfulNumbers`).
///
/// A sound file is opened by `Structure::Any`, and its data stays in the file. A damaged or
/// encrypted file, and any file with `plainFilters`, goes through `normalise` into memory; the file
/// is not needed afterwards. As `normalise` does, it logs all repairs. It does not log why the file
/// did not open as it is.
///
/// Fails with a code of `Tools::open` or `normalise`; the text says which object is damaged and
/// how, or why libqpdf gave up.
[[nodiscard]] FILES_PDF_EXPORT Tools::Result<Ref<Document>>
open(std::string_view path, const Options& options = {}) noexcept;

/// The same for the document in `source`, of 32-bit elements, one for each byte.
[[nodiscard]] FILES_PDF_EXPORT Tools::Result<Ref<Document>>
openFrom(const Ref<Interfaces::Stripe>& source, const Options& options = {}) noexcept;

/// Writes the document in `source`, as it is in its last revision, to `target`: from the start of
/// `target` on, which should be empty. `Document::create` opens what was written.
///
/// What is written is one header, every object that the trailer leads to, one cross-reference
/// table of one subsection (ISO 32000-1, 7.5.4) and one trailer. The objects are numbered from 1 in
/// the order in which they are met, generation 0. A reference to nothing becomes null. Nothing is
/// encrypted, whatever the document permitted: obey its owner. Importing what was imported gives
/// the same bytes. What had to be repaired is logged as warnings, in the words of libqpdf, through
/// the filter "Lib.File.PDF.Import".
///
/// Both stripes have elements of 32 bits, one for each byte, and are used during the call only, by
/// this thread alone. Memory: what libqpdf takes, which holds all objects, and the data of one
/// stream. Different calls are independent of each other.
///
/// False with `NullArgument`, `InvalidArgument` (elements not of 32 bits), `OutOfMemory` or one of
/// `NotPdf` to `TargetNotWritten` set; the target then holds a truncated file.
[[nodiscard]] FILES_PDF_EXPORT bool normalise(Ref<Interfaces::Stripe> source,
                                              Ref<Interfaces::Stripe> target,
                                              const Options& options = {}) noexcept;

/// The same into memory. Null on failure.
[[nodiscard]] FILES_PDF_EXPORT Ref<Interfaces::Stripe>
normalise(Ref<Interfaces::Stripe> source, const Options& options = {}) noexcept;

} // namespace Libraries::Files::PDF::Import
