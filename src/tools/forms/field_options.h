#pragma once

#include "tools/forms/field_entries.h"

#include <pdf/tools/forms.h>

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

/// What can be chosen in a field, and what is. Everything throws `std::bad_alloc`.
namespace Libraries::Files::PDF::Tools {

/// The state of a check box or radio button that is not checked (ISO 32000-1, 12.7.4.2.3).
inline constexpr std::string_view off = "Off";

/// One option of a choice field (ISO 32000-1, table 231): what it exports, and what it shows.
struct ChoiceOption {
    Ref<Value> exported;
    std::string value, text;
};

/// The options, in their order; what is none is empty, and so is a long text listed again and
/// again.
[[nodiscard]] std::vector<ChoiceOption> optionsOf(const FieldEntries& field);

/// The looks of a widget's states, by their names; null where it has none.
[[nodiscard]] Ref<Dictionary> stateLooks(const Document& document, const Ref<Dictionary>& widget);

/// The states of check boxes or radio buttons, each once: as its name stands, and as people read
/// it, which the field's options say in the order of its widgets.
[[nodiscard]] std::vector<FieldOption> statesOf(const FieldEntries& field,
                                                const std::vector<Ref<Dictionary>>& widgets);

/// What a choice field has selected, as texts.
[[nodiscard]] std::vector<std::string> selectionOf(const FieldEntries& field);

/// The same, for who looks for them.
struct Selection {
    explicit Selection(const FieldEntries& field)
        : texts(selectionOf(field)), values(texts.begin(), texts.end()) {}

    std::vector<std::string> texts;
    std::unordered_set<std::string> values;
};

/// The options of a choice field, and where each of them is.
class ChoiceOptions {
public:
    explicit ChoiceOptions(const FieldEntries& field);
    ChoiceOptions(const ChoiceOptions&) = delete;
    ChoiceOptions& operator=(const ChoiceOptions&) = delete;

    [[nodiscard]] const std::vector<ChoiceOption>& list() const noexcept { return list_; }
    /// The place of the option that shows or exports a text; nothing where there is none.
    [[nodiscard]] std::optional<std::size_t> at(std::string_view text) const;
    /// The place of the first option that is selected; nothing where none is.
    [[nodiscard]] std::optional<std::size_t> firstOf(const Selection& selection) const;

private:
    std::vector<ChoiceOption> list_;
    std::unordered_map<std::string_view, std::size_t> byText_, byValue_;
};

} // namespace Libraries::Files::PDF::Tools
