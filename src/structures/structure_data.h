#pragma once

#include "host/cursor.h"

#include <host/byte_buffer.h>

#include <cstdint>
#include <span>
#include <string_view>

namespace Libraries::Files::PDF {

/// Decodes the data of the streams that store a document, one after the other: as it is, or what
/// FlateDecode makes of it, with PNG's predictors (ISO 32000-1, 7.4.4). Throws `Flaw` for anything
/// else, and where all of them together hold more than a file of its size may.
class StructureData {
public:
    explicit StructureData(Host::Cursor& cursor) noexcept;

    /// The data of the stream that is packed in `dict` and whose data lies at `offset`; `length`
    /// bytes of the source must be there.
    [[nodiscard]] Host::ByteBuffer read(std::string_view dict, std::uint64_t offset,
                                        std::uint64_t length);

private:
    [[nodiscard]] std::span<const std::uint8_t> stored(std::uint64_t offset, std::uint64_t length);
    [[nodiscard]] Host::ByteBuffer inflate(std::span<const std::uint8_t> data,
                                           std::uint64_t offset);

    Host::Cursor& cursor_;
    std::uint64_t left_; // of what may be decoded
    Host::ByteBuffer stored_;
};

} // namespace Libraries::Files::PDF
