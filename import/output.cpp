#include "output.h"

#include "report.h"

#include <pdf/errors.h>

#include <new>

namespace Libraries::Files::PDF::Import {

namespace {

constexpr std::size_t blockSize = std::size_t{256} << 10;

} // namespace

Output::Output(Host::Ref<Interfaces::Stripe> target) : target_(std::move(target)) {
    if (!buffer_.reserve(blockSize)) throw std::bad_alloc();
}

void Output::append(std::string_view text) {
    append({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

void Output::append(std::span<const std::uint8_t> bytes) {
    if (bytes.size() > blockSize - buffer_.size()) flush();
    if (bytes.size() >= blockSize) {
        send(bytes);
    } else if (!buffer_.append(bytes.data(), bytes.size())) {
        throw std::bad_alloc();
    }
}

void Output::flush() {
    send(buffer_.span());
    buffer_.clear();
}

void Output::send(std::span<const std::uint8_t> bytes) {
    if (bytes.empty()) return;
    if (target_->writeBytes(bytes.data(), bytes.size()) != bytes.size()) fail(TargetNotWritten);
    sent_ += bytes.size();
}

} // namespace Libraries::Files::PDF::Import
