#pragma once

#include "tools/changes.h"
#include "tools/new_stream.h"

#include <pdf/tools/pages.h>

#include <cstdint>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Makes form XObjects of what pages draw. Throws `std::bad_alloc`.
class Isolation {
public:
    Isolation(Document& document, Changes& changes) noexcept
        : document_(document), changes_(changes) {}

    /// The form that draws what the page draws, upright. The page stays as it is, but that its
    /// content stream may be the form. Null with the code set.
    [[nodiscard]] Ref<ObjectRef> formOf(const Page& page);

private:
    [[nodiscard]] Ref<Object> contentOf(const Page& page);
    [[nodiscard]] Ref<Object> soleStream(const Ref<Object>& object);
    [[nodiscard]] Ref<Stream> joined(const std::vector<Ref<Object>>& streams);
    [[nodiscard]] Ref<Value> resourcesOf(const Page& page) const;
    [[nodiscard]] bool describe(const Page& page, const Ref<Dictionary>& form);

    Document& document_;
    Changes& changes_;
    std::uint64_t decodable_ = std::uint64_t{1} << 30; ///< bytes that may still be decoded
};

} // namespace Libraries::Files::PDF::Tools
