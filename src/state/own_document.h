#pragma once

#include "state/document_state.h"

#include <pdf/document.h>

namespace Libraries::Files::PDF {

/// A document of the library's own, for stages that need both its operations and its state.
class OwnDocument : public Document {
public:
    [[nodiscard]] DocumentState& state() noexcept { return state_; }
    [[nodiscard]] const DocumentState& state() const noexcept { return state_; }

protected:
    DocumentState state_;
};

} // namespace Libraries::Files::PDF
