#include "host/guard.h"
#include "values/failure.h"

#include <pdf/form.h>

#include <vector>

namespace Libraries::Files::PDF {

namespace {

/// The name of the field in messages and paths.
Ref<Host::String> nameOf(const Field& field) {
    if (const Ref<String> partial = field.partialName()) return orThrow(partial->asText());
    Host::StringBuilder index;
    index.appendNumber(field.index());
    return orThrow(index.build());
}

/// The next part of a path from `place` on that is not empty. Moves `place` behind it. Null at the
/// end.
Ref<Host::String> nextPart(const Host::String& path, std::uint64_t& place) {
    Host::StringBuilder part;
    bool any = false;
    for (; place < path.length() && !(any && path[place] == U'.'); ++place) {
        if (path[place] == U'.') continue;
        part.append(path[place]);
        any = true;
    }
    return any ? orThrow(part.build()) : nullptr;
}

} // namespace

Ref<Field> Field::fieldByName(const Ref<Host::String>&) const noexcept {
    return fail(NotSupported);
}

Ref<Host::String> Field::fullName() const noexcept {
    return Host::guarded([this] {
        std::vector<Ref<Host::String>> names{nameOf(*this)};
        for (Ref<Field> above = parent(); above; above = above->parent())
            names.push_back(nameOf(*above));
        Host::StringBuilder text;
        for (auto name = names.rbegin(); name != names.rend(); ++name) {
            if (name != names.rbegin()) text.append(".");
            text.append(**name);
        }
        return text.build();
    });
}

Ref<Dictionary> Field::dictionary() const noexcept {
    return fail(NotSupported);
}

Ref<Field> Form::fieldByName(const Ref<Host::String>&) const noexcept {
    return fail(NotSupported);
}

bool Form::setNeedAppearances(bool) noexcept {
    return fail(NotSupported);
}

Ref<Field> Form::fieldByPath(const Ref<Host::String>& path) const noexcept {
    if (!path) return fail(NullArgument);
    if (path->empty()) return fail(InvalidArgument);
    return Host::guarded([&]() -> Ref<Field> {
        std::uint64_t place = 0;
        Ref<Host::String> part = nextPart(*path, place);
        if (!part) return fail(FormNotFound);
        Ref<Field> found = fieldByName(part);
        while (found && (part = nextPart(*path, place)))
            found = found->fieldByName(part);
        return found;
    });
}

} // namespace Libraries::Files::PDF
