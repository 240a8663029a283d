#pragma once

// Documents, what is in them, and the samples.

#include <host/memory_stripe.h>
#include <pdf/document.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Support {

namespace PDF = Libraries::Files::PDF;
// So that who uses this namespace has what tests are about as well.
using namespace PDF;
using namespace Host::Literals;

/// A stripe over a copy of these bytes.
[[nodiscard]] Host::Ref<Host::MemoryStripe> stripeOf(std::string_view bytes);
/// The document that these bytes are; null, with the code set, where they are none.
[[nodiscard]] Host::Ref<PDF::Document> open(std::string_view bytes);
/// What the document writes; empty where writing fails.
[[nodiscard]] std::string write(PDF::Document& document);
/// The object's value, or null.
[[nodiscard]] Host::Ref<PDF::Value> valueOf(const PDF::Document& document, std::uint32_t id,
                                            std::uint16_t generation = 0);
/// The stream that object `id` is, or null.
[[nodiscard]] Host::Ref<PDF::Stream> streamOf(const PDF::Document& document, std::uint32_t id);
/// Everything in a stripe, from its start; "(null)" for null.
[[nodiscard]] std::string contentsOf(const Host::Ref<Interfaces::Stripe>& stripe);
/// The text form of whatever has one; "(null)" for null.
template <class T>
[[nodiscard]] std::string textOf(const Host::Ref<T>& value) {
    return value ? value->asText()->utf8() : "(null)";
}
/// `data` in the zlib format.
[[nodiscard]] std::string deflated(std::string_view data);
/// The bytes of examples/samples/`name`.
[[nodiscard]] std::string sample(std::string_view name);
/// The file names in examples/samples, sorted.
[[nodiscard]] std::vector<std::string> sampleNames();

} // namespace Support
