#pragma once

#include "spelling/strings.h"

#include <host/byte_buffer.h>
#include <host/stripe.h>

#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace Libraries::Files::PDF {

/// The way to a target stripe: one reused buffer that goes out in large blocks. Counts every byte
/// from the first.
///
/// What is collected can be taken back until it is released. A target that takes less than it is
/// given is noticed when a block goes out; from then on what is appended is counted and dropped,
/// and `release` and `flush` fail. Exhausted memory makes all later operations fail, so that a
/// caller may append several pieces and look once.
class Output {
public:
    explicit Output(Interfaces::Stripe& target) noexcept : target_(target) {}

    /// Bytes appended so far, from the start of the file.
    [[nodiscard]] std::uint64_t offset() const noexcept { return gone_ + buffer_.size(); }

    bool append(std::string_view text) noexcept { return keep(text.data(), text.size()); }
    bool append(char character) noexcept { return keep(&character, 1); }
    /// Appends a code of a literal string.
    bool append(const Spelling::LiteralCode& code) noexcept;
    bool appendNumber(std::uint64_t number) noexcept;
    bool appendNumber(std::int64_t number) noexcept;
    /// Appends `before`, `text` and `after` in one go.
    bool appendBetween(std::string_view before, std::string_view text,
                       std::string_view after) noexcept;
    /// Zero-filled to `width` digits at least.
    bool appendNumber(std::uint64_t number, std::size_t width) noexcept;
    /// Appends everything that `data` holds, from its start; large data does not go through the
    /// buffer. `last` is its last byte. False where the data cannot be had, whatever the target
    /// does.
    bool appendData(Interfaces::Stripe& data, std::uint8_t& last) noexcept;

    /// Takes back what was appended behind `offset` and has not gone out yet.
    void takeBack(std::uint64_t offset) noexcept;
    /// Lets a full block go out. False where the target has failed.
    bool release() noexcept { return buffer_.size() < blockSize ? !failed() : flush(); }
    /// Lets everything go out. False where the target has failed.
    bool flush() noexcept;

private:
    static constexpr std::size_t blockSize = 65536;

    [[nodiscard]] bool failed() const noexcept { return exhausted_ || targetFailed_; }
    bool keep(const void* bytes, std::size_t count) noexcept {
        exhausted_ = exhausted_ || !buffer_.append(bytes, count);
        return !exhausted_;
    }
    template <class Number>
    bool keepNumber(Number number) noexcept;
    /// As `appendData` for what comes next; gives how much that was, 0 where it cannot be had.
    std::uint64_t appendSome(Interfaces::Stripe& data, std::uint64_t position, std::uint64_t left,
                             std::uint8_t& last) noexcept;
    std::uint64_t appendRead(Interfaces::Stripe& data, std::uint64_t position, std::uint64_t count,
                             std::uint8_t& last) noexcept;
    [[nodiscard]] bool heldByTarget(std::span<const std::uint8_t> window) const noexcept;
    void send(std::span<const std::uint8_t> bytes) noexcept;

    Interfaces::Stripe& target_;
    Host::ByteBuffer buffer_;
    std::uint64_t gone_ = 0; // sent, or dropped behind a failure of the target
    bool exhausted_ = false;
    bool targetFailed_ = false;
};

inline bool Output::append(const Spelling::LiteralCode& code) noexcept {
    std::uint8_t* const room = buffer_.room(code.text.size());
    exhausted_ = exhausted_ || room == nullptr;
    if (exhausted_) return false;
    // To copy all of the array is faster than to look how much of it counts.
    std::memcpy(room, code.text.data(), code.text.size());
    buffer_.extend(code.size);
    return true;
}

} // namespace Libraries::Files::PDF
