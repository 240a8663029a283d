#pragma once

#include "tools/changes.h"

#include <pdf/document.h>

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Radio buttons that are several fields of one name, as some producers write them, joined to one
/// field with several widgets, which is what the standard has (ISO 32000-1, 12.7.4.2.4). Also those
/// that a page has and the form does not list. Everything throws `std::bad_alloc`.
class RadioGroups {
public:
    explicit RadioGroups(Changes& changes) noexcept : changes_(changes) {}

    /// Joins those at the top of a form.
    void join(const Ref<Dictionary>& form);
    /// Whether this was a field until it was joined.
    [[nodiscard]] bool hasJoined(const Ref<Dictionary>& field) const;

private:
    struct Group {
        std::vector<Ref<Value>> references;
        std::vector<Ref<Dictionary>> buttons;
        Ref<Value> field; ///< to the one that they become
    };

    void collect(const Ref<Array>& list, bool isForm);
    void collectFromPages();
    void join(Group& group);
    [[nodiscard]] Ref<Dictionary> made(const Group& group) const;
    void replace(const Ref<Dictionary>& form, const Ref<Array>& fields);

    Changes& changes_;
    std::map<std::string, Group, std::less<>> groups_;
    std::unordered_map<const Value*, Group*> joined_;
};

} // namespace Libraries::Files::PDF::Tools
