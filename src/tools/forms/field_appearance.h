#pragma once

#include "tools/changes.h"
#include "tools/forms/form_fonts.h"
#include "tools/forms/shared_entries.h"
#include "tools/forms/text_layout.h"
#include "tools/forms/widget_frame.h"

#include <pdf/tools/filling.h>

#include <string>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Makes appearances of widgets (ISO 32000-1, 12.5.5), each of which is given with what it inherits
/// from its field. Where a text cannot be shown, nothing changes; where widgets show far more than
/// was read, that fails with `OutOfRange`. Everything throws `std::bad_alloc`.
class FieldAppearances {
public:
    FieldAppearances(Document& document, Changes& changes) noexcept
        : document_(document), changes_(changes), fonts_(document, changes) {}

    /// What a text field shows, or a choice field that shows one text.
    [[nodiscard]] Filled showText(const FieldEntries& widget, std::string_view text);
    /// What a list box shows, with the values that are selected.
    [[nodiscard]] Filled showList(const FieldEntries& widget, const Selection& selection);
    /// Looks for a button's state and for "Off".
    [[nodiscard]] Filled showStates(const FieldEntries& widget, std::string_view state);
    /// Gives viewers what they need to draw fields: a default appearance, the marks of buttons.
    [[nodiscard]] bool provideFor(const FieldEntries& field);
    /// Takes the looks of a widget away.
    [[nodiscard]] bool clear(const Ref<Dictionary>& widget);
    /// What widgets share, and how much of it they may show.
    [[nodiscard]] SharedEntries& shared() noexcept { return shared_; }

private:
    [[nodiscard]] Filled show(const FieldEntries& widget, const WidgetFrame& frame,
                              const std::string& operators, const TextStyle& style,
                              const FormFont& font);
    [[nodiscard]] Ref<Value> stream(const WidgetFrame& frame, const std::string& content,
                                    const Ref<Dictionary>& resources);
    [[nodiscard]] bool setNormal(const Ref<Dictionary>& widget, const Ref<Value>& looks);

    Document& document_;
    Changes& changes_;
    FormFonts fonts_;
    SharedEntries shared_;
};

/// The mark of a check box or radio button in an area; `style` is what MK calls it (ISO 32000-1,
/// table 189): a character of ZapfDingbats.
[[nodiscard]] std::string buttonMark(char style, const Rectangle& area);

} // namespace Libraries::Files::PDF::Tools
