#pragma once

/// @file
/// Filling in a form (ISO 32000-1, 12.7) so that people see what was filled in.

#include <host/export.h>
#include <host/ref.h>
#include <pdf/document.h>
#include <pdf/form.h>
#include <pdf/tools/result.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// What a field that was filled in looks like.
struct Filled {
    /// Whether the looks are left to viewers: the font lacks a character, or is one that no text is
    /// set in here, or the text has more than 65,536 characters. The form asks viewers to draw it
    /// then (NeedAppearances), which not every viewer heeds.
    bool viewerNeeded = false;
    /// Why, for people: "its font lacks U+0141". Empty where it looks so in every viewer.
    std::string reason = {};
};

/// What can be chosen in a field.
struct FieldOption {
    std::string value; ///< what the field's value becomes: what is exported, or a state's name
    std::string text;  ///< what people read; mostly the same
};

/// The form of one document, which it keeps alive: its fields, and what sets them. Kind, flags,
/// options, font and whatever else a field inherits count as its own; a widget without a name
/// stands for its field. A field of another document is refused with `InvalidArgument`.
class FILES_PDF_EXPORT FormEditor {
public:
    /// Opens the form of `document`. Fields and Kids arrays that stand behind references are
    /// brought in before, so that their fields are found, and radio buttons that are several fields
    /// of one name are joined to one field with as many widgets, also those that a page has and the
    /// form does not list. Open a form so before anybody asks for `Document::form`, which builds it
    /// once.
    ///
    /// Fails as `Document::form`: with `FormNotFound`, `BadReference` or `RootInvalid`. A form of
    /// which some field could not be built is given; `incomplete` says why.
    [[nodiscard]] static Result<FormEditor> of(const Ref<Document>& document) noexcept;

    /// The document.
    [[nodiscard]] const Ref<Document>& document() const noexcept { return document_; }
    /// The form as `Document::form` gives it.
    [[nodiscard]] const Ref<Form>& form() const noexcept { return form_; }
    /// Why some field could not be built, and so is none of this range: `FormIncomplete`, whose
    /// text says what is wrong with it, unless `Document::form` was asked for before. Nothing where
    /// all fields are there.
    [[nodiscard]] const std::optional<Failure>& incomplete() const noexcept { return incomplete_; }

    /// The editor as a range of fields: every one that has a kind, in the order of the form, of any
    /// depth; neither groups nor widgets. `Field::fullName` is the path by which the operations
    /// below find one.
    ///@{
    [[nodiscard]] std::size_t size() const noexcept { return fields_.size(); }
    [[nodiscard]] bool empty() const noexcept { return fields_.empty(); }
    [[nodiscard]] auto begin() const noexcept { return fields_.begin(); }
    [[nodiscard]] auto end() const noexcept { return fields_.end(); }
    ///@}

    /// The field at a path of names joined by ".". Fails with the codes of `Form::fieldByPath`.
    [[nodiscard]] Result<Ref<Field>> field(std::string_view path) const noexcept;
    /// The kind of a field, and its flags (`FieldFlags`).
    ///@{
    [[nodiscard]] Result<Field::Kind> kind(const Ref<Field>& field) const noexcept;
    [[nodiscard]] Result<std::uint32_t> flags(const Ref<Field>& field) const noexcept;
    ///@}
    /// What can be chosen: the options of a choice field, or the states of check boxes and radio
    /// buttons, "Off" apart, in UTF-8. A long text that is listed again and again is empty then.
    /// None for other kinds.
    [[nodiscard]] Result<std::vector<FieldOption>> options(const Ref<Field>& field) const noexcept;
    /// The value for people, in UTF-8: a text, a state, or what is selected. None where there is no
    /// value.
    [[nodiscard]] Result<std::vector<std::string>> values(const Ref<Field>& field) const noexcept;

    /// Sets the field at a path, and makes what its widgets look like. `text` is UTF-8, in any
    /// script:
    ///
    /// - Text: the value; empty takes it away. Line ends are LF, CR or both.
    /// - Choice: an option by what it shows or what it exports, or any text where the field lets
    ///   people type one; empty takes the choice away.
    /// - Button: the state of a check box or of radio buttons, by the name of the state or by the
    ///   option that stands for it; "Off" or empty is off. A widget that shows the state already
    ///   has its own looks, which stay; one without any gets some, also where the state has a name
    ///   and no stream. Where viewers are asked to draw the form, "Off" must have looks too.
    ///
    /// What the former value left goes: rich text, indices of a choice, values of widgets, and with
    /// them the form's XFA entry. A text that runs out of room is cut off by the border, as in a
    /// viewer, but a line that is higher than the border leaves goes over it, to the field's edge.
    /// A list is scrolled to what is chosen.
    ///
    /// Fails with the codes of `Form::fieldByPath`, `NotSupported` (a signature, a group of fields,
    /// no kind at all), `ButtonHasNoValue`, `InvalidArgument` (no such option or state, a text that
    /// is too long) or `OutOfRange` (the field has so many widgets that they would show far more
    /// than it holds). All or nothing.
    Result<Filled> fill(std::string_view path, std::string_view text) noexcept;

    /// The same for several options of a choice field that takes several
    /// (`FieldFlags::multiSelect`), in any order; none takes the choice away.
    Result<Filled> choose(std::string_view path,
                          std::span<const std::string_view> options) noexcept;

private:
    FormEditor(Ref<Document> document, Ref<Form> form, std::optional<Failure> incomplete);

    Ref<Document> document_;
    Ref<Form> form_;
    std::vector<Ref<Field>> fields_;
    std::optional<Failure> incomplete_;
};

/// Turns the fields of a document into what they show, for sending out: each widget's appearance
/// becomes part of its page's content, on top, and goes from the page's annotations; the form goes
/// from the catalog. Fields without an appearance get one first, push buttons and signatures too,
/// as far as MK says; hidden ones (ISO 32000-1, 12.5.3) leave nothing. A widget that a page lists
/// more than once is drawn once. The page tree is flattened. A `FormEditor` of before, and
/// `Document::form`, once it was asked for, still give the former form. A document without a form
/// is left alone.
///
/// Fails, nothing changed, as `Pages::flatten`, or with `NotSupported` (a field without an
/// appearance holds what no appearance can be made for; the text names the field and the reason) or
/// `OutOfRange` (more than 1,048,576 widgets; pages share a list of annotations, or widgets a text,
/// so that far more is drawn than the file holds).
FILES_PDF_EXPORT Result<void> flattenForm(const Ref<Document>& document) noexcept;

} // namespace Libraries::Files::PDF::Tools
