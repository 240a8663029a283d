#include "tools/changes.h"

#include "tools/failure.h"
#include "tools/new_values.h"
#include "tools/references.h"

#include <utility>

namespace Libraries::Files::PDF::Tools {

const Changes::Entry& Changes::noted(const Ref<Dictionary>& dictionary, std::string_view key) {
    const Ref<Host::String> text = orThrow(Host::String::create(key));
    entries_.push_back({dictionary, text, quietly([&] { return dictionary->find(text); })});
    return entries_.back();
}

void Changes::set(const Ref<Dictionary>& dictionary, std::string_view key, Ref<Value> value) {
    if (dictionary->set(noted(dictionary, key).key, std::move(value))) return;
    entries_.pop_back();
    failAsBefore();
}

void Changes::setUnlessEqual(const Ref<Dictionary>& dictionary, std::string_view key,
                             const Ref<Value>& value) {
    const Ref<Value> former = findEntry(dictionary, key);
    if (!former || !former->equal(value)) set(dictionary, key, value);
}

void Changes::drop(const Ref<Dictionary>& dictionary, std::string_view key) {
    if (findEntry(dictionary, key)) set(dictionary, key, nullptr);
}

void Changes::remember(const Ref<Dictionary>& dictionary, std::string_view key) {
    noted(dictionary, key);
}

Ref<Object> Changes::addObject(Ref<Value> value) {
    Ref<Object>& place = added_.emplace_back();
    return place = orFail(document_.addObject(std::move(value)));
}

Ref<ObjectRef> Changes::add(Ref<Value> value) {
    return newReference(addObject(std::move(value)));
}

void Changes::keep() noexcept {
    entries_.clear();
    added_.clear();
}

/// From the last one back: so an entry that was removed finds its place still there, and an object
/// that was added is the last one of its document.
void Changes::undo() noexcept {
    for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry)
        static_cast<void>(entry->dictionary->set(entry->key, std::move(entry->former)));
    for (auto object = added_.rbegin(); object != added_.rend(); ++object) {
        if (*object) static_cast<void>(document_.removeObject(*object));
    }
}

} // namespace Libraries::Files::PDF::Tools
