#pragma once

#include <host/stripe.h>

#include <cstdint>
#include <string_view>

namespace Libraries::Files::PDF {

/// The way to a target stripe: one reused buffer that goes out in large blocks. Counts every byte
/// from the first.
///
/// What is collected can be taken back until it is released. A target that takes less than it is
/// given is noticed when a block goes out. Every failure, exhausted memory included, makes all
/// later operations fail, so that a caller may append several pieces and look once.
class Output {
public:
    explicit Output(Interfaces::Stripe& target) noexcept : target_(target) {}

    /// Bytes appended so far, from the start of the file.
    [[nodiscard]] std::uint64_t offset() const noexcept { return sent_ + buffer_.size(); }

    bool append(std::string_view text) noexcept { return keep(text.data(), text.size()); }
    bool append(char character) noexcept { return keep(&character, 1); }
    bool appendNumber(std::uint64_t number) noexcept;
    bool appendNumber(std::int64_t number) noexcept;
    /// Appends `before`, `text` and `after` in one go.
    bool appendBetween(std::string_view before, std::string_view text,
                       std::string_view after) noexcept;
    /// Zero-filled to `width` digits at least.
    bool appendNumber(std::uint64_t number, std::size_t width) noexcept;
    /// Appends everything that `data` holds, from its start; large data does not go through the
    /// buffer. `last` is its last byte.
    bool appendData(Interfaces::Stripe& data, std::uint8_t& last) noexcept;

    /// Takes back what was appended behind `offset` and has not gone out yet.
    void takeBack(std::uint64_t offset) noexcept;
    /// Lets a full block go out.
    bool release() noexcept { return buffer_.size() < blockSize ? !failed_ : flush(); }
    /// Lets everything go out.
    bool flush() noexcept;

private:
    static constexpr std::size_t blockSize = 65536;

    bool keep(const void* bytes, std::size_t count) noexcept {
        failed_ = failed_ || !buffer_.append(bytes, count);
        return !failed_;
    }
    template <class Number>
    bool keepNumber(Number number) noexcept;
    bool readInto(Interfaces::Stripe& data, std::uint64_t count) noexcept;
    bool send(const std::uint8_t* bytes, std::uint64_t count) noexcept;

    Interfaces::Stripe& target_;
    Host::ByteBuffer buffer_;
    std::uint64_t sent_ = 0;
    bool failed_ = false;
};

} // namespace Libraries::Files::PDF
