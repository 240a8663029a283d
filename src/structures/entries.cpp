#include "structures/entries.h"

#include <algorithm>

namespace Libraries::Files::PDF {

void Entries::reserve(std::size_t more) {
    // Many small sections must not make it grow by a bit each time.
    const std::size_t wanted = entries_.size() + more;
    if (wanted > entries_.capacity()) entries_.reserve(std::max(wanted, 2 * entries_.capacity()));
}

void Entries::settle() {
    if (!std::ranges::is_sorted(entries_, {}, &Entry::number)) {
        std::ranges::stable_sort(entries_, {}, &Entry::number);
    }
    const auto superseded =
        std::unique(entries_.begin(), entries_.end(), [](const Entry& newer, const Entry& older) {
            return newer.number == older.number;
        });
    entries_.erase(superseded, entries_.end());
}

void Entries::number() noexcept {
    objects_ = 0;
    for (Entry& entry : entries_)
        entry.newNumber = entry.isObject() ? ++objects_ : 0;
}

const Entry* Entries::find(std::uint64_t number) const noexcept {
    if (entries_.empty() || number < entries_.front().number) return nullptr;
    // Ascending numbers are at least as dense as consecutive ones, so this is the last place
    // possible, and without gaps the place itself.
    const std::size_t latest =
        std::min<std::size_t>(number - entries_.front().number, entries_.size() - 1);
    const Entry* found = &entries_[latest];
    if (found->number != number) {
        const auto end = entries_.begin() + static_cast<std::ptrdiff_t>(latest);
        found = &*std::ranges::lower_bound(entries_.begin(), end, number, {}, &Entry::number);
    }
    return found->number == number ? found : nullptr;
}

std::uint32_t Entries::newNumber(std::int64_t number, std::int64_t generation) const noexcept {
    if (number < 0) return 0;
    const Entry* const entry = find(static_cast<std::uint64_t>(number));
    return entry != nullptr && entry->generation == generation ? entry->newNumber : 0;
}

void Entries::mark(std::uint64_t number, Entry::Kind kind) noexcept {
    const Entry* const entry = find(number);
    entries_[static_cast<std::size_t>(entry - entries_.data())].kind = kind;
}

} // namespace Libraries::Files::PDF
