#include "host/cursor.h"
#include "host/guard.h"
#include "packed/unpacker.h"
#include "reader/scanner.h"
#include "values/array.h"
#include "values/failure.h"

#include <host/byte_buffer.h>
#include <host/memory_stripe.h>
#include <pdf/values.h>

#include <optional>
#include <utility>

namespace Libraries::Files::PDF {

namespace {

// Only inside a list are null and references known. So the text is read as the elements of one; the
// line ending ends a comment.
constexpr std::string_view closing = "\n]";

Ref<Host::MemoryStripe> stripeOf(std::string_view syntax) {
    Host::ByteBuffer bytes;
    const bool copied = bytes.reserve(syntax.size() + closing.size()) &&
                        bytes.append(syntax.data(), syntax.size()) &&
                        bytes.append(closing.data(), closing.size());
    if (!copied) throw std::bad_alloc();
    return orThrow(Host::MemoryStripe::create(std::move(bytes)));
}

/// Why reading stopped where the cursor is.
SyntaxError stopped(const Scanner& scanner, const Host::Cursor& cursor, std::size_t size) noexcept {
    if (const auto word = scanner.unknownWord()) return {*word, "this word is no value"};
    const std::uint64_t read = cursor.position();
    if (read > size) return {size, "the text ends inside a value"};
    return {read == 0 ? 0 : read - 1, "what ends here is no value"};
}

Ref<Value> parsed(std::string_view syntax, SyntaxError& error) {
    const Ref<Host::MemoryStripe> stripe = stripeOf(syntax);
    Host::Cursor cursor(*stripe);
    Scanner scanner(cursor);
    if (!scanner.readElements()) {
        error = stopped(scanner, cursor, syntax.size());
        return nullptr;
    }
    if (cursor.position() != syntax.size() + closing.size()) {
        error = {cursor.position() - 1, "this bracket closes nothing"};
        return nullptr;
    }
    PackedStore::Shared shared;
    const Ref<Value> list = unpack(scanner.packed(), shared);
    const auto* elements = as<Array>(list);
    if (elements->size() == 1) return elements->get(0);
    error = elements->size() == 0 ? SyntaxError{syntax.size(), "there is no value"}
                                  : SyntaxError{syntax.size(), "there is more than one value"};
    return nullptr;
}

} // namespace

Ref<Value> Value::parse(std::string_view syntax, SyntaxError* error) noexcept {
    return Host::guarded([&]() -> Ref<Value> {
        SyntaxError found;
        Ref<Value> value = parsed(syntax, found);
        if (value) return value;
        if (error != nullptr) *error = found;
        return fail(InvalidArgument, "Text is not one value: ", found.cause,
                    "; offset: ", found.offset);
    });
}

} // namespace Libraries::Files::PDF
