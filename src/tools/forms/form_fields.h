#pragma once

#include <pdf/document.h>

#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Which nodes of a form's tree are fields (ISO 32000-1, 12.7.3.1): neither widgets, which are kids
/// without a name of a node that is of some kind, nor groups of other fields. In the order of the
/// form. Throws `std::bad_alloc`, as does what follows.
[[nodiscard]] std::vector<Ref<Field>> fieldsOf(const Document& document, const Form& form);

/// The field whose widget this is; what is none, as it is.
[[nodiscard]] Ref<Field> fieldOf(const Document& document, Ref<Field> widget);

/// The widgets of a field (ISO 32000-1, 12.5.6.19): its kids without a name, or itself. None for a
/// group of fields.
[[nodiscard]] std::vector<Ref<Dictionary>> widgetsOf(const Document& document, const Field& field);

} // namespace Libraries::Files::PDF::Tools
