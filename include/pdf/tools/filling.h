#pragma once

/// @file
/// Filling in a form (ISO 32000-1, 12.7) so that people see what was filled in.

#include <host/export.h>
#include <host/ref.h>
#include <pdf/document.h>
#include <pdf/form.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// How filling in a field ended.
enum class Filled : std::uint32_t {
    Failed = 0, ///< nothing changed; the code says why
    Shown = 1,  ///< it holds the value, and looks so in every viewer
    /// It holds the value. Its font lacks a character, or is one that no text is set in here, or
    /// the text has more than 65,536 characters: the form asks viewers to draw it. NeedAppearances
    /// is set, which not every viewer heeds.
    ViewerNeeded = 2
};

/// The form of a document, as `Document::form` gives it, with Fields and Kids arrays that stand
/// behind references brought in before, so that their fields are found, and radio buttons that are
/// several fields of one name joined to one field with as many widgets, also those that a page has
/// and the form does not list. Nothing is logged of kids that inherit their kind. To be asked for
/// instead of `Document::form`, which builds the form once. Null as there.
[[nodiscard]] FILES_PDF_EXPORT Ref<Form> openForm(Document& document) noexcept;

/// Sets the field at a path of names joined by ".", and makes what its widgets look like. Kind,
/// flags, options, font and whatever else a field inherits count as its own; a widget without a
/// name stands for its field. `text` is UTF-8, in any script:
///
/// - Text: the value; empty takes it away. Line ends are LF, CR or both.
/// - Choice: an option by what it shows or what it exports, or any text where the field lets people
///   type one; empty takes the choice away.
/// - Button: the state of a check box or of radio buttons, by the name of the state or by the
///   option that stands for it; "Off" or empty is off. A widget that shows the state already has
///   its own looks, which stay; one without any gets some, also where the state has a name and no
///   stream. Where viewers are asked to draw the form, "Off" must have looks too.
///
/// What the former value left goes: rich text, indices of a choice, values of widgets, and with
/// them the form's XFA entry. A text that runs out of room is cut off by the border, as in a
/// viewer, but a line that is higher than the border leaves goes over it, to the field's edge. A
/// list is scrolled to what is chosen.
///
/// `Failed` with `NullArgument` to `FormNotFound` as of `Form::fieldByPath`, `NotSupported` (a
/// signature, a group of fields, no kind at all), `ButtonHasNoValue`, `InvalidArgument` (the form
/// of another document, no such option or state, a text that is too long), `OutOfRange` (the field
/// has so many widgets that they would show far more than it holds) or `OutOfMemory` set.
[[nodiscard]] FILES_PDF_EXPORT Filled fillField(Document& document, Form& form,
                                                std::string_view path,
                                                std::string_view text) noexcept;

/// The same for several options of a choice field that takes several (`FieldFlags::multiSelect`),
/// in any order; none takes the choice away.
[[nodiscard]] FILES_PDF_EXPORT Filled
chooseOptions(Document& document, Form& form, std::string_view path,
              std::span<const std::string_view> options) noexcept;

/// What can be chosen in a field.
struct FieldOption {
    std::string value; ///< what the field's value becomes: what is exported, or a state's name
    std::string text;  ///< what people read; mostly the same
};

/// The options of a choice field, or the states of check boxes and radio buttons, "Off" apart, in
/// UTF-8. A long text that is listed again and again is empty then. Empty for other kinds, where
/// memory is exhausted and, with `InvalidArgument` set, for a field of another document. Logs
/// nothing.
[[nodiscard]] FILES_PDF_EXPORT std::vector<FieldOption> fieldOptions(const Document& document,
                                                                     const Field& field) noexcept;

/// The value of a field for people, in UTF-8: a text, a state, or what is selected. What is
/// inherited counts. Empty where there is none and, with `InvalidArgument` set, for a field of
/// another document. Logs nothing.
[[nodiscard]] FILES_PDF_EXPORT std::vector<std::string> fieldValues(const Document& document,
                                                                    const Field& field) noexcept;

/// Turns the fields of a document into what they show, for sending out: each widget's appearance
/// becomes part of its page's content, on top, and goes from the page's annotations; the form goes
/// from the catalog. Fields without an appearance get one first, push buttons and signatures too,
/// as far as MK says; hidden ones (ISO 32000-1, 12.5.3) leave nothing. A widget that a page lists
/// more than once is drawn once. The page tree is flattened. `Document::form`, once it was asked
/// for, still gives the former form.
///
/// False, nothing changed, as for `flattenPages`, or with `NotSupported` (a field without an
/// appearance holds what no appearance can be made for), `OutOfRange` (more than 1,048,576 widgets;
/// pages share a list of annotations, or widgets a text, so that far more is drawn than the file
/// holds) or `OutOfMemory` set. A document without a form is left alone.
[[nodiscard]] FILES_PDF_EXPORT bool flattenForm(Document& document) noexcept;

} // namespace Libraries::Files::PDF::Tools
