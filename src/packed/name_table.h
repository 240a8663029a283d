#pragma once

#include "values/scalars.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF {

/// The names of one document while it is read: equal ones share an object.
class NameTable {
public:
    /// The name of these characters, which must not be none: valid until the next call.
    [[nodiscard]] const Ref<NameObj>& get(std::string_view characters);

private:
    struct Slot {
        std::size_t hash = 0;
        std::string_view characters; // of the name
        Ref<NameObj> name;
    };

    [[nodiscard]] Slot* place(std::size_t hash, std::string_view characters) noexcept;
    void grow();

    std::vector<Slot> slots_;
    std::size_t used_ = 0;
    Ref<NameObj> unshared_;
};

} // namespace Libraries::Files::PDF
