#include "packed/name_table.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

namespace Libraries::Files::PDF {

namespace {

/// How far from its hash's slot a name may stand. A file made of names that collide would otherwise
/// take quadratic time: its names find no place here and are simply not shared.
constexpr std::size_t longestProbe = 16;
constexpr std::size_t firstSize = 256;

/// Of the length and both ends: names are short, and mostly differ there. Those that do not
/// collide.
std::size_t hashOf(std::string_view characters) noexcept {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    const std::size_t ends = std::min(characters.size(), sizeof(first));
    std::memcpy(&first, characters.data(), ends);
    std::memcpy(&last, characters.data() + characters.size() - ends, ends);
    const std::uint64_t mixed = (first ^ (last * 0x9E3779B97F4A7C15U)) + characters.size();
    return static_cast<std::size_t>((mixed * 0xD6E8FEB86659FD93U) >> 32);
}

Ref<NameObj> makeName(std::string_view characters) {
    const auto* codes = reinterpret_cast<const std::uint8_t*>(characters.data());
    return makeOrThrow<NameObj>(orThrow(Host::String::create(std::span(codes, characters.size()))));
}

} // namespace

NameTable::Slot* NameTable::place(std::size_t hash, std::string_view characters) noexcept {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t step = 0; step < longestProbe; ++step) {
        Slot& slot = slots_[(hash + step) & mask];
        if (!slot.name) return &slot;
        if (slot.hash == hash && slot.characters == characters) return &slot;
    }
    return nullptr;
}

void NameTable::grow() {
    std::vector<Slot> former(slots_.empty() ? firstSize : slots_.size() * 2);
    former.swap(slots_);
    used_ = 0;
    for (Slot& slot : former) {
        if (!slot.name) continue;
        Slot* moved = place(slot.hash, slot.characters);
        if (moved == nullptr) continue;
        *moved = std::move(slot);
        ++used_;
    }
}

const Ref<NameObj>& NameTable::get(std::string_view characters) {
    if (used_ * 2 >= slots_.size()) grow();
    const std::size_t hash = hashOf(characters);
    Slot* slot = place(hash, characters);
    if (slot == nullptr) {
        unshared_ = makeName(characters);
        return unshared_;
    }
    if (!slot->name) {
        slot->name = makeName(characters);
        slot->characters = slot->name->text()->narrow();
        slot->hash = hash;
        ++used_;
    }
    return slot->name;
}

} // namespace Libraries::Files::PDF
