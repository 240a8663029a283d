// The scanner alone: any bytes as a value. What was read is written and read again, from a stripe
// with a window and from one without.

#include "host/cursor.h"
#include "reader/scanner.h"
#include "target.h"
#include "walk.h"
#include "writer/output.h"
#include "writer/serializer.h"

#include <host/memory_stripe.h>

#include <optional>

using namespace Libraries::Files::PDF;
using Fuzzing::claim;

namespace {

Ref<Value> readFrom(const Ref<Interfaces::Stripe>& stripe) {
    Host::Cursor cursor(*stripe);
    return scanValue(cursor);
}

/// The canonical form; of a stream only its dictionary. Nothing where a string cannot be written.
std::optional<std::string> written(const Ref<Value>& value) {
    const auto* stream = dynamic_cast<const Stream*>(value.get());
    const Ref<Host::MemoryStripe> target = Host::MemoryStripe::create();
    Output output(*target);
    const DocumentState state;
    Serializer serializer(output, state);
    if (!serializer.write(stream != nullptr ? Ref<Value>(stream->dict()) : value)) return {};
    claim(output.flush(), "memory takes everything");
    return Fuzzing::contentsOf(*target);
}

bool holdsBackslash(const Ref<Value>& value) {
    bool found = false;
    Fuzzing::visit(value, [&](const Ref<Value>& below) {
        const auto* string = dynamic_cast<const String*>(below.get());
        const Ref<Host::String> text = string != nullptr ? string->text() : nullptr;
        for (std::uint64_t index = 0; text && index < text->length(); ++index)
            found = found || (*text)[index] == U'\\';
    });
    return found;
}

void rewrite(const Ref<Value>& value, const std::string& text) {
    // A backslash is written as an escape that is read as none.
    if (holdsBackslash(value)) return;
    // A number at the very end would be cut off by the end of the data, a dictionary wants to see
    // that no stream follows.
    const std::string object = text + "\nendobj\n";
    const Ref<Value> again = readFrom(Fuzzing::plainStripeOf(Fuzzing::bytesOf(object)));
    claim(again != nullptr, "what is written can be read");
    claim(written(again) == text, "what was read is written as it was");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzzing::silenceLog();
    const Ref<Value> value = readFrom(Fuzzing::stripeOf({data, size}));
    const Ref<Value> plain = readFrom(Fuzzing::plainStripeOf({data, size}));
    claim((value == nullptr) == (plain == nullptr), "a window makes no difference");

    const auto stripe = Fuzzing::stripeOf({data, size});
    Host::Cursor cursor(*stripe);
    static_cast<void>(Scanner(cursor).readDictionary());
    if (!value) return 0;

    static_cast<void>(value->asText());
    claim(!value->changed(), "a value that was read is not changed");
    const auto text = written(value);
    claim(text == written(plain), "a window makes no difference to the value");
    if (text) rewrite(value, *text);
    return 0;
}
