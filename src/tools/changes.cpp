#include "tools/changes.h"

#include "tools/failure.h"

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Throws where a step failed for want of memory.
void throwIfExhausted() {
    if (Host::Error::get() == Host::OutOfMemory) throw std::bad_alloc();
}

} // namespace

const Changes::Entry& Changes::noted(const Ref<Dictionary>& dictionary, std::string_view key) {
    const Ref<Host::String> text = orThrow(Host::String::create(key));
    entries_.push_back({dictionary, text, quietly([&] { return dictionary->find(text); })});
    return entries_.back();
}

bool Changes::set(const Ref<Dictionary>& dictionary, std::string_view key, Ref<Value> value) {
    if (dictionary->set(noted(dictionary, key).key, std::move(value))) return true;
    entries_.pop_back();
    throwIfExhausted();
    return false;
}

bool Changes::drop(const Ref<Dictionary>& dictionary, std::string_view key) {
    const bool there = quietly([&] { return dictionary->find(key); }) != nullptr;
    return !there || set(dictionary, key, nullptr);
}

void Changes::remember(const Ref<Dictionary>& dictionary, std::string_view key) {
    noted(dictionary, key);
}

// Whoever undoes may have no memory: all that this takes is taken here.
bool Changes::rememberObjects(std::uint32_t count) {
    const Ref<Object> probe = document_.addObject(orThrow(Dictionary::create()));
    if (!probe) return false;
    const std::uint64_t first = probe->id();
    static_cast<void>(document_.removeObject(probe));
    const std::uint64_t end = std::min<std::uint64_t>(first + count, UINT32_MAX);
    others_.reserve(count);
    for (std::uint64_t id = first; id < end; ++id)
        others_.push_back(orThrow(ObjectRef::create(static_cast<std::uint32_t>(id))));
    return true;
}

Ref<Object> Changes::add(Ref<Value> value) {
    added_.emplace_back();
    added_.back() = document_.addObject(std::move(value));
    if (added_.back()) return added_.back();
    added_.pop_back();
    throwIfExhausted();
    return nullptr;
}

void Changes::keep() noexcept {
    entries_.clear();
    added_.clear();
    others_.clear();
}

/// From the last one back: so an entry that was removed finds its place still there, and an object
/// that was added is the last one of its document.
void Changes::undo() noexcept {
    const std::uint32_t code = Host::Error::get();
    for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry)
        static_cast<void>(entry->dictionary->set(entry->key, std::move(entry->former)));
    for (auto ref = others_.rbegin(); ref != others_.rend(); ++ref) {
        const Ref<Object> object = document_.getObject(*ref);
        if (object) static_cast<void>(document_.removeObject(object));
    }
    for (auto object = added_.rbegin(); object != added_.rend(); ++object)
        static_cast<void>(document_.removeObject(*object));
    Host::Error::set(code);
}

} // namespace Libraries::Files::PDF::Tools
