#include <pdf/errors.h>

namespace Libraries::Files::PDF {

namespace {

struct Text {
    std::uint32_t code;
    const char* text;
};

constexpr Text texts[] = {
    {Host::NoError, "no error"},
    {StepFailed, "a step of the operation failed"},
    {NullArgument, "a required argument is null"},
    {InvalidArgument, "an argument is empty, of the wrong kind or of the wrong element size"},
    {OutOfRange, "position, index or count out of range"},
    {NotSupported, "operation not supported"},
    {OutOfMemory, "out of memory"},
    {Host::FileNotOpened, "the file could not be opened"},
    {Host::FileNotRead, "the file could not be read"},
    {Host::FileNotWritten, "the file could not be written"},
    {Host::NotARegularFile, "not a regular file"},
    {ObjectNotFound, "object not found"},
    {FormNotFound, "no interactive form, or field not found"},
    {KeyNotFound, "key not found in dictionary"},
    {HeaderUnreadable, "the file is empty, or begins with an empty line"},
    {VersionUnsupported, "not a PDF file from its first byte on, or its version is not supported"},
    {EndMarkerMissing, "the file was cut off, or something stands behind its end marker (%%EOF)"},
    {StartXrefMissing, "startxref not found: only digits and line endings may stand behind it"},
    {TrailerMissing, "trailer not found: a cross-reference stream in its place, or a blank behind "
                     "the word, is not supported"},
    {TrailerUnreadable, "the trailer's dictionary, or the offset behind startxref, cannot be read"},
    {XrefUnreadable, "startxref does not lead to a cross-reference table, or the table is damaged"},
    {ObjectUnreadable, "an object cannot be read where the table has it, or is no dictionary"},
    {UnexpectedKind, "a value is of an unexpected kind"},
    {NoValue, "an object has no value"},
    {BadReference, "a reference or dictionary is unusable"},
    {ReferenceNotResolved, "a reference does not resolve"},
    {LengthInvalid, "a stream's length is missing or invalid"},
    {StreamNotCopied, "a foreign content stream could not be copied"},
    {VersionNotWritten, "the header could not be written"},
    {ObjectNotWritten, "an object could not be written"},
    {TrailerNotWritten, "the cross-reference table or trailer could not be written"},
    {LineEndingUnknown, "the file ends in its first line"},
    {StreamDictionaryMissing, "a stream has no dictionary"},
    {FilterNotUpdated, "a stream's filter entry could not be changed"},
    {CodingFailed, "encoding or decoding a stream failed"},
    {CodingNotSetUp, "a stream filter could not be made"},
    {FilterUnsupported, "a stream's filter is not supported"},
    {FormIncomplete, "some form fields could not be built"},
    {ButtonHasNoValue, "a push button has no value"},
    {ResultUnsound, "the result would be no sound document"},
    {NotReadAgain, "a text or name cannot be read again once it is saved"},
    {ExpansionTooBig, "the streams take more than is allowed, which is out of proportion"},
    {NoTrailer, "the document has no trailer"},
    {RootMissing, "the trailer has no root reference"},
    {RootInvalid, "the root object is missing or no dictionary"},
    {CatalogInvalid, "the catalog is invalid"},
    {PageTreeInvalid, "the page tree is invalid"},
    {PageInvalid, "a page is invalid"},
    {StreamObjectInvalid, "a stream cannot be re-encoded"},
    {ForeignPageEmpty, "the foreign document has no pages, or a page no contents"},
    {ForeignPageInvalid, "a foreign page is unusable"},
    {ForeignStreamUnread, "a foreign content stream cannot be read"},
    {FileDamaged, "the file's structure, or an object in it, is damaged"},
    {FileEncrypted, "the file is encrypted"},
    {NotPdf, "the source is no PDF document"},
    {PasswordNeeded, "the document is encrypted, and the password is missing or wrong"},
    {EncryptionUnknown, "the document is encrypted in a way that is not supported"},
    {BeyondRepair, "the document is damaged beyond repair"},
    {LimitExceeded, "the document's structure is larger than allowed"},
    {SourceNotRead, "the source could not be read"},
    {TargetNotWritten, "the target could not be written"},
};

} // namespace

const char* errorText(std::uint32_t code) noexcept {
    for (const Text& known : texts) {
        if (known.code == code) return known.text;
    }
    const bool foreignTree = code >= NoTrailer + 256 && code < NoTrailer + 512;
    return foreignTree ? "the foreign document's page tree is unreadable" : "unknown error";
}

} // namespace Libraries::Files::PDF
