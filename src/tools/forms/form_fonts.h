#pragma once

#include "tools/changes.h"
#include "tools/fonts/text_font.h"
#include "tools/forms/field_entries.h"

#include <pdf/tools/result.h>

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Libraries::Files::PDF::Tools {

/// How a field's text is set: what its default appearance string says (ISO 32000-1, 12.7.3.3).
struct TextStyle {
    std::string colour;   ///< the operator that sets it
    std::string fontName; ///< as resources call it
    double size = 0;      ///< in points; 0: as large as fits
};

/// The style of a field; black Helvetica as large as fits where it does not say. Throws
/// `std::bad_alloc`, as does what follows.
[[nodiscard]] TextStyle styleOf(const FieldEntries& field);

/// A font that text can be set in, and its entry for resources.
struct FormFont {
    TextFont font;
    Ref<Value> entry;
};

/// The fonts of a form's resources. A font that they lack is made there: Helvetica, under the name
/// that is asked for.
class FormFonts {
public:
    explicit FormFonts(Changes& changes) noexcept : changes_(changes) {}

    /// The font; or why text cannot be set in it here.
    [[nodiscard]] Result<FormFont, std::string> find(const FieldEntries& field,
                                                     std::string_view name);
    /// Sees to the font that viewers take for the marks of buttons, under the name by which they
    /// look for it, where the form's resources can have one.
    void provideMarks(const FieldEntries& field);

private:
    [[nodiscard]] Ref<Value> add(const FieldEntries& field, std::string_view name,
                                 const Ref<Dictionary>& font);
    [[nodiscard]] Ref<Dictionary> dictionaryIn(const Ref<Dictionary>& from, std::string_view key);
    [[nodiscard]] const std::optional<TextFont>& read(const Ref<Dictionary>& dictionary);

    /// The dictionary is kept, so that its place is no other's.
    struct Known {
        Ref<Dictionary> dictionary;
        std::optional<TextFont> font;
    };

    Changes& changes_;
    std::unordered_map<const Dictionary*, Known> fonts_;
};

} // namespace Libraries::Files::PDF::Tools
