#pragma once

#include <pdf/document.h>
#include <pdf/tools/result.h>

#include <optional>

namespace Libraries::Files::PDF::Tools {

/// A form, and why it lacks a field that could not be built; nothing where it lacks none.
struct OpenedForm {
    Ref<Form> form;
    std::optional<Failure> incomplete;
};

/// The form, as `FormEditor::of` opens it. Where it was built before, and shows what radio buttons
/// were, nothing changes.
[[nodiscard]] OpenedForm openForm(Document& document);

} // namespace Libraries::Files::PDF::Tools
