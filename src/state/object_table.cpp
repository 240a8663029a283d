#include "state/object_table.h"

#include <algorithm>

namespace Libraries::Files::PDF {

void ObjectTable::append(Ref<Object> object) {
    const std::uint32_t id = object->id();
    const std::uint16_t generation = object->generation();
    slots_.push_back({id, generation, std::move(object)});
    const std::size_t last = slots_.size() - 1;
    if (ascending_ == last && (last == 0 || slots_[last - 1].id < id)) ++ascending_;
}

bool ObjectTable::remove(std::uint32_t id, std::uint16_t generation) noexcept {
    const std::size_t found = place(id, generation);
    if (found == slots_.size()) return false;
    slots_.erase(slots_.begin() + static_cast<std::ptrdiff_t>(found));
    if (found < ascending_) --ascending_;
    return true;
}

void ObjectTable::truncate(std::size_t size) noexcept {
    if (size >= slots_.size()) return;
    slots_.erase(slots_.begin() + static_cast<std::ptrdiff_t>(size), slots_.end());
    ascending_ = std::min(ascending_, size);
}

Object* ObjectTable::find(std::uint32_t id, std::uint16_t generation) const noexcept {
    const std::size_t found = place(id, generation);
    return found == slots_.size() ? nullptr : slots_[found].object.get();
}

std::size_t ObjectTable::place(std::uint32_t id, std::uint16_t generation) const noexcept {
    const auto matches = [&](const Slot& slot) {
        return slot.id == id && slot.generation == generation;
    };
    if (ascending()) {
        const std::size_t found = placeOfId(id);
        return found < slots_.size() && matches(slots_[found]) ? found : slots_.size();
    }
    const auto found = std::ranges::find_if(slots_, matches);
    return static_cast<std::size_t>(found - slots_.begin());
}

std::size_t ObjectTable::placeOfId(std::uint32_t id) const noexcept {
    if (slots_.empty() || id < slots_.front().id) return slots_.size();
    // Ascending ids are at least as dense as consecutive ones, so this is the last place possible,
    // and in a table without gaps the place itself.
    const std::size_t latest = std::min<std::size_t>(id - slots_.front().id, slots_.size() - 1);
    if (slots_[latest].id == id) return latest;
    const auto end = slots_.begin() + static_cast<std::ptrdiff_t>(latest);
    const auto found = std::ranges::lower_bound(slots_.begin(), end, id, {}, &Slot::id);
    return static_cast<std::size_t>(found - slots_.begin());
}

} // namespace Libraries::Files::PDF
