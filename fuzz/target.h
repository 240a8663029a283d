#pragma once

#include <host/stripe.h>
#include <pdf/document.h>

#include <cstdint>
#include <span>
#include <string>

/// What the fuzz targets share.
namespace Fuzzing {

using Host::Ref;
using Bytes = std::span<const std::uint8_t>;

/// Ends the run with a message unless `holds`: what the target found is a fault.
void claim(bool holds, const char* what) noexcept;

/// Switches every log filter off. For the start of each run; only the first call does anything.
void silenceLog() noexcept;

/// A stripe over a copy of `bytes`.
[[nodiscard]] Ref<Interfaces::Stripe> stripeOf(Bytes bytes);
/// The same as an application's own stripe would be: no window, six operations.
[[nodiscard]] Ref<Interfaces::Stripe> plainStripeOf(Bytes bytes);
[[nodiscard]] inline Bytes bytesOf(const std::string& text) noexcept {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}
/// Everything in a stripe, from its start.
[[nodiscard]] std::string contentsOf(Interfaces::Stripe& stripe);

/// What a document writes, and whether it wrote all of it.
struct Written {
    bool complete = false;
    std::string bytes;
};
[[nodiscard]] Written write(Libraries::Files::PDF::Document& document);

} // namespace Fuzzing
