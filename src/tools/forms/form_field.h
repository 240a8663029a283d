#pragma once

#include <pdf/document.h>
#include <pdf/tools/filling.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// The document's catalog, and the dictionary of its form; null where there is none. Throws
/// `std::bad_alloc`, as does what follows.
[[nodiscard]] Ref<Dictionary> catalogEntries(const Document& document);
[[nodiscard]] Ref<Dictionary> formEntries(const Document& document);

/// The dictionaries of a field, or a widget, and of the fields above it, the form's last: what is
/// inherited is looked for in them in this order (ISO 32000-1, 12.7.3.1).
class FieldEntries {
public:
    /// By the `Field` objects of the form.
    FieldEntries(const Document& document, const Field& field);
    /// By the Parent entries, through 32 of them at most.
    FieldEntries(const Document& document, const Ref<Dictionary>& widget);
    /// The same for a widget that is a kid of this field.
    [[nodiscard]] FieldEntries of(const Ref<Dictionary>& widget) const;

    [[nodiscard]] const Document& document() const noexcept { return document_; }
    /// The field's own dictionary.
    [[nodiscard]] const Ref<Dictionary>& own() const noexcept { return chain_.front(); }
    /// The form's; null where it has none.
    [[nodiscard]] const Ref<Dictionary>& form() const noexcept { return form_; }

    /// The nearest entry, references followed; null where there is none. The form's own counts for
    /// DA, Q and DR alone.
    [[nodiscard]] Ref<Value> find(std::string_view key) const;
    /// The text of it, its integer part, its bits; 0 or empty where it is of another kind.
    ///@{
    [[nodiscard]] std::string text(std::string_view key) const;
    [[nodiscard]] std::int64_t number(std::string_view key, std::int64_t otherwise = 0) const;
    [[nodiscard]] bool has(std::uint32_t flags) const;
    ///@}
    /// What FT says, inherited too.
    [[nodiscard]] Field::Kind kind() const;

private:
    explicit FieldEntries(const Document& document)
        : document_(document), form_(formEntries(document)) {}

    const Document& document_;
    std::vector<Ref<Dictionary>> chain_;
    Ref<Dictionary> form_;
};

/// The field whose widget this is (ISO 32000-1, 12.7.3.1): a kid without a name of a field that is
/// of some kind. Null where it is a field itself.
[[nodiscard]] Ref<Field> fieldOfWidget(const Document& document, const Field& widget);

/// The widgets of a field (ISO 32000-1, 12.5.6.19): its kids without a name, or itself. None for a
/// group of fields.
[[nodiscard]] std::vector<Ref<Dictionary>> widgetsOf(const Document& document, const Field& field);

/// One option of a choice field (ISO 32000-1, table 231): what it exports, and what it shows.
struct ChoiceOption {
    Ref<Value> exported;
    std::string value, text;
};

/// The options, in their order; what is none is empty, and so is a long text listed again and
/// again.
[[nodiscard]] std::vector<ChoiceOption> optionsOf(const FieldEntries& field);
/// The looks of a widget's states, by their names; null where it has none.
[[nodiscard]] Ref<Dictionary> stateLooks(const Document& document, const Dictionary& widget);

/// The states of check boxes or radio buttons, each once: as its name stands, and as people read
/// it, which the field's options say in the order of its widgets.
[[nodiscard]] std::vector<FieldOption> statesOf(const FieldEntries& field,
                                                const std::vector<Ref<Dictionary>>& widgets);

/// What a choice field has selected, as texts.
[[nodiscard]] std::vector<std::string> selectionOf(const FieldEntries& field);

} // namespace Libraries::Files::PDF::Tools
