#pragma once

#include <pdf/document.h>

#include <string_view>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// The value that a reference leads to, or the value itself; null where it leads nowhere. Throws
/// `std::bad_alloc`, as does what follows.
[[nodiscard]] Ref<Value> follow(const Document& document, Ref<Value> value);

/// The same by its kind; null for another.
template <class T>
[[nodiscard]] Ref<T> followTo(const Document& document, Ref<Value> value) {
    return Host::cast<T>(follow(document, std::move(value)));
}

/// The object that a reference leads to, through others: its value is no reference. Null where it
/// leads nowhere, and for what is no reference.
[[nodiscard]] Ref<Object> objectBehind(const Document& document, Ref<Value> value);

/// The entry as it stands; null where there is no dictionary or no entry, and where that is null or
/// leads to null.
[[nodiscard]] Ref<Value> entryOf(const Document& document, const Ref<Dictionary>& dictionary,
                                 std::string_view key);

/// What that leads to.
[[nodiscard]] Ref<Value> followEntry(const Document& document, const Ref<Dictionary>& dictionary,
                                     std::string_view key);

/// The same by its kind; null for another.
template <class T>
[[nodiscard]] Ref<T> followEntry(const Document& document, const Ref<Dictionary>& dictionary,
                                 std::string_view key) {
    return Host::cast<T>(followEntry(document, dictionary, key));
}

/// The elements of an array; none of null.
[[nodiscard]] std::vector<Ref<Value>> elementsOf(const Ref<Array>& array);

/// What stands at a key, null too; null where nothing does.
[[nodiscard]] Ref<Value> findEntry(const Ref<Dictionary>& dictionary, std::string_view key);

/// Fails with `InvalidArgument` where `what` is known to belong to another document: its references
/// lead elsewhere here. Null passes.
void requireHome(const Document& document, const Ref<Value>& value, std::string_view what);

/// Whether that counts as absent (ISO 32000-1, 7.3.7).
[[nodiscard]] bool isNothing(const Ref<Value>& value) noexcept;

/// Whether a value is this name.
[[nodiscard]] bool isName(const Ref<Value>& value, std::string_view name) noexcept;

} // namespace Libraries::Files::PDF::Tools
