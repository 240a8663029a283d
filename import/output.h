#pragma once

#include <host/byte_buffer.h>
#include <host/ref.h>
#include <host/stripe.h>

#include <cstdint>
#include <span>
#include <string_view>

namespace Libraries::Files::PDF::Import {

/// The target: collects what is written and sends it in large blocks. Throws `Failed` where the
/// target does not take them.
class Output {
public:
    explicit Output(Host::Ref<Interfaces::Stripe> target);

    void append(std::string_view text);
    void append(std::span<const std::uint8_t> bytes);
    void flush();

    /// What was appended so far, in bytes.
    [[nodiscard]] std::uint64_t offset() const noexcept { return sent_ + buffer_.size(); }

private:
    void send(std::span<const std::uint8_t> bytes);

    Host::Ref<Interfaces::Stripe> target_;
    Host::ByteBuffer buffer_;
    std::uint64_t sent_ = 0;
};

} // namespace Libraries::Files::PDF::Import
