#include "values/dictionary.h"

#include "host/guard.h"
#include "values/array.h"
#include "values/failure.h"
#include "values/nesting.h"
#include "values/scalars.h"
#include "values/typed_access.h"

#include <algorithm>
#include <string_view>

namespace Libraries::Files::PDF {

namespace {

using Entry = DictionaryObj::Entry;
using Entries = DictionaryObj::Entries;

/// Looks at the objects and the first characters first: most keys differ in their first character,
/// and equal keys are mostly the same object.
bool precedes(const Host::String& left, const Host::String& right) noexcept {
    if (&left == &right) return false;
    const std::string_view a = left.narrow();
    const std::string_view b = right.narrow();
    if (!a.empty() && !b.empty() && a[0] != b[0]) {
        return static_cast<unsigned char>(a[0]) < static_cast<unsigned char>(b[0]);
    }
    return left < right;
}

bool ascending(const Entry& left, const Entry& right) noexcept {
    return precedes(*left.key, *right.key);
}

bool strictlyAscending(std::span<const Entry> entries) noexcept {
    for (std::size_t index = 1; index < entries.size(); ++index) {
        if (!ascending(entries[index - 1], entries[index])) return false;
    }
    return true;
}

void insertionSort(Entries& entries) noexcept {
    for (std::size_t index = 1; index < entries.size(); ++index) {
        std::size_t place = index;
        while (place > 0 && ascending(entries[place], entries[place - 1])) {
            std::swap(entries[place], entries[place - 1]);
            --place;
        }
    }
}

/// Keeps only the last entry of each run of equal keys.
void dropShadowed(Entries& entries) noexcept {
    std::size_t kept = 0;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const bool shadowed =
            index + 1 < entries.size() && *entries[index].key == *entries[index + 1].key;
        if (shadowed) continue;
        if (kept != index) entries[kept] = std::move(entries[index]);
        ++kept;
    }
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(kept), entries.end());
}

/// Up to this size, which most dictionaries have, sorting takes no memory. `std::stable_sort` does.
constexpr std::size_t smallDictionary = 24;

template <class Interface>
Ref<Interface> findAs(const Dictionary& dictionary, const Ref<Host::String>& key, bool quiet,
                      const char* castMessage) noexcept {
    const Ref<Value> value = dictionary.find(key);
    if (!value) {
        if (!quiet) report(LogLevel::Error, "Key not found in dictionary: ", key);
        return nullptr;
    }
    return expect<Interface>(value, castMessage);
}

bool usableKey(const Ref<Host::String>& key) noexcept {
    if (!key) return fail(NullArgument);
    if (key->empty()) return fail(InvalidArgument);
    return true;
}

} // namespace

Ref<ObjectRef> Dictionary::findAsObjectRef(const Ref<Host::String>& key,
                                           bool quiet) const noexcept {
    return findAs<ObjectRef>(*this, key, quiet, "Failed to cast value to ObjectRef");
}

Ref<Array> Dictionary::findAsArray(const Ref<Host::String>& key, bool quiet) const noexcept {
    return findAs<Array>(*this, key, quiet, "Failed to cast value to Array");
}

Ref<Dictionary> Dictionary::findAsDictionary(const Ref<Host::String>& key,
                                             bool quiet) const noexcept {
    return findAs<Dictionary>(*this, key, quiet, "Failed to cast value to Dictionary");
}

Ref<Name> Dictionary::findAsName(const Ref<Host::String>& key, bool quiet) const noexcept {
    return findAs<Name>(*this, key, quiet, "Failed to cast value to Name");
}

Ref<Number> Dictionary::findAsNumber(const Ref<Host::String>& key, bool quiet) const noexcept {
    return findAs<Number>(*this, key, quiet, "Failed to cast value to Number");
}

Ref<String> Dictionary::findAsString(const Ref<Host::String>& key, bool quiet) const noexcept {
    return findAs<String>(*this, key, quiet, "Failed to cast value to String");
}

DictionaryObj::DictionaryObj(Entries entries) : entries_(std::move(entries)) {
    if (strictlyAscending(entries_)) return;
    if (entries_.size() <= smallDictionary) {
        insertionSort(entries_);
    } else {
        std::stable_sort(entries_.begin(), entries_.end(), ascending);
    }
    dropShadowed(entries_);
}

std::size_t DictionaryObj::lowerBound(const Host::String& key) const noexcept {
    const auto place = std::partition_point(entries_.begin(), entries_.end(),
                                            [&](const Entry& e) { return precedes(*e.key, key); });
    return static_cast<std::size_t>(place - entries_.begin());
}

bool DictionaryObj::holds(std::size_t place, const Host::String& key) const noexcept {
    return place < entries_.size() && *entries_[place].key == key;
}

Ref<Host::TVector<Ref<Host::String>>> DictionaryObj::keys() const noexcept {
    return Host::guarded([&] {
        auto result = makeOrThrow<Host::TVector<Ref<Host::String>>>();
        result->reserve(entries_.size());
        for (const Entry& entry : entries_)
            result->push_back(entry.key);
        return result;
    });
}

Ref<Value> DictionaryObj::find(const Ref<Host::String>& key) const noexcept {
    if (!usableKey(key)) return nullptr;
    const std::size_t place = lowerBound(*key);
    if (!holds(place, *key)) return fail(KeyNotFound);
    return entries_[place].value;
}

bool DictionaryObj::set(Ref<Host::String> key, Ref<Value> value) noexcept {
    if (!usableKey(key)) return false;
    return Host::guarded([&] {
        const std::size_t place = lowerBound(*key);
        const auto at = entries_.begin() + static_cast<std::ptrdiff_t>(place);
        const bool present = holds(place, *key);
        if (value && present) {
            at->value = std::move(value);
        } else if (value) {
            entries_.insert(at, Entry{std::move(key), std::move(value)});
        } else if (present) {
            entries_.erase(at);
        }
        modified_ = true;
        return true;
    });
}

Ref<Host::String> DictionaryObj::asText() const noexcept {
    const Nesting nesting(walkDepth());
    if (nesting.tooDeep()) return fail(StepFailed);
    return Host::guarded([&]() -> Ref<Host::String> {
        Host::StringBuilder text;
        text.append("<<");
        for (const Entry& entry : entries_) {
            const Ref<Host::String> valueText = entry.value->asText();
            if (!valueText) return nullptr;
            text.append(" ");
            text.append(*entry.key);
            text.append(" -> ");
            text.append(*valueText);
        }
        text.append(" >>");
        return text.build();
    });
}

bool DictionaryObj::equal(Ref<Value> other) const noexcept {
    const Dictionary* dictionary = ofKind<Dictionary>(other);
    if (dictionary == nullptr) return false;
    const Nesting nesting(walkDepth());
    if (nesting.tooDeep()) return false;

    const Ref<Host::TVector<Ref<Host::String>>> otherKeys = dictionary->keys();
    if (!otherKeys || otherKeys->size() != entries_.size()) return false;
    for (std::size_t index = 0; index < entries_.size(); ++index) {
        const Entry& entry = entries_[index];
        const Ref<Host::String>& otherKey = (*otherKeys)[index];
        if (!otherKey || *otherKey != *entry.key) return false;
        if (!entry.value->equal(dictionary->find(otherKey))) return false;
    }
    return true;
}

bool DictionaryObj::changed() const noexcept {
    if (modified_) return true;
    const Nesting nesting(walkDepth());
    if (nesting.tooDeep()) return false;
    return std::ranges::any_of(entries_, [](const Entry& entry) { return entry.value->changed(); });
}

} // namespace Libraries::Files::PDF
