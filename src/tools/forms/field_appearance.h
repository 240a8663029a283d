#pragma once

#include "tools/changes.h"
#include "tools/forms/form_fonts.h"
#include "tools/forms/shared_entries.h"
#include "tools/forms/text_layout.h"
#include "tools/forms/widget_frame.h"

#include <pdf/tools/forms.h>

#include <string>
#include <string_view>
#include <unordered_map>

namespace Libraries::Files::PDF::Tools {

/// Makes appearances of widgets (ISO 32000-1, 12.5.5), each of which is given with what it inherits
/// from its field. Where a text cannot be shown, so that viewers are needed, nothing changes; where
/// widgets show far more than was read, that fails with `OutOfRange`.
class FieldAppearances {
public:
    explicit FieldAppearances(Changes& changes) noexcept : changes_(changes), fonts_(changes) {}

    /// What a text field shows, or a choice field that shows one text.
    [[nodiscard]] Filled showText(const FieldEntries& widget, std::string_view text);
    /// What a list box shows, with the values that are selected.
    [[nodiscard]] Filled showList(const FieldEntries& widget, const Selection& selection);
    /// The place of the option that a list box begins with: TI's (ISO 32000-1, table 231), or one
    /// from which the first of the selection is seen.
    [[nodiscard]] std::size_t listTop(const FieldEntries& widget, const Selection& selection);
    /// Looks for the state of a check box or radio button, and for "Off", where the state has none:
    /// no stream, that is. `whole` asks for both where one of them has none.
    void showStates(const FieldEntries& widget, std::string_view state, bool whole);
    /// The same for the state that it is in, which is said.
    void showOwnState(const FieldEntries& widget, bool whole);
    /// What a push button shows: its caption within its border. Of other fields the border.
    [[nodiscard]] Filled showCaption(const FieldEntries& widget);
    /// One of the states, which is not "Off"; empty where there is none, or no states.
    [[nodiscard]] std::string_view firstState(const Ref<Dictionary>& states);
    /// Gives viewers what they need to draw fields: a default appearance, the marks of buttons.
    void provideFor(const FieldEntries& field);
    /// What widgets share, and how much of it they may show.
    [[nodiscard]] SharedEntries& shared() noexcept { return shared_; }

private:
    /// The states are kept, so that their place is no other's.
    struct FirstState {
        Ref<Dictionary> states;
        std::string name;
    };

    [[nodiscard]] const Document& document() const noexcept { return changes_.document(); }
    void draw(const FieldEntries& widget, const WidgetFrame& frame, const std::string& ground,
              const TextBlock& block, const FormFont& font);
    [[nodiscard]] Ref<Value> stream(const WidgetFrame& frame, const std::string& content,
                                    const Ref<Dictionary>& resources);
    void setNormal(const Ref<Dictionary>& widget, const Ref<Value>& looks);
    void setState(const Ref<Dictionary>& widget, const Ref<Dictionary>& states,
                  std::string_view state, const Ref<Value>& looks);

    Changes& changes_;
    FormFonts fonts_;
    SharedEntries shared_;
    std::unordered_map<const Dictionary*, FirstState> firstStates_;
};

/// What a text leaves free beside the border; above and below it too where lines are stacked.
[[nodiscard]] Rectangle textArea(const WidgetFrame& frame, bool stacked);

/// The mark of a check box or radio button in an area; `style` is what MK calls it (ISO 32000-1,
/// table 189): a character of ZapfDingbats.
[[nodiscard]] std::string buttonMark(char style, const Rectangle& area);

} // namespace Libraries::Files::PDF::Tools
