#pragma once

/// @file
/// Every error code that the library sets, named once.

#include <host/error.h>
#include <host/export.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// What `Host::Error::get()` gives after a failed operation, and `code()` of a tool's `Failure`.
/// The codes of the platform layer (`Host::NullArgument` and its like) mean the same here.
enum ErrorCode : std::uint32_t {
    StepFailed = Host::StepFailed,           ///< a step inside a larger operation failed
    NullArgument = Host::NullArgument,       ///< a required argument is null
    InvalidArgument = Host::InvalidArgument, ///< an argument is empty, of the wrong kind or size
    OutOfRange = Host::OutOfRange,           ///< position, index or count out of range
    NotSupported = Host::NotSupported,       ///< the operation is not supported here
    OutOfMemory = Host::OutOfMemory,         ///< memory is exhausted

    ObjectNotFound = 33921, ///< no object with that id and generation
    FormNotFound = 34819,   ///< no interactive form, or no such field
    KeyNotFound = 65537,    ///< the dictionary has no such key

    HeaderUnreadable = 1280,     ///< the first line is missing or empty
    VersionUnsupported = 1281,   ///< the first line is not "%PDF-" and a supported version
    EndMarkerMissing = 1282,     ///< the file does not end in "%%EOF" and line endings
    StartXrefMissing = 1283,     ///< "startxref" does not stand before the end marker
    TrailerMissing = 1284,       ///< "trailer" does not stand before "startxref"
    TrailerUnreadable = 1285,    ///< the startxref offset or the trailer dictionary is unreadable
    XrefUnreadable = 1286,       ///< the cross-reference section is invalid
    ObjectUnreadable = 1287,     ///< an object, or what a reference leads to, is unreadable
    UnexpectedKind = 1288,       ///< a value is of another kind than asked for
    NoValue = 1289,              ///< an object holds no value
    BadReference = 1290,         ///< a value is no usable reference or dictionary
    ReferenceNotResolved = 1291, ///< a reference leads nowhere; an object to remove is not there
    LengthInvalid = 1292,        ///< a stream's Length is missing or invalid
    StreamNotCopied = 1293,      ///< a foreign content stream could not be copied
    VersionNotWritten = 1294,    ///< the header line could not be written
    ObjectNotWritten = 1295,     ///< an object could not be written
    TrailerNotWritten = 1297,    ///< cross-reference section or trailer could not be written
    LineEndingUnknown = 1299,    ///< the first line's ending is unreadable or unknown

    StreamDictionaryMissing = 1301, ///< a stream has no dictionary
    FilterNotUpdated = 1302,        ///< a stream's Filter entry could not be changed
    CodingFailed = 1303,            ///< inflating, deflating or moving stream data failed
    CodingNotSetUp = 1304,          ///< a filter or converter could not be made
    FilterUnsupported = 1305,       ///< a stream's Filter is of a kind or name not supported
    FormIncomplete = 1306,          ///< some field could not be built; the form is there
    ButtonHasNoValue = 1307,        ///< a value or state was set on a push button

    ResultUnsound = 34080, ///< what was to be saved would be no sound document any more

    NotReadAgain = 34090,    ///< a text or name that was set would not be read again once saved
    ExpansionTooBig = 34091, ///< a document's streams would take more than they are allowed

    NoTrailer = 1536,           ///< the document has no trailer dictionary
    RootMissing = 1537,         ///< the trailer has no Root reference
    RootInvalid = 1538,         ///< the root object is missing or not a dictionary
    CatalogInvalid = 1539,      ///< the catalog's Type or Pages entry is invalid
    PageTreeInvalid = 1542,     ///< the pages object or its Kids array is invalid
    PageInvalid = 1543,         ///< a page's dictionary or resources are unusable
    StreamObjectInvalid = 1544, ///< a stream cannot be re-encoded as it stands
    ForeignPageEmpty = 1797,    ///< the foreign document has no pages, or a page no contents
    ForeignTreeInvalid = 1798,  ///< the foreign page tree is unreadable
    ForeignPageInvalid = 1799,  ///< a foreign page's dictionary or contents are unusable
    ForeignStreamUnread = 1800, ///< a foreign content stream's data is unreadable

    FileDamaged = 34084,   ///< the file's structure, or an object in it, is damaged
    FileEncrypted = 34085, ///< the file is encrypted

    NotPdf = 34064,            ///< the source is no PDF document at all
    PasswordNeeded = 34065,    ///< importing: the password is missing or not the document's
    EncryptionUnknown = 34066, ///< importing: the document is encrypted in an unknown way
    BeyondRepair = 34067,      ///< importing: the document is too damaged to be repaired
    LimitExceeded = 34068,     ///< the document's structure is larger than allowed
    SourceNotRead = 34069,     ///< the source could not be read
    TargetNotWritten = 34070,  ///< importing: the target could not be written
};

/// A short English text for any code, for people to read: never null, never empty. The codes 1792
/// to 2047 are for foreign documents. `Document::addBackground` sets those of them that are named
/// above; the others share one text.
[[nodiscard]] FILES_PDF_EXPORT const char* errorText(std::uint32_t code) noexcept;

} // namespace Libraries::Files::PDF
