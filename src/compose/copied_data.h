#pragma once

#include "values/read_only_stripe.h"

#include <host/byte_buffer.h>
#include <host/stripe.h>
#include <pdf/values.h>

#include <map>
#include <span>
#include <utility>

namespace Libraries::Files::PDF {

/// Bytes that several streams share. They never change.
class SharedBytes final : public Host::RefCount {
public:
    explicit SharedBytes(Host::ByteBuffer bytes) noexcept : bytes_(std::move(bytes)) {}

    [[nodiscard]] std::span<const std::uint8_t> span() const noexcept { return bytes_.span(); }

private:
    Host::ByteBuffer bytes_;
};

/// The data of a copied stream: shared bytes, and a position of its own.
class CopiedData final : public ReadOnlyStripe {
public:
    explicit CopiedData(Ref<SharedBytes> bytes) noexcept : bytes_(std::move(bytes)) {}

    [[nodiscard]] std::uint64_t size() const noexcept override { return bytes_->span().size(); }
    std::uint64_t readBytes(std::uint8_t* buffer, std::uint64_t count) noexcept override;
    [[nodiscard]] std::span<const std::uint8_t>
    window(std::uint64_t position) const noexcept override;

private:
    Ref<SharedBytes> bytes_;
};

/// The bytes of the streams that one operation copies. It reads each stream once.
class StreamBytes {
public:
    /// The bytes of `stream`, whose data is `data`. Null, logged with the code set, on failure.
    [[nodiscard]] Ref<SharedBytes> of(const Ref<Stream>& stream, Interfaces::Stripe& data);

private:
    /// Holds the streams too, so that no other one gets the address of one of them.
    struct Entry {
        Ref<Stream> stream;
        Ref<SharedBytes> bytes;
    };

    std::map<const Stream*, Entry> entries_;
};

} // namespace Libraries::Files::PDF
