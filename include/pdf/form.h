#pragma once

/// @file
/// The interactive form of a document (ISO 32000-1, 12.7): fields, found by name or path, and their
/// values.
///
/// Fields refer to their document and parent weakly and keep neither alive. When their document is
/// gone each field stays usable, alone with its kids. An operation that fails gives null, false or
/// nothing, sets the thread's error code and, if something is wrong with the document, logs through
/// the filter "Lib.File.PDF.Form". A missing entry gives null without a message; an entry of the
/// wrong kind gives null as well. References are followed in AP, its N, and DR only. In any other
/// entry a reference is of the wrong kind; `Choice::value` and `defaultValue`, which take any kind,
/// give the reference itself.
///
/// Entries are read from the field's own dictionary only, so nothing is inherited. V, DV, AS, Opt,
/// I and MaxLen are read at each call. FT, Ff, Kids, T, TU, TM, DA and Q are read once, when the
/// form is built, and so are the references to AP and DR. The dictionaries AP and DR are shared
/// with the document: a new N in the AP shows, another AP does not. The form's own entries, except
/// Fields, are read at each call. Setting a value does not rebuild the field's appearance.
/// `Tools::FormEditor` does that, and minds inherited entries.

#include <host/export.h>
#include <host/string.h>
#include <host/weak_ref.h>
#include <pdf/values.h>

#include <cstdint>
#include <vector>

namespace Libraries::Files::PDF {

/// How a field's text is placed (ISO 32000-1, 12.7.3.3).
enum class Quadding : std::uint32_t {
    NotSet = 0,   ///< no Q entry, or not a valid one
    Left = 1,     ///< Q is 0
    Centered = 2, ///< Q is 1
    Right = 3     ///< Q is 2
};

/// Bits of `Field::flags()` (ISO 32000-1, tables 221, 226, 228 and 230).
namespace FieldFlags {
inline constexpr std::uint32_t readOnly = 0x1;         ///< for people; `setValue` ignores it
inline constexpr std::uint32_t required = 0x2;         ///< when the form is submitted
inline constexpr std::uint32_t noExport = 0x4;         ///< left out when the form is submitted
inline constexpr std::uint32_t multiline = 0x1000;     ///< text
inline constexpr std::uint32_t password = 0x2000;      ///< text
inline constexpr std::uint32_t noToggleToOff = 0x4000; ///< button
inline constexpr std::uint32_t radio = 0x8000;         ///< button
inline constexpr std::uint32_t pushButton = 0x10000;   ///< button: it has no value
inline constexpr std::uint32_t combo = 0x20000;        ///< choice
inline constexpr std::uint32_t edit = 0x40000;         ///< choice
inline constexpr std::uint32_t fileSelect = 0x100000;  ///< text: the value is the path of a file
inline constexpr std::uint32_t multiSelect = 0x200000; ///< choice: the value may be an array
inline constexpr std::uint32_t comb = 0x1000000;       ///< text: `maxLen` cells of equal width
} // namespace FieldFlags

/// A node of the field tree: a field, or a group of fields.
class FILES_PDF_EXPORT Field : public Host::Object {
public:
    /// The meaning of the field's FT entry.
    enum class Kind : std::uint32_t {
        Plain = 1,    ///< no FT entry: a group, or a widget of the field above it
        Button = 2,   ///< `Fields::Button`
        Text = 3,     ///< `Fields::Text`
        Choice = 4,   ///< `Fields::Choice`
        Signature = 5 ///< `Fields::Signature`
    };

    /// Tells which class `Host::cast` reaches.
    [[nodiscard]] virtual Kind fieldType() const noexcept = 0;
    /// The Ff entry; 0 if there is none. See `FieldFlags`.
    [[nodiscard]] virtual std::uint32_t flags() const noexcept = 0;
    /// The field above; null for a top-level field, and when it or the document is gone.
    [[nodiscard]] virtual Ref<Field> parent() const noexcept = 0;
    /// Number of kids, widgets of this field included.
    [[nodiscard]] virtual std::uint64_t childCount() const noexcept = 0;
    /// The kid at a zero-based index; null with `OutOfRange` set behind the last.
    [[nodiscard]] virtual Ref<Field> child(std::uint64_t index) const noexcept = 0;
    /// The T entry; null if there is none.
    [[nodiscard]] virtual Ref<String> partialName() const noexcept = 0;
    /// The TU entry: the name for people.
    [[nodiscard]] virtual Ref<String> alternateName() const noexcept = 0;
    /// The TM entry: the name for export.
    [[nodiscard]] virtual Ref<String> mappingName() const noexcept = 0;
    /// The AP dictionary, followed through one reference.
    [[nodiscard]] virtual Ref<Dictionary> appearances() const noexcept = 0;
    /// The N entry of the AP dictionary, of any kind, followed through one reference; null if that
    /// leads nowhere.
    [[nodiscard]] virtual Ref<Value> normalAppearance() const noexcept = 0;
    /// The DR dictionary, followed through one reference.
    [[nodiscard]] virtual Ref<Dictionary> defaultResources() const noexcept = 0;
    /// The DA entry.
    [[nodiscard]] virtual Ref<String> defaultAppearance() const noexcept = 0;
    /// The Q entry.
    [[nodiscard]] virtual Quadding quadding() const noexcept = 0;

    /// The first kid whose partial name is `name`; the index in decimal is the name of a kid
    /// without one. Null with `NullArgument`, `InvalidArgument` (empty) or `FormNotFound` set; for
    /// an application's own class with `NotSupported`, unless that class does better.
    [[nodiscard]] virtual Ref<Field> fieldByName(const Ref<Host::String>& name) const noexcept;

    /// The field's zero-based index in the array that lists it; 0 for an application's own class.
    [[nodiscard]] virtual std::uint64_t index() const noexcept { return 0; }

    /// The partial names from the root on, joined by "."; the index is the name of a field without
    /// one.
    [[nodiscard]] Ref<Host::String> fullName() const noexcept;

    /// The field's dictionary, shared with the document. Null as for `fieldByName`.
    [[nodiscard]] virtual Ref<Dictionary> dictionary() const noexcept;
};

/// The kinds of fields that `Host::cast` reaches from a `Field`.
namespace Fields {

/// A push button, check box or radio button (ISO 32000-1, 12.7.4.2).
///
/// Set both the value and the state of a check box so that it looks checked.
class FILES_PDF_EXPORT Button : public Field {
public:
    /// Sets V; null removes it. False with `ButtonHasNoValue` (push button) or `InvalidArgument`
    /// (empty name) set.
    [[nodiscard]] virtual bool setValue(Ref<Name> value) noexcept = 0;
    /// The V entry, shared; null if there is none.
    [[nodiscard]] virtual Ref<Name> value() const noexcept = 0;
    /// The DV entry, the value after a reset; null if there is none.
    [[nodiscard]] virtual Ref<Name> defaultValue() const noexcept = 0;
    /// Sets AS, the appearance state, under the rules of `setValue`.
    [[nodiscard]] virtual bool setState(Ref<Name> state) noexcept = 0;
    /// The AS entry, shared; null if there is none.
    [[nodiscard]] virtual Ref<Name> state() const noexcept = 0;
    /// The Opt array.
    [[nodiscard]] virtual Ref<Array> options() const noexcept = 0;
    /// The names of the appearance states: the elements of Opt (names, or the text of strings), or
    /// without Opt the keys of the normal appearance. Empty, with a warning, if there are none;
    /// empty with `StepFailed` set if an option is neither name nor string, or is an empty text.
    [[nodiscard]] virtual std::vector<Ref<Name>> states() const noexcept = 0;
};

/// A text field (ISO 32000-1, 12.7.4.3).
class FILES_PDF_EXPORT Text : public Field {
public:
    /// The largest length in characters. 0 with `KeyNotFound` set if there is none, and with
    /// `UnexpectedKind` if it is no number.
    [[nodiscard]] virtual std::uint64_t maxLen() const noexcept = 0;
    /// Sets V; null removes it. False with `InvalidArgument` set when the value is longer than
    /// `maxLen`. The length of a byte string is that of UTF-16 behind a byte-order mark.
    [[nodiscard]] virtual bool setValue(Ref<String> value) noexcept = 0;
    /// The V entry, shared; null if there is none.
    [[nodiscard]] virtual Ref<String> value() const noexcept = 0;
    /// The DV entry, the value after a reset; null if there is none.
    [[nodiscard]] virtual Ref<String> defaultValue() const noexcept = 0;
};

/// A list box or combo box (ISO 32000-1, 12.7.4.4).
class FILES_PDF_EXPORT Choice : public Field {
public:
    /// Sets V to a string, or in a multi-select field to an array of strings. An array of one
    /// string becomes that string. Null and an empty array remove V. False with `InvalidArgument`
    /// set for anything else.
    [[nodiscard]] virtual bool setValue(Ref<Value> value) noexcept = 0;
    /// The V entry, shared, of any kind: a string, or an array in a multi-select field. Null if
    /// there is none.
    [[nodiscard]] virtual Ref<Value> value() const noexcept = 0;
    /// The DV entry, as `value`.
    [[nodiscard]] virtual Ref<Value> defaultValue() const noexcept = 0;
    /// The Opt array, shared: of strings, or of arrays of the value for export and the text shown.
    [[nodiscard]] virtual Ref<Array> options() const noexcept = 0;
    /// The I array, of zero-based indices into `options()`. `setValue` does not adjust it.
    [[nodiscard]] virtual Ref<Array> selectedIndices() const noexcept = 0;
};

/// A signature field (ISO 32000-1, 12.7.4.5).
class FILES_PDF_EXPORT Signature : public Field {};

} // namespace Fields

/// The interactive form of a document (ISO 32000-1, 12.7.2).
class FILES_PDF_EXPORT Form : public Host::Object {
public:
    /// The NeedAppearances entry: whether a viewer is to rebuild the looks of the fields.
    [[nodiscard]] virtual Ref<Boolean> needAppearances() const noexcept = 0;
    /// The Q entry.
    [[nodiscard]] virtual Quadding quadding() const noexcept = 0;
    /// The DA entry.
    [[nodiscard]] virtual Ref<String> defaultAppearance() const noexcept = 0;
    /// The DR dictionary, followed through one reference.
    [[nodiscard]] virtual Ref<Dictionary> defaultResources() const noexcept = 0;
    /// The CO array.
    [[nodiscard]] virtual Ref<Array> calculationOrder() const noexcept = 0;
    /// Number of top-level fields.
    [[nodiscard]] virtual std::uint64_t fieldCount() const noexcept = 0;
    /// The top-level field at a zero-based index; null with `OutOfRange` set behind the last.
    [[nodiscard]] virtual Ref<Field> field(std::uint64_t index) const noexcept = 0;

    /// The first top-level field whose partial name is `name`; the index in decimal is the name of
    /// a field without one. Null with `NullArgument`, `InvalidArgument` (empty) or `FormNotFound`
    /// set; for an application's own class with `NotSupported`, unless that class does better.
    [[nodiscard]] virtual Ref<Field> fieldByName(const Ref<Host::String>& name) const noexcept;

    /// The field at a path of names joined by ".": "a.b.0". It does not find fields whose partial
    /// name holds a ".". Null with `NullArgument`, `InvalidArgument` (empty) or `FormNotFound` set.
    [[nodiscard]] Ref<Field> fieldByPath(const Ref<Host::String>& path) const noexcept;

    /// Sets NeedAppearances in the catalog's AcroForm dictionary. It holds for the whole form: a
    /// viewer that obeys it rebuilds the looks of all fields, not only of those that were set.
    /// False as for `fieldByName`.
    [[nodiscard]] virtual bool setNeedAppearances(bool needed) noexcept;
};

} // namespace Libraries::Files::PDF
