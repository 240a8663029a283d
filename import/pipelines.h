#pragma once

#include "libqpdf.h"

#include <host/byte_buffer.h>
#include <host/stripe.h>

#include <cstdint>

namespace Libraries::Files::PDF::Import {

/// Takes what passes off what is left, and stops what is too much: libqpdf would keep all of it.
class Meter final : public Pipeline {
public:
    explicit Meter(std::uint64_t& left, Pipeline* behind = nullptr)
        : Pipeline("meter", behind), left_(left) {}

    void write(unsigned char const* data, size_t len) override;
    void finish() override;

    [[nodiscard]] std::uint64_t passed() const noexcept { return passed_; }
    [[nodiscard]] bool exceeded() const noexcept { return exceeded_; }

private:
    std::uint64_t& left_;
    std::uint64_t passed_ = 0;
    bool exceeded_ = false;
};

/// Keeps what arrives. libqpdf takes an exception for damage of the stream, so that whether memory
/// sufficed is asked behind it.
class Collector final : public Pipeline {
public:
    explicit Collector(Host::ByteBuffer& bytes) : Pipeline("collector", nullptr), bytes_(bytes) {
        bytes_.clear();
    }

    void write(unsigned char const* data, size_t len) override;
    void finish() override {}

    /// Throws `std::bad_alloc` where memory did not suffice.
    void check() const;

private:
    Host::ByteBuffer& bytes_;
    bool full_ = false;
};

} // namespace Libraries::Files::PDF::Import
