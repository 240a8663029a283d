#include "state/object_table.h"

#include "host/guard.h"

#include <algorithm>
#include <new>

namespace Libraries::Files::PDF {

static_assert(sizeof(ObjectTable::Slot) <= 40);

const Ref<PackedStore>& ObjectTable::store() const {
    if (!store_) store_ = Host::makeOrThrow<PackedStore>();
    return store_;
}

void ObjectTable::append(std::uint32_t id, std::uint16_t generation, const PackedValue& packed) {
    slots_.emplace_back(id, generation, packed);
}

void ObjectTable::append(std::uint32_t id, std::uint16_t generation, Ref<Value> value) {
    const HomeNumber home = store()->home();
    slots_.emplace_back(Host::makeOrThrow<ObjectObj>(id, generation, std::move(value)));
    settle(slots_.back().touchedValue(), home);
}

void ObjectTable::replace(const Slot& slot, const PackedValue& packed) noexcept {
    Slot& place = slots_[static_cast<std::size_t>(&slot - slots_.data())];
    place = Slot(slot.id_, slot.generation_, packed);
}

const Ref<ObjectObj>& ObjectTable::object(const Slot& slot) const {
    if (!slot.object_) {
        slot.object_ =
            Host::makeOrThrow<ObjectObj>(slot.id_, slot.generation_, slot.packed(), store());
    }
    return slot.object_;
}

Ref<Value> ObjectTable::value(const Slot& slot) const {
    const Ref<ObjectObj>& held = object(slot);
    if (held->touched()) return held->value();
    return Host::orThrow(held->value()); // what was packed has a value
}

void ObjectTable::truncate(std::size_t size) noexcept {
    if (size >= slots_.size()) return;
    slots_.erase(slots_.begin() + static_cast<std::ptrdiff_t>(size), slots_.end());
}

const ObjectTable::Slot* ObjectTable::find(std::uint32_t id,
                                           std::uint16_t generation) const noexcept {
    if (slots_.empty() || id < slots_.front().id()) return nullptr;
    // Ids ascend, so the object is here or before. In a table without gaps it is here.
    const std::size_t latest = std::min<std::size_t>(id - slots_.front().id(), slots_.size() - 1);
    const Slot* found = &slots_[latest];
    if (found->id() != id) {
        const auto end = slots_.begin() + static_cast<std::ptrdiff_t>(latest);
        found = &*std::ranges::lower_bound(slots_.begin(), end, id, {}, &Slot::id);
    }
    return found->id() == id && found->generation() == generation ? found : nullptr;
}

} // namespace Libraries::Files::PDF
