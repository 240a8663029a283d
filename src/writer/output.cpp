#include "writer/output.h"

#include <algorithm>
#include <charconv>
#include <span>

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
    failed_ = failed_ || room == nullptr;
    if (failed_) return false;
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
    failed_ = failed_ || room == nullptr;
    if (failed_) return false;
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
        const std::uint64_t left = size - position;
        const std::span<const std::uint8_t> window = data.window(position);
        if (window.size() >= std::min<std::uint64_t>(left, blockSize)) {
            const std::uint64_t count = std::min<std::uint64_t>(window.size(), left);
            last = window[count - 1];
            if (count < blockSize ? !keep(window.data(), count)
                                  : !flush() || !send(window.data(), count)) {
                return false;
            }
            position += count;
        } else {
            const std::uint64_t count = std::min<std::uint64_t>(left, blockSize);
            if (data.position(position) != position || !readInto(data, count)) return false;
            last = buffer_.span().back();
            position += count;
        }
        if (!release()) return false;
    }
    return true;
}

bool Output::readInto(Interfaces::Stripe& data, std::uint64_t count) noexcept {
    std::uint8_t* const room = buffer_.room(count);
    if (room == nullptr || data.readBytes(room, count) != count) return false;
    buffer_.extend(count);
    return true;
}

void Output::takeBack(std::uint64_t offset) noexcept {
    const std::uint64_t kept = offset > sent_ ? offset - sent_ : 0;
    if (kept < buffer_.size()) buffer_.truncate(kept);
}

bool Output::flush() noexcept {
    if (!send(buffer_.data(), buffer_.size())) return false;
    buffer_.clear();
    return true;
}

bool Output::send(const std::uint8_t* bytes, std::uint64_t count) noexcept {
    if (failed_) return false;
    if (count == 0) return true;
    failed_ = target_.writeBytes(bytes, count) != count;
    if (!failed_) sent_ += count;
    return !failed_;
}

} // namespace Libraries::Files::PDF
