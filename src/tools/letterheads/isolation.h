#pragma once

#include "tools/changes.h"
#include "tools/geometry.h"
#include "tools/pages/content_budget.h"

#include <pdf/tools/pages.h>

#include <cstdint>
#include <map>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Makes form XObjects of what pages draw.
class Isolation {
public:
    explicit Isolation(Changes& changes) noexcept
        : document_(changes.document()), changes_(changes) {}

    /// The form that draws what the page draws, upright. The page stays as it is, but that its
    /// content stream may be the form. Pages that draw the same have one form.
    [[nodiscard]] Ref<ObjectRef> formOf(const Page& page);

private:
    /// All that a form says of what it draws: pages for which it is equal draw the same.
    struct Drawing {
        std::vector<std::uint32_t> streams; ///< by their objects
        const Value* resources;
        const Value* group;
        Rectangle box;
        Matrix turn;

        // NOLINTNEXTLINE(modernize-use-nullptr): of what the compiler makes of it
        [[nodiscard]] auto operator<=>(const Drawing&) const = default;
    };

    [[nodiscard]] Drawing drawingOf(const Page& page,
                                    const std::vector<Ref<Object>>& streams) const;
    [[nodiscard]] Ref<Object> contentOf(const std::vector<Ref<Object>>& streams);
    [[nodiscard]] Ref<Object> soleStream(const Ref<Object>& object);
    [[nodiscard]] Ref<Stream> copyOf(const Ref<Object>& object, const Ref<Dictionary>& entries);
    [[nodiscard]] Ref<Stream> joined(const std::vector<Ref<Object>>& streams);
    [[nodiscard]] Ref<Value> resourcesOf(const Page& page) const;
    void describe(const Page& page, const Ref<Dictionary>& form);

    Document& document_;
    Changes& changes_;
    ContentBudget budget_;
    std::map<Drawing, Ref<ObjectRef>> forms_;
};

} // namespace Libraries::Files::PDF::Tools
