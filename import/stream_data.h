#pragma once

#include "decoder.h"
#include "source.h"
#include "value_writer.h"

#include <pdf/import.h>

#include <cstdint>
#include <span>

namespace Libraries::Files::PDF::Import {

/// Fetches the data of streams, of one at a time, and makes Filter and DecodeParms (ISO 32000-1,
/// 7.4) tell how it is encoded.
class StreamData {
public:
    StreamData(Source& source, const Options& options);

    /// The data, decrypted; valid until the next call. `entries` are those of the stream's
    /// dictionary.
    [[nodiscard]] std::span<const std::uint8_t> read(QPDFObjectHandle& stream, Entries& entries);

    /// Whether the entries of the last one hold what stood behind a reference, which others may
    /// share.
    [[nodiscard]] bool inlined() const noexcept { return inlined_; }

private:
    [[nodiscard]] FilterChain takeChain(Entries& entries);
    void readStored(QPDFObjectHandle& stream);
    [[nodiscard]] bool deflate(QPDFObjectHandle& stream, const FilterChain& chain);

    Source& source_;
    bool plainFilters_;
    std::uint64_t streamLimit_;
    std::uint64_t left_; // of what all streams may give
    bool inlined_ = false;
    Decoder decoder_;
    Host::ByteBuffer bytes_;
};

} // namespace Libraries::Files::PDF::Import
