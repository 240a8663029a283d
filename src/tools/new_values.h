#pragma once

#include <host/memory_stripe.h>
#include <pdf/tools/editing.h>
#include <pdf/values.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// New values, which are in no document yet. Everything throws `std::bad_alloc`.
namespace Libraries::Files::PDF::Tools {

[[nodiscard]] Ref<Name> newName(std::string_view name);
[[nodiscard]] Ref<Number> newNumber(std::uint64_t number);
/// A string that says `utf8` to every reader.
[[nodiscard]] Ref<String> newText(std::string_view utf8);
[[nodiscard]] Ref<Array> newArray(const std::vector<Ref<Value>>& elements = {});
[[nodiscard]] Ref<Dictionary> newDictionary(std::initializer_list<Dictionary::Entry> entries = {});

/// A text as a name is spelled (ISO 32000-1, 7.3.5): white space, delimiters, number signs and all
/// that is no printable ASCII by the code of each byte. Fails for a text that no name can have.
[[nodiscard]] std::string spelledName(std::string_view text);

/// Puts an entry into a dictionary that is new, where only exhausted memory can fail it.
void put(const Ref<Dictionary>& dictionary, std::string_view key, const Ref<Value>& value);

/// A stream with a copy of `bytes`, and a dictionary that says how they are stored.
[[nodiscard]] Ref<Stream> newStream(Bytes bytes, Storing storing);

/// A stream of `entries`, to which Length is added, with data that is stored as they say.
[[nodiscard]] Ref<Stream> newStream(const Ref<Dictionary>& entries,
                                    const Ref<Host::MemoryStripe>& data);

/// A reference to an object.
[[nodiscard]] Ref<ObjectRef> newReference(const Ref<Object>& object);

} // namespace Libraries::Files::PDF::Tools
