#pragma once

/// @file
/// What editing a document takes beside its values: entries found and checked, values made right,
/// new objects, stream data.

#include <host/export.h>
#include <host/memory_stripe.h>
#include <host/ref.h>
#include <pdf/document.h>
#include <pdf/errors.h>
#include <pdf/tools/result.h>
#include <pdf/values.h>

#include <concepts>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

/// What applications build on documents. Each operation gives a `Result`: what was asked for, or a
/// `Failure` that says what went wrong and where. What fails has changed nothing, but that
/// `Document::changed` may say so. Null where a document or a value is meant is the failure
/// `NullArgument`; exhausted memory is `OutOfMemory`.
///
/// References lead to an object of the document that they are followed in. So an operation refuses
/// a thing that is known to be of another document (`Document::homeOf`), by the failure
/// `InvalidArgument`: an object, a page, a field, and an array, dictionary or stream that is the
/// value of an object there. A reference, and what lies within other values, has no home and cannot
/// be checked: keep those apart yourself.
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

/// @name Looking up
///@{

namespace Detail {

/// The kind of value that an interface stands for; `Invalid` stands for any.
template <class T>
constexpr Value::Type kindOf() noexcept {
    if (std::is_same_v<T, Name>) return Value::Type::Name;
    if (std::is_same_v<T, Boolean>) return Value::Type::Boolean;
    if (std::is_same_v<T, Number>) return Value::Type::Number;
    if (std::is_same_v<T, String>) return Value::Type::String;
    if (std::is_same_v<T, Dictionary>) return Value::Type::Dictionary;
    if (std::is_same_v<T, Stream>) return Value::Type::Stream;
    if (std::is_same_v<T, Array>) return Value::Type::Array;
    static_assert(std::is_base_of_v<Value, T>, "an interface of values, none of the library's own");
    return Value::Type::Invalid;
}

/// What the templates of this name give, once the kind was looked at.
///@{
FILES_PDF_EXPORT Result<Ref<Value>> get(const Ref<Document>& document, const Ref<Value>& value,
                                        Value::Type kind) noexcept;
FILES_PDF_EXPORT Result<Ref<Value>> get(const Ref<Document>& document, const Ref<Dictionary>& from,
                                        std::string_view key, Value::Type kind) noexcept;
FILES_PDF_EXPORT Result<Ref<Value>> get(const Ref<Document>& document, const Ref<Array>& from,
                                        std::uint64_t index, Value::Type kind) noexcept;
///@}

/// The value by the interface of its kind, which was looked at.
template <class T>
Result<Ref<T>> typed(Result<Ref<Value>> found) noexcept {
    if (!found) return Unexpected(std::move(found).error());
    Ref<T> value = Host::cast<T>(*found);
    if (!value) return Unexpected(Failure(UnexpectedKind));
    return value;
}

} // namespace Detail

/// The value of an entry, of the kind `T`, through 32 references at most:
/// `get<Dictionary>(document, page, "Resources")`. `T` is `Value` for any kind but a reference.
///
/// Fails with `KeyNotFound` (there is no such entry, or null, which counts as none: ISO 32000-1,
/// 7.3.7), `UnexpectedKind` (it is of another kind), `ReferenceNotResolved` (it leads nowhere) or
/// `InvalidArgument` (a dictionary of another document).
template <class T>
[[nodiscard]] Result<Ref<T>> get(const Ref<Document>& document, const Ref<Dictionary>& from,
                                 std::string_view key) noexcept {
    return Detail::typed<T>(Detail::get(document, from, key, Detail::kindOf<T>()));
}

/// The same for the element of an array at a zero-based index; `OutOfRange` behind the last one.
template <class T>
[[nodiscard]] Result<Ref<T>> get(const Ref<Document>& document, const Ref<Array>& from,
                                 std::uint64_t index) noexcept {
    return Detail::typed<T>(Detail::get(document, from, index, Detail::kindOf<T>()));
}

/// The same for a value or what it refers to.
template <class T>
[[nodiscard]] Result<Ref<T>> get(const Ref<Document>& document, const Ref<Value>& value) noexcept {
    return Detail::typed<T>(Detail::get(document, value, Detail::kindOf<T>()));
}

/// The dictionary of an entry, as `get` gives it. Where there is none one is added: an object, to
/// which the entry refers from then on. Fails as `get`, but for `KeyNotFound`, and as `addObject`.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<Dictionary>>
getOrAdd(const Ref<Document>& document, const Ref<Dictionary>& from, std::string_view key) noexcept;

///@}
/// @name Making values
///@{

/// A value from PDF syntax, as `Value::parse`, which is new each time: references are allowed.
/// Fails with `InvalidArgument`; the text says at which byte, and why.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<Value>> parseValue(std::string_view syntax) noexcept;

/// The number that is nearest to `number` with five digits behind the point. It is written so by
/// documents with faithful numbers (`Document::faithfulNumbers`), as `open` opens them; without
/// these 1.05 is written as 1.5. Fails with `InvalidArgument` for what is no number, or too large
/// for 64 bits.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<Number>> real(double number) noexcept;

/// What a number means: 1.05 where it was read as 1.05, though its fraction is 5. 0 for null.
[[nodiscard]] FILES_PDF_EXPORT double toDouble(const Ref<Number>& number) noexcept;

/// A string that every reader takes for this text: as `String::create`, but as UTF-16 behind a
/// byte-order mark also where the text has a backslash, which this library does not read again, or
/// a control code.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<String>> textString(std::string_view utf8) noexcept;

/// A string of bytes, which are not inspected (ISO 32000-1, 7.9.2.4): written in hexadecimal.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<String>> byteString(Bytes bytes) noexcept;

/// A name of any text, spelled as files have it (ISO 32000-1, 7.3.5): "My form" becomes /My#20form.
/// What is spelled so already is not to be spelled again. `Name::create` takes a name as it is: one
/// with white space or a delimiter would not be read again. Fails with `InvalidArgument` (an empty
/// text, or one with a null character, which no name has).
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<Name>> nameOf(std::string_view utf8) noexcept;

/// The same as a key, for `Dictionary::set` and `find`.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<Host::String>> keyOf(std::string_view utf8) noexcept;

///@}
/// @name Objects
///@{

/// A reference to an object.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<ObjectRef>>
referenceTo(const Ref<Object>& object) noexcept;

/// Adds an object that holds `value`, shared, and gives the reference to it. Fails as
/// `Document::addObject`, and with `InvalidArgument` for a value of another document.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<ObjectRef>> addObject(const Ref<Document>& document,
                                                                const Ref<Value>& value) noexcept;

/// `Document::removeObject`: an empty dictionary takes the object's place, but the one with the
/// highest number goes altogether. References to it are the caller's to take away. Fails with
/// `ObjectNotFound`, or `NotSupported` for a document of an application's own class.
FILES_PDF_EXPORT Result<void> removeObject(const Ref<Document>& document,
                                           const Ref<ObjectRef>& ref) noexcept;

///@}
/// @name Streams
///@{

/// How a stream's data is to be stored.
enum class Storing : std::uint32_t {
    Plain = 0,   ///< as it is
    Deflated = 1 ///< by FlateDecode (ISO 32000-1, 7.4.4)
};

/// Adds a stream with a copy of `bytes` and gives the reference to it. Its dictionary is `entries`,
/// shared, or a new one where that is null; Length and Filter are set to what is right. Fails as
/// `addObject`, with `CodingFailed`, or with `InvalidArgument` for `entries` that say how data is
/// stored (Filter, DecodeParms, F, FFilter, FDecodeParms).
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<ObjectRef>>
addStream(const Ref<Document>& document, Bytes bytes, Storing storing = Storing::Deflated,
          const Ref<Dictionary>& entries = nullptr) noexcept;

/// Adds a stream whose data is encoded already, a JPEG image perhaps: a copy of `bytes`, stored as
/// it is. `entries` says how it is encoded (Filter, DecodeParms) and is shared; Length is set.
/// Fails as `addObject`, and with `InvalidArgument` for `entries` without a Filter, or with F,
/// FFilter or FDecodeParms, by which the data would be in another file.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<ObjectRef>>
addEncodedStream(const Ref<Document>& document, Bytes bytes,
                 const Ref<Dictionary>& entries) noexcept;

/// Replaces the data of a stream by a copy of `bytes`: deflated where its Filter was FlateDecode
/// alone, else plain and without a Filter. Its Length becomes a number of its own, whatever it was
/// before: a number that other entries or streams refer to stays as it is.
///
/// Fails with `InvalidArgument` (a stream of an application's own class, or of another document),
/// `StreamDictionaryMissing` or `CodingFailed`.
FILES_PDF_EXPORT Result<void> setStreamData(const Ref<Document>& document,
                                            const Ref<Stream>& stream, Bytes bytes) noexcept;

/// The data of a stream, decoded, in a stripe of its own: also where it was cached, replaced or
/// re-encoded before. The stream keeps what it has.
///
/// Fails with `InvalidArgument` (a stream of another document), `StreamDictionaryMissing`,
/// `FilterUnsupported` (any filter but one FlateDecode, or one with a predictor), `CodingFailed`
/// (damaged data), `SourceNotRead` (data that cannot be read), `OutOfRange` (more than `limit`
/// bytes) or a code of `Document::readStreamData`.
[[nodiscard]] FILES_PDF_EXPORT Result<Ref<Host::MemoryStripe>>
decodedBytes(const Ref<Document>& document, const Ref<Stream>& stream,
             std::uint64_t limit = UINT64_MAX) noexcept;

///@}

} // namespace Libraries::Files::PDF::Tools
