// Packed spellings: any bytes that are a value are packed, unpacked, written and packed again.

#include "host/cursor.h"
#include "host/numbers.h"
#include "packed/entry.h"
#include "packed/unpacker.h"
#include "reader/scanner.h"
#include "state/document_state.h"
#include "target.h"
#include "values/dictionary.h"
#include "writer/output.h"
#include "writer/serializer.h"

#include <host/memory_stripe.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace Libraries::Files::PDF;
using Fuzzing::claim;

namespace {

/// A packed value with bytes of its own, and not one byte of room behind them.
struct Packed {
    std::vector<char> bytes;
    PackedValue value;

    [[nodiscard]] std::string_view text() const { return {bytes.data(), bytes.size()}; }
    [[nodiscard]] PackedValue get() const {
        PackedValue packed = value;
        packed.bytes = text();
        return packed;
    }
};

std::optional<Packed> packedFrom(const Ref<Interfaces::Stripe>& stripe) {
    Host::Cursor cursor(*stripe);
    Scanner scanner(cursor);
    if (!scanner.readObjectValue()) return {};
    const PackedValue packed = scanner.packed();
    return Packed{{packed.bytes.begin(), packed.bytes.end()}, packed};
}

/// What is written for a value or for an object; nothing where that fails.
template <class Source>
std::optional<std::string> written(const DocumentState& state, const Source& source) {
    const Ref<Host::MemoryStripe> target = Host::MemoryStripe::create();
    Output output(*target);
    Serializer serializer(output, state);
    if (!serializer.write(source)) return {};
    claim(output.flush(), "memory takes everything");
    return Fuzzing::contentsOf(*target);
}

/// A document with one object, whose data would lie in `source`.
DocumentState documentOf(const Ref<Interfaces::Stripe>& source, PackedValue packed) {
    DocumentState state;
    state.source = source;
    state.monitor = Host::Mon::create();
    packed.bytes = state.objects.store()->keep(packed.bytes);
    state.objects.append(1, 0, packed);
    return state;
}

/// What is written is the same, whether somebody touched the object or not.
void touch(const Ref<Interfaces::Stripe>& source, const PackedValue& packed) {
    const DocumentState state = documentOf(source, packed);
    const ObjectTable::Slot& slot = state.objects.slots().front();
    const auto before = written(state, slot);
    const bool plain = packed.kind != Value::Type::Stream;
    // What a later one of equal keys replaced counts as well, and may have been all.
    claim(!plain || before.has_value() || packed.unwritable, "what can be written is known");
    claim(!plain || slot.touched() == packed.unwritable, "writing makes no value");

    const DocumentState other = documentOf(source, packed);
    const Ref<ObjectObj> object = other.objects.object(other.objects.slots().front());
    claim(!object->touched() && object->valueType() == packed.kind, "the kind is known");
    const Ref<Value> value = object->value();
    claim(value && object->touched() && value->type() == packed.kind, "a value is made");
    claim(!value->changed(), "making a value is no change");
    claim(object->value() == value, "an object keeps its value");
    claim(written(other, other.objects.slots().front()) == before, "the value is written alike");
}

/// An object may outlive its document before anybody asks for its value.
Ref<Value> valueOfOrphan(const Ref<Interfaces::Stripe>& source, const PackedValue& packed) {
    Ref<ObjectObj> object;
    {
        const DocumentState state = documentOf(source, packed);
        object = state.objects.object(state.objects.slots().front());
    }
    return object->value();
}

std::string keyBytes(const Host::String& key) {
    std::string bytes;
    for (std::uint64_t index = 0; index < key.length(); ++index)
        bytes += static_cast<char>(key[index]);
    return bytes;
}

/// The entries of a dictionary are what it is made of, each where its key is looked up.
void findEntries(const Dictionary& dict, std::string_view packed) {
    std::string together = "<<";
    std::vector<std::string> keys;
    for (const Ref<Host::String>& key : dict.keys()) {
        keys.push_back(keyBytes(*key));
        together.append(" /").append(keys.back()).append(" ");
        together.append(findPackedEntry(packed, keys.back()));
    }
    claim(together + " >>" == packed, "each key leads to what stands under it, and to all of it");
    for (const std::string& key : keys) {
        for (const std::string& absent : {key + '!', key.substr(0, key.size() - 1), '!' + key}) {
            const bool held = std::ranges::find(keys, absent) != keys.end();
            claim(held != findPackedEntry(packed, absent).empty(), "no other key leads anywhere");
        }
    }
}

/// Of each number with a spelling of its own, that spells the number.
void readSpellings(std::string_view packed) {
    using Host::StrConv::num;
    for (std::size_t start = packed.find('\t'); start < packed.size();
         start = packed.find('\t', start + 1)) {
        const std::size_t end = packed.find('\n', start);
        const std::string_view spelling = packed.substr(start + 1, end - start - 1);
        const std::string_view number = packed.substr(end + 1, packed.find(' ', end) - end - 1);
        for (const auto& [part, of] : {std::pair(0, spelling), std::pair(1, number)})
            claim(!of.empty() && of.find_first_not_of("+-.0123456789") > of.size(), "a number");
        const auto parts = [](std::string_view text) {
            const std::size_t point = text.find('.');
            return std::pair(num<std::int64_t>(text.substr(0, point)),
                             point < text.size() ? num<std::uint64_t>(text.substr(point + 1))
                                                 : std::uint64_t{0});
        };
        claim(parts(spelling) == parts(number), "a spelling is that of its number");
    }
}

/// What is written for the value, and what that is packed as.
void packAgain(const Packed& packed, const Ref<Value>& value) {
    const auto* stream = dynamic_cast<const Stream*>(value.get());
    const auto text =
        written(DocumentState(), stream != nullptr ? Ref<Value>(stream->dict()) : value);
    claim(text.has_value() || packed.value.unwritable, "what can be written is known");
    // A backslash is written as an escape that is read as none.
    if (!text || packed.text().find("\\\\") != std::string_view::npos) return;

    // A number at the very end would be cut off by the end of the data, a dictionary wants to see
    // that no stream follows.
    const auto again = packedFrom(Fuzzing::stripeOf(Fuzzing::bytesOf(*text + "\nendobj\n")));
    claim(again.has_value(), "what is written can be read");
    claim(packed.value.spelled || again->bytes == packed.bytes, "it is packed as it was");
    PackedStore::Shared shared;
    claim(written(DocumentState(), unpack(again->get(), shared)) == text, "it is what it was");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzzing::silenceLog();
    const Ref<Interfaces::Stripe> source = Fuzzing::stripeOf({data, size});
    const auto packed = packedFrom(source);
    const auto plain = packedFrom(Fuzzing::plainStripeOf({data, size}));
    claim(packed.has_value() == plain.has_value(), "a window makes no difference");
    if (!packed) return 0;
    claim(packed->bytes == plain->bytes && packed->value.kind == plain->value.kind &&
              packed->value.spelled == plain->value.spelled &&
              packed->value.unwritable == plain->value.unwritable &&
              packed->value.streamOffset == plain->value.streamOffset,
          "a window makes no difference to what is packed");

    touch(source, packed->get());
    const Ref<Value> value = valueOfOrphan(source, packed->get());
    claim(value != nullptr, "an object outlives its document");
    if (packed->value.spelled) readSpellings(packed->text());
    if (auto* dict = dynamic_cast<Dictionary*>(value.get())) findEntries(*dict, packed->text());
    if (auto* stream = dynamic_cast<Stream*>(value.get())) {
        findEntries(*stream->dict(), packed->text());
    }
    packAgain(*packed, value);
    return 0;
}
