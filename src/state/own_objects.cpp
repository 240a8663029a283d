#include "state/own_objects.h"

#include "host/on_failure.h"
#include "values/failure.h"

#include <limits>
#include <utility>

namespace Libraries::Files::PDF {

namespace {

/// The value under a number that no object has. A table without gaps needs one for each number.
constexpr PackedValue placeholder{"<< >>", Value::Type::Dictionary, false, false, Stream::noOffset};

std::uint64_t firstFreeId(const DocumentState& state) noexcept {
    const auto& slots = state.objects.slots();
    return slots.empty() ? state.nextObjectId : std::uint64_t{slots.back().id()} + 1;
}

/// Whether the slot still holds the placeholder, and nobody has asked for it.
bool isPlaceholder(const ObjectTable::Slot& slot) noexcept {
    return !slot.touched() && slot.packed().bytes.data() == placeholder.bytes.data();
}

} // namespace

Ref<Object> addObject(DocumentState& state, Ref<Value> value) {
    if (!value) return fail(NullArgument);
    const Value::Type kind = value->type();
    if (kind == Value::Type::Null || kind == Value::Type::ObjectRef) {
        return fail(InvalidArgument, "An object cannot hold a value of type ", kind);
    }
    const std::uint32_t id = state.nextObjectId;
    if (id == 0 || id == std::numeric_limits<std::uint32_t>::max()) {
        return fail(OutOfRange, "No object number is left");
    }
    ObjectTable& objects = state.objects;
    Host::OnFailure undo([&objects, size = objects.size()] { objects.truncate(size); });
    for (std::uint64_t gap = firstFreeId(state); gap < id; ++gap)
        objects.append(static_cast<std::uint32_t>(gap), 0, placeholder);
    objects.append(id, 0, std::move(value));
    Ref<Object> added = objects.object(objects.slots().back());
    ++state.nextObjectId;
    state.modified = true;
    undo.keep();
    return added;
}

bool removeObject(DocumentState& state, const Object& object) noexcept {
    const ObjectTable::Slot* slot = state.objects.find(object.id(), object.generation());
    if (slot == nullptr || !slot->is(object)) return fail(ObjectNotFound);
    state.objects.release(*slot);
    state.filterLosses.erase(slot->id());
    if (slot == &state.objects.slots().back()) {
        state.nextObjectId = slot->id();
        std::size_t left = state.objects.size() - 1;
        while (left != 0 && isPlaceholder(state.objects.slots()[left - 1]))
            --left;
        state.objects.truncate(left);
    } else {
        state.objects.replace(*slot, placeholder);
    }
    state.modified = true;
    return true;
}

} // namespace Libraries::Files::PDF
