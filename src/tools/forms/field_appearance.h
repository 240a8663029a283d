#pragma once

#include "tools/changes.h"
#include "tools/forms/form_fonts.h"
#include "tools/forms/shared_entries.h"
#include "tools/forms/text_layout.h"
#include "tools/forms/widget_frame.h"

#include <pdf/tools/filling.h>

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
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
    /// The place of the option that a list box begins with: TI's (ISO 32000-1, table 231), or one
    /// from which the first of the selection is seen.
    [[nodiscard]] std::size_t listTop(const FieldEntries& widget, const Selection& selection);
    /// Looks for the state of a check box or radio button, and for "Off", where the state has none:
    /// no stream, that is. `whole` asks for both where one of them has none.
    [[nodiscard]] Filled showStates(const FieldEntries& widget, std::string_view state, bool whole);
    /// The same for the state that it is in, which is said.
    [[nodiscard]] Filled showOwnState(const FieldEntries& widget, bool whole);
    /// What a push button shows: its caption within its border. Of other fields the border.
    [[nodiscard]] Filled showCaption(const FieldEntries& widget);
    /// One of the states, which is not "Off"; empty where there is none, or no states.
    [[nodiscard]] std::string_view firstState(const Ref<Dictionary>& states);
    /// Gives viewers what they need to draw fields: a default appearance, the marks of buttons.
    [[nodiscard]] bool provideFor(const FieldEntries& field);
    /// Takes the looks of a widget away.
    [[nodiscard]] bool clear(const Ref<Dictionary>& widget);
    /// Why the last widget that was left to viewers was: its font lacks a character, or no text is
    /// set in it here, or the text is too long.
    [[nodiscard]] const std::string& obstacle() const noexcept { return obstacle_; }
    /// What widgets share, and how much of it they may show.
    [[nodiscard]] SharedEntries& shared() noexcept { return shared_; }

private:
    /// The states are kept, so that their place is no other's.
    struct FirstState {
        Ref<Dictionary> states;
        std::string name;
    };

    /// A text in the codes of a font; nothing, the obstacle noted, where there are none.
    [[nodiscard]] std::optional<Codes> encoded(const std::optional<FormFont>& font,
                                               std::string_view text);
    [[nodiscard]] Filled show(const FieldEntries& widget, const WidgetFrame& frame,
                              const std::string& ground, const TextBlock& block,
                              const TextStyle& style, const FormFont& font);
    [[nodiscard]] Ref<Value> stream(const WidgetFrame& frame, const std::string& content,
                                    const Ref<Dictionary>& resources);
    [[nodiscard]] bool setNormal(const Ref<Dictionary>& widget, const Ref<Value>& looks);
    [[nodiscard]] bool setState(const Ref<Dictionary>& widget, const Ref<Dictionary>& states,
                                std::string_view state, const Ref<Value>& looks);

    Document& document_;
    Changes& changes_;
    FormFonts fonts_;
    SharedEntries shared_;
    std::string obstacle_;
    std::unordered_map<const Dictionary*, FirstState> firstStates_;
};

/// What a text leaves free beside the border; above and below it too where lines are stacked.
[[nodiscard]] Rectangle textArea(const WidgetFrame& frame, bool stacked);

/// The mark of a check box or radio button in an area; `style` is what MK calls it (ISO 32000-1,
/// table 189): a character of ZapfDingbats.
[[nodiscard]] std::string buttonMark(char style, const Rectangle& area);

} // namespace Libraries::Files::PDF::Tools
