#pragma once

#include <pdf/document.h>

#include <string_view>

namespace Libraries::Files::PDF::Tools {

/// As `resolve`, but without a word: null where it leads nowhere. Throws `std::bad_alloc`, as does
/// what follows.
[[nodiscard]] Ref<Value> follow(const Document& document, Ref<Value> value);

/// The object that a reference leads to, through others: its value is no reference. Null where it
/// leads nowhere, and for what is no reference.
[[nodiscard]] Ref<Object> objectBehind(const Document& document, Ref<Value> value);

/// The entry as it stands; null where there is none, and where it is null or leads to that.
[[nodiscard]] Ref<Value> entryOf(const Document& document, const Dictionary& dictionary,
                                 std::string_view key);

/// What that leads to.
[[nodiscard]] Ref<Value> followEntry(const Document& document, const Dictionary& dictionary,
                                     std::string_view key);

/// False, with `InvalidArgument` set, for a value that is known to be another document's: its
/// references lead elsewhere here.
[[nodiscard]] bool canBeUsed(const Document& document, const Ref<Value>& value) noexcept;

/// Whether a value is this name.
[[nodiscard]] bool isName(const Ref<Value>& value, std::string_view name) noexcept;

} // namespace Libraries::Files::PDF::Tools
