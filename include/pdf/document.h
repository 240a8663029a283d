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

/// Whether a thing belongs to a document.
enum class Home : std::uint32_t {
    Unknown = 0,  ///< not known: the thing is new, or of an application's own class
    Here = 1,     ///< it belongs to the document that was asked
    Elsewhere = 2 ///< it belongs to another document, or did
};

/// How the objects of a file that is to be opened may be stored.
enum class Structure : std::uint32_t {
    Classic = 0, ///< one classic table of one subsection, read by the exact rules
    Any = 1      ///< whatever is sound by ISO 32000-1
};

/// A document and everything in it. Use one document on one thread at a time; different documents
/// are independent of each other.
///
/// An operation that fails gives null, false or an empty list, sets the thread's error code and, if
/// there is more to say than the code does, logs through the filter "PDF". When memory is exhausted
/// the code is that of the failed step or `OutOfMemory`.
class FILES_PDF_EXPORT Document : public Host::Object {
public:
    /// Handles of what the document held stay valid.
    ~Document() override;

    /// Loads a document: header, trailer, cross-reference section (ISO 32000-1, 7.5) and every
    /// object in use. Stream data stays in `source`, which the document keeps a handle of.
    ///
    /// The accepted structure is narrow: one classic cross-reference section of one subsection; no
    /// earlier revisions, cross-reference streams, object streams or encryption. Null with
    /// `NullArgument`, `InvalidArgument` (elements not of 32 bits), or the code of the first rule
    /// that the file breaks: `HeaderUnreadable` to `ObjectUnreadable`, `LineEndingUnknown`. Most
    /// faults of header, trailer and table log no message; `errorText` explains the code.
    [[nodiscard]] static Ref<Document> create(Ref<Interfaces::Stripe> source) noexcept;

    /// Loads a document as `structure` says; `Structure::Classic` is what `create(source)` does.
    ///
    /// `Structure::Any` takes every file that is sound by ISO 32000-1 and not encrypted: tables of
    /// any subsections, cross-reference and object streams, earlier revisions, hybrid and
    /// linearised files, bytes before the header. The document is that of the last revision. Its
    /// objects get new numbers, from 1 without a gap, generation 0, in the order of the old ones. A
    /// reference to nothing becomes null, and an entry with null is no entry (7.3.7). Strings
    /// follow all escapes of 7.3.4.2; a string that `Structure::Classic` would read otherwise
    /// becomes a byte string. Numbers are faithful, the line ending is LF, and a version in the
    /// catalog counts if it is higher. The document that `write` makes of it opens by
    /// `Structure::Classic` too, with equal values.
    ///
    /// Null with `NullArgument`, `InvalidArgument`, `NotPdf` (no header), `FileDamaged`,
    /// `FileEncrypted`, `FilterUnsupported` (sound, but an object stream or a cross-reference
    /// stream is stored by another filter than FlateDecode), `LimitExceeded` (these streams hold
    /// more than 64 times the source and 1 MiB, or the objects lie inside each other) or
    /// `SourceNotRead` set; the log says which object, by its number in the file, at which offset,
    /// and why. The import repairs and decrypts files that this does not open.
    [[nodiscard]] static Ref<Document> create(Ref<Interfaces::Stripe> source,
                                              Structure structure) noexcept;

    /// The version in the file's header, or a higher one that `addBackground` or `raiseVersion`
    /// brought.
    [[nodiscard]] virtual PdfVersion version() const noexcept = 0;

    /// The trailer dictionary (ISO 32000-1, 7.5.5), shared with the document.
    [[nodiscard]] virtual Ref<Dictionary> trailer() const noexcept = 0;

    /// The interactive form (ISO 32000-1, 12.7). The first call builds it, and the document keeps
    /// it. Null with `FormNotFound`, `BadReference` or `RootInvalid` set. If some field cannot be
    /// built it gives the form with the others and sets `FormIncomplete`.
    [[nodiscard]] virtual Ref<Form> form() noexcept = 0;

    /// The object that `ref` refers to. Null with `NullArgument` or `ObjectNotFound` set; logs
    /// nothing.
    [[nodiscard]] virtual Ref<PDF::Object> getObject(const Ref<ObjectRef>& ref) const noexcept = 0;

    /// Writes the whole document, always as a complete new file, to `target` at its current
    /// position. The target must be empty and at its start: offsets count from the first byte
    /// written, and bytes behind the last one stay. Replaces the trailer's Size. When it fails the
    /// target holds a truncated file.
    ///
    /// False with `NullArgument`, `InvalidArgument` (elements not of 32 bits; a target that is the
    /// document's own source or holds a stream's data, to which nothing is written then),
    /// `VersionNotWritten`, `ObjectNotWritten` or `TrailerNotWritten` set.
    [[nodiscard]] virtual bool write(Ref<Interfaces::Stripe> target) noexcept = 0;

    /// A stream's data, 32-bit elements, one for each byte. It is decoded if `decode` is true and
    /// the stream's Filter is FlateDecode, else raw, as it is encoded.
    ///
    /// Raw data is a view into the source. It stays attached to the stream, also after a call for
    /// decoded data. A stream with attached data gives just that, whatever `decode` says: ask for
    /// decoded data first. Attached data is shared, and its position is where its last user, who
    /// may be the library, left it: position it before you read. Null with `NullArgument`,
    /// `OutOfRange`, `InvalidArgument` (no dictionary), `LengthInvalid`, `FilterUnsupported`,
    /// `CodingNotSetUp` or `CodingFailed` set.
    [[nodiscard]] virtual Ref<Interfaces::Stripe> readStreamData(Ref<Stream> stream,
                                                                 bool decode) noexcept = 0;

    /// Writes a stream's raw data to `target`. It compresses the data if `encode` is true and the
    /// stream's Filter is FlateDecode. Then it sets the stream's Length to the number of elements
    /// written, in place, in the number that is there; that does not count as a change. The stream
    /// keeps its own data: after compressing, Length holds for the target. 1 on success; 0 with
    /// `NullArgument`, `InvalidArgument`, `StreamDictionaryMissing`, `StreamObjectInvalid` or
    /// `CodingFailed` (if `encode` is true, for any other Filter too) set.
    [[nodiscard]] virtual std::uint32_t
    writeStreamData(Ref<Stream> stream, Ref<Interfaces::Stripe> target, bool encode) noexcept = 0;

    /// Copies the data of every stream that still lies in the source into memory, so that the
    /// document no longer needs the source's contents. It skips a stream whose data cannot be read;
    /// the result is true all the same, and log and code say what was wrong. False with
    /// `StepFailed`, `InvalidArgument` or `OutOfRange` set; the streams before the failing one are
    /// then cached.
    [[nodiscard]] virtual bool cacheStreamData() noexcept = 0;

    /// Whether the document has changed since it was loaded: an operation restructured it, or
    /// somebody set an entry of a dictionary in an object or replaced a stream's data. Changes of
    /// the trailer, of the dictionaries of streams, and of arrays with all in them do not count.
    /// `write` resets nothing.
    [[nodiscard]] virtual bool changed() const noexcept = 0;

    /// Lays pages of `foreign` beneath pages of this document, both as `getPages` gives them.
    /// `mode` chooses which: 0 the first foreign page beneath the first page, 1 the first foreign
    /// page beneath every page, 2 page by page, 3 page by page and the last foreign page beneath
    /// the rest; with any other mode no page changes. An intermediate node of the page tree counts
    /// as a page here: it gets a background that no viewer shows, and that is no failure.
    ///
    /// It only reads the foreign document, which may be released afterwards. It follows references
    /// in the values that it copies, each as often as it occurs: through 512 levels, up to
    /// 1,048,576 objects for one copied value. In all it copies up to 64 times what the foreign
    /// document holds, objects and bytes, for each page that changes.
    ///
    /// False with one of the codes `NullArgument`, `PageTreeInvalid`, `PageInvalid` (both for
    /// foreign resources too), `StreamNotCopied`, `StepFailed`, `ForeignPageEmpty` to
    /// `ForeignStreamUnread` set. Merged resources then stay. Page contents are as they were,
    /// with two exceptions if it failed at the contents of a page: changed pages from the first one
    /// on that had no Contents keep the new ones, and so does a page that Kids lists twice.
    [[nodiscard]] virtual bool addBackground(Ref<Document> foreign,
                                             std::uint32_t mode) noexcept = 0;

    /// Re-encodes the data of every stream to `target`, all or nothing. Streams with an array of
    /// filters are left alone.
    ///
    /// It looks at Filter alone and so destroys images. It deflates a stream with a filter of
    /// another name, such as a JPEG image, and replaces that name; from data behind a predictor it
    /// takes the filter away and leaves the predictor. `Tools::losses` counts those streams as
    /// `Loss::Filters`. `Tools::compressStreams` and `expandStreams` keep what pages show.
    ///
    /// False with `InvalidArgument` (neither `None` nor `FlateDecode`),
    /// `NoValue`, `StreamDictionaryMissing`, `FilterNotUpdated`, `CodingFailed` or
    /// `StreamObjectInvalid` set; all data is then as it was. The streams that it put back, and
    /// their dictionaries, report no change any more, even if they did before the call: ask
    /// `changed()` first if you need it.
    [[nodiscard]] virtual bool setCompression(Compression target) noexcept = 0;

    // The operations from here on are not virtual. They work on documents that the library made,
    // and say what they give for a document of an application's own class.

    /// Every object of the document, in table order. Empty with `OutOfMemory` set, or with
    /// `NotSupported` for a document of an application's own class.
    [[nodiscard]] Host::StackVector<Ref<PDF::Object>> getObjects() const noexcept;

    /// Adds an object that holds `value`, shared, under the next number. Numbers at the end of the
    /// file's table that belong to no object become objects with an empty dictionary, since a
    /// rewrite does not keep gaps.
    ///
    /// Null with `NullArgument`, `InvalidArgument` (null and references are no value of an object),
    /// `OutOfRange` (no number is left) or `NotSupported` (as for `getObjects`) set.
    [[nodiscard]] Ref<PDF::Object> addObject(Ref<Value> value) noexcept;

    /// Removes an object of this document. The object with the highest number goes with its number,
    /// which the next new object gets, and with the empty dictionaries before it that fill gaps.
    /// For any other object an empty dictionary takes its place. References to it stay: take them
    /// away yourself. Handles of the object keep its value. Takes no memory.
    ///
    /// False with `NullArgument`, `ObjectNotFound` or `NotSupported` (as for `getObjects`) set.
    [[nodiscard]] bool removeObject(const Ref<PDF::Object>& object) noexcept;

    /// Raises the version with which the document is written to `version` if that is higher, which
    /// counts as a change. It never lowers it: true if the version is high enough already.
    ///
    /// False with `InvalidArgument` (no version of the file format) or `NotSupported` (as for
    /// `getObjects`) set.
    [[nodiscard]] bool raiseVersion(PdfVersion version) noexcept;

    /// The line ending of the file's first line, with which every written line ends: "\n", "\r" or
    /// "\r\n". Valid as long as the document. Empty, with `NotSupported` set, for a document of an
    /// application's own class.
    [[nodiscard]] std::string_view lineEnding() const noexcept;

    /// Whether `write` spells numbers as they were read (1.05 as 1.05, -0.5 as -0.5) instead of by
    /// their two parts. Off at the start. It changes neither integer, fraction nor equality. A
    /// number that an application made is always written by its parts. For a document of an
    /// application's own class it stays off.
    ///@{
    [[nodiscard]] bool faithfulNumbers() const noexcept;
    void faithfulNumbers(bool faithful) noexcept;
    ///@}

    /// How often the document holds a kind of thing that a rewrite does not keep. It knows the
    /// kinds that only reading the file finds (`Fractions` to `Characters`, `Subsections` and
    /// `Signatures`) and, as the document is now, `Gaps`, `LineFeeds` and `Filters`.
    /// `Tools::losses` finds all kinds. Nothing for a document of an application's own class.
    [[nodiscard]] LossCount metOnReading(Loss kind) const noexcept;

    /// Whether a thing belongs to this document. References within a thing of another document lead
    /// to other objects here.
    ///
    /// Among values it is known for the arrays, dictionaries and streams that are the value of an
    /// object, also when their document is gone. It is `Unknown` for values within other values and
    /// for references. Takes a look-up at most.
    ///@{
    [[nodiscard]] Home homeOf(const PDF::Object& object) const noexcept;
    [[nodiscard]] Home homeOf(const Value& value) const noexcept;
    [[nodiscard]] Home homeOf(const Form& form) const noexcept;
    [[nodiscard]] Home homeOf(const Field& field) const noexcept;
    ///@}

    /// The objects whose value somebody has asked for, and those that were added, in table order.
    /// Everything that an application has changed is in them or in the trailer. Empty as for
    /// `getObjects`.
    [[nodiscard]] Host::StackVector<Ref<PDF::Object>> usedObjects() const noexcept;

    /// The catalog (ISO 32000-1, 7.7.2): the object that the trailer's Root refers to. Null with
    /// `NoTrailer`, `RootMissing`, `RootInvalid` or `CatalogInvalid` set.
    [[nodiscard]] Ref<PDF::Object> getCatalog() const noexcept;

    /// The root of the page tree (ISO 32000-1, 7.7.3): the object that the catalog's Pages refers
    /// to. Null with `RootInvalid`, `CatalogInvalid` or `PageTreeInvalid` set.
    [[nodiscard]] Ref<PDF::Object> getPageCatalog() const noexcept;

    /// The objects in the Kids array of the page tree's root, in order. It looks at this one level,
    /// so that an intermediate node counts as a page. Empty, with `PageTreeInvalid` set, on
    /// failure.
    [[nodiscard]] Host::StackVector<Ref<PDF::Object>> getPages() const noexcept;

    /// The dictionary that `value` is, or that the object it refers to holds. Null with
    /// `NullArgument`, `BadReference`, `ReferenceNotResolved` or `ObjectUnreadable` set.
    [[nodiscard]] Ref<Dictionary> valueAsDict(Ref<Value> value) const noexcept;
};

} // namespace Libraries::Files::PDF
