#pragma once

/// @file
/// A loaded PDF document.

#include <host/containers.h>
#include <host/export.h>
#include <host/stripe.h>
#include <host/weak_ref.h>
#include <pdf/form.h>
#include <pdf/loss.h>
#include <pdf/values.h>
#include <pdf/version.h>

#include <cstdint>
#include <string_view>

namespace Libraries::Files::PDF {

/// Where a thing of some document belongs.
enum class Home : std::uint32_t {
    Unknown = 0,  ///< nobody knows: it is new, or of an application's own class
    Here = 1,     ///< it is of the document that was asked
    Elsewhere = 2 ///< it is not: it is of another, or was
};

/// How the objects of a file that is to be opened may be stored.
enum class Structure : std::uint32_t {
    Classic = 0, ///< one classic table of one subsection, read by the exact rules
    Any = 1      ///< whatever is sound by ISO 32000-1
};

/// A document and everything in it. Use one document on one thread at a time; different documents
/// are independent of each other.
///
/// An operation that fails gives null, false or an empty list, sets the thread's error code and,
/// where there is more to say than the code does, logs through the filter "PDF". When memory is
/// exhausted the code is that of the failed step or `OutOfMemory`.
class FILES_PDF_EXPORT Document : public Host::Object {
public:
    /// Loads a document: header, trailer, cross-reference section (ISO 32000-1, 7.5) and every
    /// object in use. Stream data stays in `source`, which the document keeps.
    ///
    /// The accepted structure is narrow: one classic cross-reference section of one subsection; no
    /// earlier revisions, cross-reference streams, object streams or encryption. Null with
    /// `NullArgument`, `InvalidArgument` (elements not of 32 bits), or the code of the first rule
    /// that the file breaks: `HeaderUnreadable` to `ObjectUnreadable`, `LineEndingUnknown`. Most of
    /// what can be wrong with header, trailer and table has no message: `errorText` says the most.
    [[nodiscard]] static Ref<Document> create(Ref<Interfaces::Stripe> source) noexcept;

    /// Loads a document as `structure` says; `Structure::Classic` is what `create(source)` does.
    ///
    /// `Structure::Any` takes every file that is sound by ISO 32000-1 and not encrypted: tables of
    /// any subsections, cross-reference and object streams, earlier revisions, hybrid and
    /// linearised files, bytes before the header. The document is that of the last revision. Its
    /// objects are numbered anew, from 1 without a gap, generation 0, in the order of their
    /// numbers; a reference to nothing is null, and an entry with null is none (7.3.7). Strings
    /// follow all escapes of 7.3.4.2; those that `Structure::Classic` would read otherwise are byte
    /// strings. Numbers are faithful, the line ending is LF, and a version that the catalog raises
    /// counts. What is written opens by `Structure::Classic` too, with equal values.
    ///
    /// Null with `NullArgument`, `InvalidArgument`, `NotPdf` (no header), `FileDamaged`,
    /// `FileEncrypted`, `FilterUnsupported` (sound, but an object stream or a cross-reference
    /// stream is stored by another filter than FlateDecode), `LimitExceeded` (these streams hold
    /// more than 64 times the source and 1 MiB, or the objects lie inside each other) or
    /// `SourceNotRead` set; the log says which object, by its number in the file, at which offset,
    /// and why. The import repairs and decrypts what is not opened here.
    [[nodiscard]] static Ref<Document> create(Ref<Interfaces::Stripe> source,
                                              Structure structure) noexcept;

    /// The version in the file's header, or a higher one that `addBackground` or `raiseVersion`
    /// brought.
    [[nodiscard]] virtual PdfVersion version() const noexcept = 0;

    /// The trailer dictionary (ISO 32000-1, 7.5.5), shared with the document.
    [[nodiscard]] virtual Ref<Dictionary> trailer() const noexcept = 0;

    /// The interactive form (ISO 32000-1, 12.7), built at the first call and kept. Null with
    /// `FormNotFound`, `BadReference` or `RootInvalid` set; a form of which some field could not be
    /// built is given, with `FormIncomplete` set.
    [[nodiscard]] virtual Ref<Form> form() noexcept = 0;

    /// The object that `ref` refers to. Null with `NullArgument` or `ObjectNotFound` set; logs
    /// nothing.
    [[nodiscard]] virtual Ref<PDF::Object> getObject(const Ref<ObjectRef>& ref) const noexcept = 0;

    /// Writes the whole document, always as a complete new file, to `target` at its current
    /// position. Offsets are counted from the first byte written, and what stands behind the last
    /// one stays: the target must be empty and at its start. Replaces the trailer's Size. A target
    /// that fails holds a truncated file.
    ///
    /// False with `NullArgument`, `InvalidArgument` (elements not of 32 bits; a target that is the
    /// document's own source or holds a stream's data, to which nothing is written then),
    /// `VersionNotWritten`, `ObjectNotWritten` or `TrailerNotWritten` set.
    [[nodiscard]] virtual bool write(Ref<Interfaces::Stripe> target) noexcept = 0;

    /// A stream's data, 32-bit elements, one for each byte: raw as it is encoded, or decoded where
    /// `decode` is true and its Filter is FlateDecode.
    ///
    /// Raw data is a view into the source and stays attached to the stream, also where decoded data
    /// was asked for. A stream that has data attached gives just that, whatever `decode` says: ask
    /// for decoded data first. What is attached is shared, and its position is where its last user
    /// left it, be it the library: position it before you read. Null with
    /// `NullArgument`, `OutOfRange`, `InvalidArgument` (no dictionary), `LengthInvalid`,
    /// `FilterUnsupported`, `CodingNotSetUp` or `CodingFailed` set.
    [[nodiscard]] virtual Ref<Interfaces::Stripe> readStreamData(Ref<Stream> stream,
                                                                 bool decode) noexcept = 0;

    /// Writes a stream's raw data to `target`, compressed where `encode` is true and the stream's
    /// Filter is FlateDecode, and sets its Length to the number of elements written: in place, in
    /// the number that is there, which does not count as a change. The stream keeps its own data:
    /// where it was compressed, Length tells of the target's. 1 on success; 0 with `NullArgument`,
    /// `InvalidArgument`, `StreamDictionaryMissing`, `StreamObjectInvalid` or `CodingFailed` (any
    /// other Filter too, where `encode` is true) set.
    [[nodiscard]] virtual std::uint32_t
    writeStreamData(Ref<Stream> stream, Ref<Interfaces::Stripe> target, bool encode) noexcept = 0;

    /// Copies the data of every stream that still lies in the source into memory, so that the
    /// document no longer needs the source's contents. A stream whose data cannot be read is
    /// skipped; what was wrong with it is in the log and in the code, though the result is true.
    /// False with `StepFailed`, `InvalidArgument` or `OutOfRange` set; the streams before the
    /// failing one are then cached.
    [[nodiscard]] virtual bool cacheStreamData() noexcept = 0;

    /// Whether an operation restructured the document, an entry of a dictionary in an object was
    /// set or a stream's data replaced, since the document was loaded. The trailer, the
    /// dictionaries of streams, and arrays with all in them do not count. `write` resets nothing.
    [[nodiscard]] virtual bool changed() const noexcept = 0;

    /// Lays pages of `foreign` beneath pages of this document, both as `getPages` gives them.
    /// `mode` chooses which: 0 the first foreign page beneath the first page, 1 the first foreign
    /// page beneath every page, 2 page by page, 3 page by page and the last foreign page beneath
    /// the rest; with any other no page changes. An intermediate node takes a background that no
    /// viewer shows, and no failure tells.
    ///
    /// The foreign document is only read and may be released afterwards. References in what is
    /// copied are followed, each as often as it is met: through 512 levels, up to 1,048,576 objects
    /// for one copied value, and in all up to 64 copies of what the foreign document holds, objects
    /// and bytes, for each page that changes.
    ///
    /// False with one of the codes `NullArgument`, `PageTreeInvalid`, `PageInvalid` (both for
    /// foreign resources too), `StreamNotCopied`, `StepFailed`, `ForeignPageEmpty` to
    /// `ForeignStreamUnread` set. Merged resources then stay. Page contents are as they were,
    /// unless it failed at the contents of a page: changed pages from the first one on that had no
    /// Contents keep what they got, and so does a page that Kids lists twice.
    [[nodiscard]] virtual bool addBackground(Ref<Document> foreign,
                                             std::uint32_t mode) noexcept = 0;

    /// Re-encodes the data of every stream to `target`, all or nothing. Streams with an array of
    /// filters are left alone.
    ///
    /// It goes by Filter alone and so destroys images: one with a filter of another name, a JPEG
    /// image for instance, is deflated and that name replaced; of data behind a predictor the
    /// filter goes and the predictor stays. `Tools::losses` tells those streams as
    /// `Loss::Filters`. `Tools::compressStreams` and `expandStreams` change nothing that shows.
    ///
    /// False with `InvalidArgument` (neither `None` nor `FlateDecode`),
    /// `NoValue`, `StreamDictionaryMissing`, `FilterNotUpdated`, `CodingFailed` or
    /// `StreamObjectInvalid` set; all data is then as it was. The streams that were put back, and
    /// their dictionaries, report no change any more, even where they did before the call: who
    /// needs `changed()` asks it first.
    [[nodiscard]] virtual bool setCompression(Compression target) noexcept = 0;

    // The operations from here on are not virtual. They work on documents that the library made,
    // and say what they give for a document of an application's own class.

    /// Every object of the document, in table order. Empty with `OutOfMemory` set, or with
    /// `NotSupported` for a document of an application's own class.
    [[nodiscard]] Host::StackVector<Ref<PDF::Object>> getObjects() const noexcept;

    /// Adds an object that holds `value`, shared, under the next number. Numbers at the end of the
    /// file's table that no object has become objects with an empty dictionary: a rewrite does not
    /// keep a gap.
    ///
    /// Null with `NullArgument`, `InvalidArgument` (null and references are no value of an object),
    /// `OutOfRange` (no number is left) or `NotSupported` (as for `getObjects`) set.
    [[nodiscard]] Ref<PDF::Object> addObject(Ref<Value> value) noexcept;

    /// Removes an object of this document: the one with the highest number goes with its number,
    /// which the next new object gets, and with the empty dictionaries before it that stand for no
    /// object; any other one makes room for such a one. What refers to it does so on: take those
    /// references away. Handles of the object keep its value. Takes no memory.
    ///
    /// False with `NullArgument`, `ObjectNotFound` or `NotSupported` (as for `getObjects`) set.
    [[nodiscard]] bool removeObject(const Ref<PDF::Object>& object) noexcept;

    /// Has the document written with at least this version: raises `version()` where `version` is
    /// higher, which counts as a change, and never lowers it. True where it is high enough already.
    ///
    /// False with `InvalidArgument` (no version of the file format) or `NotSupported` (as for
    /// `getObjects`) set.
    [[nodiscard]] bool raiseVersion(PdfVersion version) noexcept;

    /// The line ending of the file's first line, with which every written line ends: "\n", "\r" or
    /// "\r\n". Valid as long as the document. Empty, with `NotSupported` set, for a document of an
    /// application's own class.
    [[nodiscard]] std::string_view lineEnding() const noexcept;

    /// Whether numbers are written as they were read: 1.05 as 1.05 and -0.5 as -0.5, instead of by
    /// their two parts. Off until it is set; integer, fraction and equality stay what they are.
    /// What an application made is written by its parts. For a document of an application's own
    /// class it stays off.
    ///@{
    [[nodiscard]] bool faithfulNumbers() const noexcept;
    void faithfulNumbers(bool faithful) noexcept;
    ///@}

    /// What was met while the document was read that a rewrite does not keep, of one kind: of those
    /// that only the reading sees (`Fractions` to `Characters`, `Subsections` and `Signatures`);
    /// and, as the document is now, `Gaps`, `LineFeeds` and `Filters`. `Tools::losses` tells all
    /// of them. Nothing for a document of an application's own class.
    [[nodiscard]] LossCount metOnReading(Loss kind) const noexcept;

    /// Whether a thing is of this document: references in what is of another lead to other objects
    /// here. Of values it is known for the arrays, dictionaries and streams that are the value of
    /// an object, also when their document is gone: neither for those within others nor for
    /// references, which have no home. Takes a look-up at most.
    ///@{
    [[nodiscard]] Home homeOf(const PDF::Object& object) const noexcept;
    [[nodiscard]] Home homeOf(const Value& value) const noexcept;
    [[nodiscard]] Home homeOf(const Form& form) const noexcept;
    [[nodiscard]] Home homeOf(const Field& field) const noexcept;
    ///@}

    /// The objects whose value somebody has asked for, and those that were added, in table order:
    /// what an application has changed is in them, or in the trailer. Empty as for `getObjects`.
    [[nodiscard]] Host::StackVector<Ref<PDF::Object>> usedObjects() const noexcept;

    /// The catalog (ISO 32000-1, 7.7.2): the object that the trailer's Root refers to. Null with
    /// `NoTrailer`, `RootMissing`, `RootInvalid` or `CatalogInvalid` set.
    [[nodiscard]] Ref<PDF::Object> getCatalog() const noexcept;

    /// The root of the page tree (ISO 32000-1, 7.7.3): the object that the catalog's Pages refers
    /// to. Null with `RootInvalid`, `CatalogInvalid` or `PageTreeInvalid` set.
    [[nodiscard]] Ref<PDF::Object> getPageCatalog() const noexcept;

    /// The objects in the Kids array of the page tree's root, in order. One level: an intermediate
    /// node counts as a page. Empty, with `PageTreeInvalid` set, on failure.
    [[nodiscard]] Host::StackVector<Ref<PDF::Object>> getPages() const noexcept;

    /// The dictionary that `value` is, or that the object it refers to holds. Null with
    /// `NullArgument`, `BadReference`, `ReferenceNotResolved` or `ObjectUnreadable` set.
    [[nodiscard]] Ref<Dictionary> valueAsDict(Ref<Value> value) const noexcept;
};

} // namespace Libraries::Files::PDF
