#pragma once

#include "tools/changes.h"
#include "tools/forms/field_appearance.h"
#include "tools/forms/field_entries.h"

#include <pdf/tools/forms.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Sets one field, as `FormEditor` does; the caller keeps the changes.
class Filling {
public:
    /// Fails for what has no value: a group, a signature.
    Filling(Changes& changes, Form& form, const Ref<Field>& field);

    [[nodiscard]] Filled set(std::string_view text);
    [[nodiscard]] Filled choose(std::span<const std::string_view> texts);

private:
    struct Choice {
        std::vector<std::size_t> places;
        std::vector<Ref<Value>> values;
        std::string shown; ///< by a field that shows one
    };

    [[nodiscard]] Filled setText(std::string_view text);
    [[nodiscard]] Filled setButton(std::string_view text);
    [[nodiscard]] Choice findChoice(std::span<const std::string_view> texts) const;
    void storeChoice(const Choice& choice);
    void scrollTo(const Selection& selection);
    [[nodiscard]] std::string findState(const std::vector<FieldOption>& known,
                                        std::string_view text) const;
    void showState(const Ref<Dictionary>& widget, std::string_view state, bool bare);
    template <class Kind, class Held>
    void store(const Ref<Held>& value);
    void dropStale();
    template <class Show>
    [[nodiscard]] Filled showAll(Show show);
    [[nodiscard]] bool areViewersAsked() const;
    void askViewers();

    Changes& changes_;
    Form& form_;
    Ref<Field> field_;
    FieldEntries entries_;
    std::vector<Ref<Dictionary>> widgets_;
    FieldAppearances appearances_;
};

} // namespace Libraries::Files::PDF::Tools
