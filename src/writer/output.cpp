#include "writer/output.h"

#include <algorithm>
#include <charconv>
#include <functional>

namespace Libraries::Files::PDF {

namespace {

template <class Number>
std::string_view digitsOf(Number number, std::span<char> room) noexcept {
    const auto end = std::to_chars(room.data(), room.data() + room.size(), number).ptr;
    return {room.data(), static_cast<std::size_t>(end - room.data())};
}

} // namespace

template <class Number>
bool Output::keepNumber(Number number) noexcept {
    constexpr std::size_t longest = 20;
    auto* room = reinterpret_cast<char*>(buffer_.room(longest));
    exhausted_ = exhausted_ || room == nullptr;
    if (exhausted_) return false;
    buffer_.extend(digitsOf(number, {room, longest}).size());
    return true;
}

bool Output::appendNumber(std::uint64_t number) noexcept {
    return keepNumber(number);
}

bool Output::appendNumber(std::int64_t number) noexcept {
    return keepNumber(number);
}

bool Output::appendBetween(std::string_view before, std::string_view text,
                           std::string_view after) noexcept {
    const std::size_t size = before.size() + text.size() + after.size();
    std::uint8_t* room = buffer_.room(size);
    exhausted_ = exhausted_ || room == nullptr;
    if (exhausted_) return false;
    for (const std::string_view part : {before, text, after}) {
        room = std::copy(part.begin(), part.end(), room);
    }
    buffer_.extend(size);
    return true;
}

bool Output::appendNumber(std::uint64_t number, std::size_t width) noexcept {
    constexpr std::string_view zeros = "00000000000000000000";
    char room[20];
    const std::string_view digits = digitsOf(number, room);
    const std::size_t missing = width > digits.size() ? width - digits.size() : 0;
    return append(zeros.substr(0, missing)) && append(digits);
}

bool Output::appendData(Interfaces::Stripe& data, std::uint8_t& last) noexcept {
    const std::uint64_t size = data.size();
    for (std::uint64_t position = 0; position < size;) {
        const std::uint64_t taken = appendSome(data, position, size - position, last);
        if (taken == 0) return false;
        position += taken;
        release();
    }
    return true;
}

std::uint64_t Output::appendSome(Interfaces::Stripe& data, std::uint64_t position,
                                 std::uint64_t left, std::uint8_t& last) noexcept {
    const std::uint64_t block = std::min<std::uint64_t>(left, blockSize);
    if (block == blockSize) flush();
    // Only now: writing to the target may move what data of the same storage shows.
    const std::span<const std::uint8_t> window = data.window(position);
    if (window.size() < block) return appendRead(data, position, block, last);

    const bool direct = block == blockSize && !heldByTarget(window);
    const auto bytes = window.first(direct ? std::min<std::uint64_t>(window.size(), left) : block);
    last = bytes.back();
    if (direct) {
        send(bytes);
    } else if (!keep(bytes.data(), bytes.size())) {
        return 0;
    }
    return bytes.size();
}

std::uint64_t Output::appendRead(Interfaces::Stripe& data, std::uint64_t position,
                                 std::uint64_t count, std::uint8_t& last) noexcept {
    std::uint8_t* const room = buffer_.room(count);
    if (exhausted_ || room == nullptr || data.position(position) != position) return 0;
    if (data.readBytes(room, count) != count) return 0;
    buffer_.extend(count);
    last = room[count - 1];
    return count;
}

bool Output::heldByTarget(std::span<const std::uint8_t> window) const noexcept {
    const std::span<const std::uint8_t> held = target_.window(0);
    const std::less<> before;
    return !held.empty() && !before(window.data(), held.data()) &&
           before(window.data(), held.data() + held.size());
}

void Output::takeBack(std::uint64_t offset) noexcept {
    const std::uint64_t kept = offset > gone_ ? offset - gone_ : 0;
    if (kept < buffer_.size()) buffer_.truncate(kept);
}

bool Output::flush() noexcept {
    send(buffer_.span());
    buffer_.clear();
    return !failed();
}

void Output::send(std::span<const std::uint8_t> bytes) noexcept {
    if (bytes.empty()) return;
    if (!failed()) targetFailed_ = target_.writeBytes(bytes.data(), bytes.size()) != bytes.size();
    gone_ += bytes.size();
}

} // namespace Libraries::Files::PDF
