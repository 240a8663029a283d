#pragma once

/// @file
/// The values of a document: the contents of its objects, dictionaries and arrays.
///
/// Values are counted and passed around as `Ref`; a null handle means "no value". Containers share
/// the values in them; they do not copy them. Arrays grow, entries of dictionaries and the data of
/// streams can be set; scalars never change, except for the number that is a stream's Length.
///
/// Unless an operation says otherwise, its failure gives null or false, sets the thread's error
/// code and logs through the filter "PDF"; when memory is exhausted that code is `OutOfMemory`.
/// Recursive operations (text form, equality, change) go 512 levels deep. A value that lies deeper
/// has no text, equals nothing and counts as unchanged.

#include <host/containers.h>
#include <host/export.h>
#include <host/ref.h>
#include <host/string.h>
#include <host/stripe.h>

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF {

using Host::Ref;

/// Where and why a text is no value.
struct SyntaxError {
    std::uint64_t offset = 0; ///< in bytes from the text's start
    const char* cause = "";   ///< in a few words, for people; never null
};

/// Any value (ISO 32000-1, 7.3).
class FILES_PDF_EXPORT Value : public Host::RefCount {
public:
    /// The kind of a value. Messages print these numbers.
    enum class Type : std::uint32_t {
        Invalid = 0,    ///< no value: the answer of an object without one
        Name = 1,       ///< a PDF::Name
        Boolean = 2,    ///< a PDF::Boolean
        Number = 3,     ///< a PDF::Number
        String = 4,     ///< a PDF::String
        ObjectRef = 5,  ///< a PDF::ObjectRef
        Dictionary = 6, ///< a PDF::Dictionary
        Stream = 7,     ///< a PDF::Stream
        Array = 8,      ///< a PDF::Array
        Null = 9        ///< a PDF::Null, which is a value; "no value" is a null handle
    };

    /// The value that `syntax` spells in the syntax of files (ISO 32000-1, 7.3):
    /// "<< /Kids [ 7 0 R ] /Count 1 >>". White space and comments may stand around it. The rules
    /// are those of `Document::create(source)`: "1.05" is 1.5, and no escape stands for a
    /// backslash. A stream is no value here.
    ///
    /// Null with `InvalidArgument` set if it spells no value or more than one; the log says why,
    /// and so does `error` if it is given.
    [[nodiscard]] static Ref<Value> parse(std::string_view syntax,
                                          SyntaxError* error = nullptr) noexcept;

    /// Tells which class `Host::cast` reaches; never `Invalid`.
    [[nodiscard]] virtual Type type() const noexcept = 0;

    /// The value's text form for people, which is not the syntax of a file.
    [[nodiscard]] virtual Ref<Host::String> asText() const noexcept = 0;

    /// Whether `other` is of the same kind with equal contents. Null equals nothing.
    [[nodiscard]] virtual bool equal(Ref<Value> other) const noexcept = 0;

    /// Whether the value was modified since it was made or read. A dictionary answers for the
    /// values in it too. An array always answers false, for all in it. References are not followed.
    [[nodiscard]] virtual bool changed() const noexcept = 0;
};

/// The null value (ISO 32000-1, 7.3.9). Text form: Null.
class FILES_PDF_EXPORT Null : public Value {
public:
    /// Makes the null value.
    [[nodiscard]] static Ref<Null> create() noexcept;
};

/// A truth value (ISO 32000-1, 7.3.2).
class FILES_PDF_EXPORT Boolean : public Value {
public:
    /// Makes a truth value.
    [[nodiscard]] static Ref<Boolean> create(bool value) noexcept;

    /// Text form: true or false.
    [[nodiscard]] virtual bool value() const noexcept = 0;
};

/// A number (ISO 32000-1, 7.3.3), kept as two integers instead of a floating-point value.
///
/// The fraction is the digits behind the point, read as a whole number. So 1.5 and 1.50
/// differ, 1.05 equals 1.5, and -0.5 loses its sign. Text form: always both parts (12 gives 12.0).
///
/// `Document::setCompression` and `writeStreamData` put a stream's new length into the number that
/// its Length is or refers to. If that number stands in other places too, it changes there as well.
/// It reports no change.
class FILES_PDF_EXPORT Number : public Value {
public:
    /// Makes a number.
    [[nodiscard]] static Ref<Number> create(std::int64_t integer,
                                            std::uint64_t fraction = 0) noexcept;
    /// Not for floating-point values, which would lose their fraction: `Value::parse` reads "0.25".
    template <std::floating_point Real>
    static Ref<Number> create(Real, std::uint64_t = 0) = delete;

    /// The part before the point.
    [[nodiscard]] virtual std::int64_t integer() const noexcept = 0;
    /// The digits behind the point as an integer; 0 for a whole number.
    [[nodiscard]] virtual std::uint64_t fraction() const noexcept = 0;
    /// How the file spells the number, if its two parts would be written otherwise: 1.05, -0.5, +7.
    /// Null for any other number, and for one that an application made. See
    /// `Document::faithfulNumbers`.
    [[nodiscard]] virtual Ref<Host::String> spelling() const noexcept;
};

/// A string (ISO 32000-1, 7.3.4). It holds either text or bytes.
///
/// A file has text as a literal string and bytes as a hexadecimal one. A text string never equals a
/// byte string. Text form: the text; for bytes that begin with a UTF-16 byte-order mark the text
/// they encode, else their hexadecimal digits.
class FILES_PDF_EXPORT String : public Value {
public:
    /// Makes a string of `text`. ASCII stays text; any other text becomes UTF-16BE bytes behind a
    /// byte-order mark (ISO 32000-1, 7.9.2.2). Null with `NullArgument` set for null.
    [[nodiscard]] static Ref<String> create(Ref<Host::String> text) noexcept;
    /// The same of UTF-8.
    [[nodiscard]] static Ref<String> create(std::string_view utf8) noexcept;
    /// Makes a string of any `bytes`. Null with `NullArgument` set for null.
    [[nodiscard]] static Ref<String> create(Ref<Host::TConstArray<unsigned char>> bytes) noexcept;

    /// The text; null for a byte string.
    [[nodiscard]] virtual Ref<Host::String> text() const noexcept = 0;
    /// The bytes; null for a text string.
    [[nodiscard]] virtual Ref<Host::TConstArray<unsigned char>> bytes() const noexcept = 0;

    /// The same as `text()`.
    [[nodiscard]] Ref<Host::String> value() const noexcept;
};

/// A name (ISO 32000-1, 7.3.5), kept as it stands in the file: with its number-sign sequences.
class FILES_PDF_EXPORT Name : public Value {
public:
    /// Makes a name of `name`, which has no solidus; any characters will do. Null with
    /// `NullArgument` (null) or `InvalidArgument` (empty) set.
    [[nodiscard]] static Ref<Name> create(Ref<Host::String> name) noexcept;
    /// The same of UTF-8.
    [[nodiscard]] static Ref<Name> create(std::string_view utf8) noexcept;
    /// As for a null text.
    [[nodiscard]] static Ref<Name> create(std::nullptr_t) noexcept {
        return create(Ref<Host::String>());
    }

    /// The name without its solidus, shared. Text form: the same.
    [[nodiscard]] virtual Ref<Host::String> name() const noexcept = 0;
};

/// A reference to an indirect object (ISO 32000-1, 7.3.10); `Document::getObject` resolves it.
/// Text form: 12 (0).
class FILES_PDF_EXPORT ObjectRef : public Value {
public:
    /// Makes a reference to an object, which need not exist.
    [[nodiscard]] static Ref<ObjectRef> create(std::uint32_t id,
                                               std::uint16_t generation = 0) noexcept;

    /// The object's number. There may be no such object.
    [[nodiscard]] virtual std::uint32_t id() const noexcept = 0;
    /// 0 unless the object's number was used before.
    [[nodiscard]] virtual std::uint16_t generation() const noexcept = 0;
};

/// A sequence of values (ISO 32000-1, 7.3.6). It grows, and reports no changes.
///
/// The typed accessors give the element at a zero-based index as one kind. Behind the end they log
/// and leave the error code alone; for another kind they set `UnexpectedKind`.
class FILES_PDF_EXPORT Array : public Value {
public:
    /// Makes an array that shares `elements`, null ones included.
    [[nodiscard]] static Ref<Array> create(const std::vector<Ref<Value>>& elements) noexcept;

    /// Number of elements.
    [[nodiscard]] virtual std::uint64_t size() const noexcept = 0;
    /// The element at a zero-based index; null, with no code set, behind the end.
    [[nodiscard]] virtual Ref<Value> get(std::uint64_t index) const noexcept = 0;
    /// Appends. False with `NullArgument` set for null.
    [[nodiscard]] virtual bool add(Ref<Value> value) noexcept = 0;

    /// The element at a zero-based index, shared; null with `UnexpectedKind` set for another kind,
    /// and with no code set behind the end.
    ///@{
    [[nodiscard]] Ref<ObjectRef> getAsObjectRef(std::uint64_t index) const noexcept;
    [[nodiscard]] Ref<Name> getAsName(std::uint64_t index) const noexcept;
    [[nodiscard]] Ref<String> getAsString(std::uint64_t index) const noexcept;
    ///@}
};

/// Values under keys (ISO 32000-1, 7.3.7), in ascending order of the keys.
///
/// Keys are names without their solidus. The typed accessors give an entry as one kind. They set
/// `KeyNotFound` if there is none (and log it unless `quiet`), and `UnexpectedKind` for another
/// kind.
class FILES_PDF_EXPORT Dictionary : public Value {
public:
    /// An entry for `create`: a key in UTF-8 and a value to share.
    using Entry = std::pair<std::string_view, Ref<Value>>;
    /// Makes a dictionary of entries in any order; it counts as unmodified. Of entries with equal
    /// keys the last one counts. Null with `InvalidArgument` set for an empty key. Null also for a
    /// null value: then the code stays, since the call that was to make the value has set it.
    [[nodiscard]] static Ref<Dictionary> create(std::initializer_list<Entry> entries = {}) noexcept;

    /// The keys in ascending order, in a new vector.
    [[nodiscard]] virtual Ref<Host::TVector<Ref<Host::String>>> keys() const noexcept = 0;
    /// The value under `key`, or null with `NullArgument`, `InvalidArgument` (empty key) or
    /// `KeyNotFound` set. Logs nothing, allocates nothing.
    [[nodiscard]] virtual Ref<Value> find(const Ref<Host::String>& key) const noexcept = 0;
    /// Puts `value` under `key`; null removes the entry if there is one. Marks the dictionary as
    /// modified. False with `NullArgument` or `InvalidArgument` (empty key) set.
    [[nodiscard]] virtual bool set(Ref<Host::String> key, Ref<Value> value) noexcept = 0;

    /// The value under `key`, shared. Null as for `find`, and with `UnexpectedKind` set for another
    /// kind, such as a reference. With `quiet` a missing key is not logged; the code is set all the
    /// same.
    ///@{
    [[nodiscard]] Ref<ObjectRef> findAsObjectRef(const Ref<Host::String>& key,
                                                 bool quiet = false) const noexcept;
    [[nodiscard]] Ref<Array> findAsArray(const Ref<Host::String>& key,
                                         bool quiet = false) const noexcept;
    [[nodiscard]] Ref<Dictionary> findAsDictionary(const Ref<Host::String>& key,
                                                   bool quiet = false) const noexcept;
    [[nodiscard]] Ref<Name> findAsName(const Ref<Host::String>& key,
                                       bool quiet = false) const noexcept;
    [[nodiscard]] Ref<Number> findAsNumber(const Ref<Host::String>& key,
                                           bool quiet = false) const noexcept;
    [[nodiscard]] Ref<String> findAsString(const Ref<Host::String>& key,
                                           bool quiet = false) const noexcept;
    ///@}

    /// The same for a key in UTF-8. Looking up a key in ASCII allocates nothing.
    ///@{
    [[nodiscard]] Ref<Value> find(std::string_view key) const noexcept;
    [[nodiscard]] bool set(std::string_view key, Ref<Value> value) noexcept;
    [[nodiscard]] Ref<ObjectRef> findAsObjectRef(std::string_view key,
                                                 bool quiet = false) const noexcept;
    [[nodiscard]] Ref<Array> findAsArray(std::string_view key, bool quiet = false) const noexcept;
    [[nodiscard]] Ref<Dictionary> findAsDictionary(std::string_view key,
                                                   bool quiet = false) const noexcept;
    [[nodiscard]] Ref<Name> findAsName(std::string_view key, bool quiet = false) const noexcept;
    [[nodiscard]] Ref<Number> findAsNumber(std::string_view key, bool quiet = false) const noexcept;
    [[nodiscard]] Ref<String> findAsString(std::string_view key, bool quiet = false) const noexcept;
    ///@}
};

/// How a stream's data is compressed.
enum class Compression : std::uint32_t {
    None = 0,       ///< no filter, or one that this library does not treat
    Unknown = 1,    ///< no dictionary, or a Filter entry that is not a name
    FlateDecode = 2 ///< Filter is the name FlateDecode (ISO 32000-1, 7.4.4)
};

/// A dictionary with data (ISO 32000-1, 7.3.8). No stream equals any other, nor itself.
class FILES_PDF_EXPORT Stream : public Value {
public:
    /// The answer of `strmOfs` for data that does not come from the file.
    static constexpr std::uint64_t noOffset = UINT64_MAX;

    /// Offset in bytes of the data in the document's file, or `noOffset`.
    [[nodiscard]] virtual std::uint64_t strmOfs() const noexcept = 0;
    /// The stream's dictionary, shared with it. A change of the dictionary does not count as one of
    /// the stream. Null for a stream that was made without one.
    [[nodiscard]] virtual Ref<Dictionary> dict() const noexcept = 0;
    /// The meaning of the dictionary's Filter at the moment. Leaves the error code alone.
    [[nodiscard]] virtual Compression compression() const noexcept = 0;
};

/// The library's stream. Its data stays in the file until the document is asked for it.
class FILES_PDF_EXPORT StreamObj final : public Stream {
public:
    /// A stream of a file. Its data lies at `offset` and is not loaded.
    StreamObj(Ref<Dictionary> dict, std::uint64_t offset) noexcept;
    /// A stream made in memory. `data` has 32-bit elements, one for each byte. It must be what the
    /// dictionary's Filter and Length say; neither is adjusted.
    StreamObj(Ref<Dictionary> dict, Ref<Interfaces::Stripe> data) noexcept;

    /// The encoded data; null while it lies unread in the file.
    [[nodiscard]] Ref<Interfaces::Stripe> strmData() const noexcept { return data_; }
    /// Replaces the data and marks the stream as changed. The dictionary stays as it is: the caller
    /// sets its Length, or `Document::writeStreamData` does.
    void strmData(Ref<Interfaces::Stripe> data) noexcept;
    /// Takes the mark of `strmData` away.
    void resetChanged() noexcept { changed_ = false; }

    [[nodiscard]] Type type() const noexcept override { return Type::Stream; }
    [[nodiscard]] Ref<Host::String> asText() const noexcept override;
    [[nodiscard]] bool equal(Ref<Value> other) const noexcept override;
    /// Whether the data was replaced; a change of the dictionary does not count.
    [[nodiscard]] bool changed() const noexcept override { return changed_; }
    [[nodiscard]] std::uint64_t strmOfs() const noexcept override { return offset_; }
    [[nodiscard]] Ref<Dictionary> dict() const noexcept override { return dict_; }
    [[nodiscard]] Compression compression() const noexcept override;

private:
    ~StreamObj() override = default;

    Ref<Dictionary> dict_;
    Ref<Interfaces::Stripe> data_;
    std::uint64_t offset_;
    bool changed_ = false;
};

/// An indirect object (ISO 32000-1, 7.3.10): a number, a generation and a value. None of them is
/// ever replaced.
///
/// The accessors of the value give it as one kind. They set `NoValue` if there is none, and
/// `UnexpectedKind` for another kind.
class FILES_PDF_EXPORT Object : public Host::RefCount {
public:
    /// The number by which references name the object. It is unique in the document.
    [[nodiscard]] virtual std::uint32_t id() const noexcept = 0;
    /// 0 unless the number was used before.
    [[nodiscard]] virtual std::uint16_t generation() const noexcept = 0;
    /// The value, shared, or null.
    [[nodiscard]] virtual Ref<Value> value() const noexcept = 0;

    /// Text form: 12 (0).
    [[nodiscard]] Ref<Host::String> asText() const noexcept;
    /// The value's kind; `Invalid` with `NoValue` set if there is none.
    [[nodiscard]] virtual Value::Type valueType() const noexcept;
    /// The value as one kind, shared. A stream is no dictionary here: ask for its `dict`.
    ///@{
    [[nodiscard]] Ref<Dictionary> valueAsDictionary() const noexcept;
    [[nodiscard]] Ref<Array> valueAsArray() const noexcept;
    [[nodiscard]] Ref<Stream> valueAsStream() const noexcept;
    ///@}
};

} // namespace Libraries::Files::PDF
