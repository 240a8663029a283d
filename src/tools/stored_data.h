#pragma once

#include <host/byte_buffer.h>
#include <host/memory_stripe.h>
#include <host/stripe.h>
#include <pdf/document.h>
#include <pdf/tools/editing.h>

#include <array>
#include <cstdint>
#include <string_view>

/// The data of streams as it is stored. Everything fails where it cannot be had.
namespace Libraries::Files::PDF::Tools {

/// The entries that say how a stream's data is stored, Length apart (ISO 32000-1, table 5).
inline constexpr std::array<std::string_view, 5> storageEntries = {"Filter", "DecodeParms", "F",
                                                                   "FFilter", "FDecodeParms"};

/// A stream's data as it is stored: a view, which does not become attached to the stream.
[[nodiscard]] Ref<Interfaces::Stripe> rawData(Document& document, const Ref<Stream>& stream);

/// A copy of a stream's data as it is stored; the stream stays as it is.
[[nodiscard]] Ref<Host::MemoryStripe> rawBytes(Document& document, const Ref<Stream>& stream);

/// Bytes that are handed over, as a stripe.
[[nodiscard]] Ref<Host::MemoryStripe> held(Host::ByteBuffer bytes);

/// What `bytes` are stored as.
[[nodiscard]] Ref<Host::MemoryStripe> stored(Bytes bytes, Storing storing);

/// What `decodedBytes` gives.
[[nodiscard]] Ref<Host::MemoryStripe> decoded(Document& document, const Ref<Stream>& stream,
                                              std::uint64_t limit);

/// The dictionary of a stream, which must have one.
[[nodiscard]] Ref<Dictionary> entriesOf(const Ref<Stream>& stream);

} // namespace Libraries::Files::PDF::Tools
