#pragma once

#include <pdf/document.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// The document's catalog, and the dictionary of its form; null where there is none. Throws
/// `std::bad_alloc`, as does what follows.
[[nodiscard]] Ref<Dictionary> catalogEntries(const Document& document);
[[nodiscard]] Ref<Dictionary> formEntries(const Document& document);

/// A field inherits from so many dictionaries, its own among them.
inline constexpr std::size_t longestInheritance = 32;

/// What FT says; `Plain` where it says nothing that is known.
[[nodiscard]] Field::Kind kindOf(const Ref<Value>& fieldType);

/// The dictionaries of a field, or a widget, and of the fields above it, the form's last: what is
/// inherited is looked for in them in this order (ISO 32000-1, 12.7.3.1).
class FieldEntries {
public:
    /// By the `Field` objects of the form.
    FieldEntries(const Document& document, const Field& field);
    /// By the Parent entries.
    FieldEntries(const Document& document, const Ref<Dictionary>& widget);
    /// The same for a widget that is a kid of this field.
    [[nodiscard]] FieldEntries of(const Ref<Dictionary>& widget) const;

    [[nodiscard]] const Document& document() const noexcept { return document_; }
    /// The field's own dictionary.
    [[nodiscard]] const Ref<Dictionary>& own() const noexcept { return chain_.front(); }
    /// The form's; null where it has none.
    [[nodiscard]] const Ref<Dictionary>& form() const;
    /// The names from the root on, joined by "."; what has none is left out.
    [[nodiscard]] std::string path() const;

    /// The nearest entry, references followed; null where there is none. The form's own counts for
    /// DA, Q and DR alone.
    [[nodiscard]] Ref<Value> find(std::string_view key) const;
    /// The text of it, its integer part; 0 or empty where it is of another kind.
    ///@{
    [[nodiscard]] std::string text(std::string_view key) const;
    [[nodiscard]] std::int64_t number(std::string_view key) const;
    ///@}
    /// What FT says, and Ff, inherited too.
    ///@{
    [[nodiscard]] Field::Kind kind() const { return kindOf(find("FT")); }
    [[nodiscard]] std::uint32_t flags() const { return static_cast<std::uint32_t>(number("Ff")); }
    [[nodiscard]] bool has(std::uint32_t flag) const { return (flags() & flag) == flag; }
    ///@}

private:
    explicit FieldEntries(const Document& document) noexcept : document_(document) {}

    const Document& document_;
    std::vector<Ref<Dictionary>> chain_;
    mutable std::optional<Ref<Dictionary>> form_; ///< looked for when it is asked for
};

} // namespace Libraries::Files::PDF::Tools
