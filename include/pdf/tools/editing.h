#pragma once

/// @file
/// What editing a document takes beside its values: values from text, new objects, stream data.

#include <host/error.h>
#include <host/export.h>
#include <host/memory_stripe.h>
#include <host/ref.h>
#include <pdf/document.h>
#include <pdf/errors.h>
#include <pdf/values.h>

#include <concepts>
#include <cstdint>
#include <span>
#include <string_view>

/// What applications build on documents: free functions over the public interface, which change
/// nothing of what its operations do. They fail as those do: null or false, the code set, mostly
/// logged through the filter "PDF". What fails has changed nothing, but that `Document::changed`
/// may say so.
///
/// References lead to an object of the document that they are followed in. So a thing that is known
/// to be of another document (`Document::homeOf`) is refused, with `InvalidArgument` set: an
/// object, a page, a form, a field, and an array, dictionary or stream that is the value of such a
/// document's object. A reference, and what lies within other values, has no home: keep those apart
/// yourself.
namespace Libraries::Files::PDF::Tools {

using Host::Ref;

/// Bytes that are borrowed for the length of a call: of a text or of whatever holds bytes.
class Bytes {
public:
    /// The bytes of a text, a literal's closing NUL apart.
    template <class Text>
    requires std::convertible_to<const Text&, std::string_view> Bytes(const Text& text)
    noexcept // NOLINT: it converts
        : text_(text) {}
    /// The bytes of a vector, an array, a span.
    template <class Range>
    requires std::convertible_to<const Range&, std::span<const std::uint8_t>>
    Bytes(const Range& bytes)
    noexcept { // NOLINT: it converts
        const std::span<const std::uint8_t> span(bytes);
        text_ = {reinterpret_cast<const char*>(span.data()), span.size()};
    }

    /// The bytes.
    [[nodiscard]] std::span<const std::uint8_t> span() const noexcept {
        return {reinterpret_cast<const std::uint8_t*>(text_.data()), text_.size()};
    }

private:
    std::string_view text_;
};

/// `Value::parse`: one value in PDF syntax, references allowed.
[[nodiscard]] inline Ref<Value> parseValue(std::string_view syntax,
                                           SyntaxError* error = nullptr) noexcept {
    return Value::parse(syntax, error);
}

/// A string that every reader takes for this text: as `String::create`, but as UTF-16 behind a
/// byte-order mark also where the text has a backslash, which this library does not read again, or
/// a control code. Null with `OutOfMemory` set.
[[nodiscard]] FILES_PDF_EXPORT Ref<String> textString(std::string_view utf8) noexcept;

/// A name of any text, spelled as files have it (ISO 32000-1, 7.3.5): "My form" becomes /My#20form.
/// What is spelled so already is not to be spelled again. `Name::create` takes a name as it is: one
/// with white space or a delimiter would not be read again. Null with `InvalidArgument` (an empty
/// text, or one with a null character, which no name has) or `OutOfMemory` set.
[[nodiscard]] FILES_PDF_EXPORT Ref<Name> nameOf(std::string_view utf8) noexcept;

/// The same as a key, for `Dictionary::set` and `find`.
[[nodiscard]] FILES_PDF_EXPORT Ref<Host::String> keyOf(std::string_view utf8) noexcept;

/// The value as one kind; null with `UnexpectedKind` set for another, and with the code as it was
/// for null.
template <class Interface>
[[nodiscard]] Ref<Interface> as(const Ref<Value>& value) noexcept {
    Ref<Interface> typed = Host::cast<Interface>(value);
    if (value && !typed) Host::Error::set(UnexpectedKind);
    return typed;
}

/// The value that `value` leads to through references, or the value itself; through 32 references
/// at most. Null stays null and leaves the code as it is, so that what a look-up gave can be handed
/// in: `resolve(document, page->find("Annots"))`, where the page must be of this document. What is
/// no reference is given as it is, whosever it is. Null with `ReferenceNotResolved` set where it
/// leads nowhere.
[[nodiscard]] FILES_PDF_EXPORT Ref<Value> resolve(const Document& document,
                                                  Ref<Value> value) noexcept;

/// A reference to an object. Null with `NullArgument` set for null.
[[nodiscard]] FILES_PDF_EXPORT Ref<ObjectRef> referenceTo(const Ref<Object>& object) noexcept;

/// Adds an object that holds `value`, shared, and gives the reference to it. Null as for
/// `Document::addObject`, or with `InvalidArgument` set for a value of another document.
[[nodiscard]] FILES_PDF_EXPORT Ref<ObjectRef> addObject(Document& document,
                                                        Ref<Value> value) noexcept;

/// `Document::removeObject`: an empty dictionary takes the object's place, but the one with the
/// highest number goes altogether. References to it are the caller's to take away.
[[nodiscard]] FILES_PDF_EXPORT bool removeObject(Document& document,
                                                 const Ref<ObjectRef>& ref) noexcept;

/// Adds a stream with a copy of `bytes`, deflated where `deflate` is true, and gives the reference
/// to it. Its dictionary is `entries`, shared, or a new one where that is null; Length, and Filter
/// where it deflates, are set to what is right. Null as for `addObject`, or with `CodingFailed`,
/// `OutOfMemory` or `InvalidArgument` set: for `entries` that say how data is stored (Filter,
/// DecodeParms, F, FFilter, FDecodeParms). Data that is encoded already, a JPEG image perhaps,
/// becomes a stream by `StreamObj` and `addObject`.
[[nodiscard]] FILES_PDF_EXPORT Ref<ObjectRef>
makeStream(Document& document, Bytes bytes, bool deflate,
           const Ref<Dictionary>& entries = nullptr) noexcept;

/// Replaces the data of a stream by a copy of `bytes`: deflated where its Filter was FlateDecode
/// alone, else plain and without a Filter. Its Length becomes a number of its own, whatever it was
/// before: a number that other entries or streams refer to stays as it is.
///
/// False with `NullArgument`, `InvalidArgument` (a stream of an application's own class, or of
/// another document),
/// `StreamDictionaryMissing`, `CodingFailed` or `OutOfMemory` set.
[[nodiscard]] FILES_PDF_EXPORT bool setStreamData(Document& document, const Ref<Stream>& stream,
                                                  Bytes bytes) noexcept;

/// The data of a stream, decoded, in a stripe of its own: also where it was cached, replaced or
/// re-encoded before. The stream keeps what it has.
///
/// Null with `NullArgument`, `InvalidArgument` (a stream of another document),
/// `StreamDictionaryMissing`, `FilterUnsupported` (any filter but one FlateDecode, or one with a
/// predictor), `CodingFailed` (damaged data), `SourceNotRead` (data that cannot be read),
/// `OutOfRange` (more than `limit` bytes) or a code of `Document::readStreamData` set.
[[nodiscard]] FILES_PDF_EXPORT Ref<Host::MemoryStripe>
decodedBytes(Document& document, const Ref<Stream>& stream,
             std::uint64_t limit = UINT64_MAX) noexcept;

} // namespace Libraries::Files::PDF::Tools
