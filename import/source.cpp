#include "source.h"

#include "report.h"

#include <pdf/errors.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace Libraries::Files::PDF::Import {

namespace {

constexpr std::uint64_t blockSize = std::uint64_t{16} << 10;

/// How many times the source may be read, and how much at least. A sound document is read three to
/// twelve times; one that has libqpdf search for its parts again and again would take quadratic
/// time.
constexpr std::uint64_t timesRead = 64;
constexpr std::uint64_t leastRead = std::uint64_t{1} << 20;

/// References that must be followed to read an object lead libqpdf deeper, without end of its own.
constexpr std::uintptr_t stackLimit = std::uintptr_t{256} << 10;

// Nothing that is local tells as much where instrumentation moves locals to the heap.
std::uintptr_t stackPosition() noexcept {
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}

} // namespace

Source::Source(Host::Ref<Interfaces::Stripe> stripe)
    : stripe_(std::move(stripe)),
      size_(std::min<std::uint64_t>(stripe_->size(), std::numeric_limits<qpdf_offset_t>::max())),
      budget_(size_ < UINT64_MAX / timesRead - leastRead ? size_ * timesRead + leastRead
                                                         : UINT64_MAX),
      stack_(stackPosition()) {
    if (!block_.reserve(blockSize)) throw std::bad_alloc();
}

void Source::check() const {
    switch (fault_) {
    case Fault::Unread:
        fail(SourceNotRead);
    case Fault::Exhausted:
        fail(BeyondRepair, "the document has its parts searched for too often");
    case Fault::TooDeep:
        fail(BeyondRepair, "references in the document lead too deep");
    default:
        return;
    }
}

void Source::stop(Fault fault) {
    fault_ = fault;
    throw std::runtime_error("reading was given up");
}

void Source::guard(std::uint64_t count) {
    if (fault_ != Fault::None) stop(fault_);
    const std::uintptr_t here = stackPosition();
    if (std::max(here, stack_) - std::min(here, stack_) > stackLimit) stop(Fault::TooDeep);
    // Finding out that there is nothing is work too.
    const std::uint64_t work = count + 16;
    if (budget_ < work) stop(Fault::Exhausted);
    budget_ -= work;
}

void Source::seek(qpdf_offset_t offset, int whence) {
    const std::uint64_t base = whence == SEEK_END ? size_ : whence == SEEK_CUR ? position_ : 0;
    const auto target = static_cast<qpdf_offset_t>(base) + offset;
    if (target < 0) throw std::logic_error("a position before the beginning");
    position_ = static_cast<std::uint64_t>(target);
}

void Source::unreadCh(char) {
    if (position_ > 0) --position_;
}

size_t Source::read(char* bytes, size_t length) {
    const std::uint64_t left = size_ - std::min(position_, size_);
    const std::uint64_t count = std::min<std::uint64_t>(length, left);
    guard(count);
    last_offset = tell();
    const std::uint64_t end = position_ + count;
    while (position_ < end) {
        const std::string_view piece = ahead().substr(0, end - position_);
        std::ranges::copy(piece, bytes + (count - (end - position_)));
        position_ += piece.size();
    }
    return count;
}

qpdf_offset_t Source::findAndSkipNextEOL() {
    const auto isEnding = [](char code) { return code == '\r' || code == '\n'; };
    bool found = false;
    qpdf_offset_t result = static_cast<qpdf_offset_t>(size_);
    while (position_ < size_) {
        const std::string_view piece = ahead();
        const auto stop = found ? std::ranges::find_if_not(piece, isEnding)
                                : std::ranges::find_if(piece, isEnding);
        const auto passed = static_cast<std::uint64_t>(stop - piece.begin());
        guard(passed);
        position_ += passed;
        if (stop == piece.end()) continue;
        if (found) return result;
        found = true;
        result = tell();
    }
    return result;
}

/// What there is at the position without a further read of the stripe: something, but at the end.
std::string_view Source::ahead() {
    const auto text = [this](std::span<const std::uint8_t> bytes) {
        return std::string_view(reinterpret_cast<const char*>(bytes.data()),
                                std::min<std::uint64_t>(bytes.size(), size_ - position_));
    };
    const auto window = stripe_->window(position_);
    if (!window.empty()) return text(window);
    if (position_ - blockStart_ >= block_.size()) loadBlock(position_ / blockSize * blockSize);
    return text(block_.span().subspan(position_ - blockStart_));
}

void Source::loadBlock(std::uint64_t start) {
    const std::uint64_t count = std::min(blockSize, size_ - start);
    block_.clear();
    std::uint8_t* const room = block_.room(blockSize);
    if (stripe_->position(start) != start || stripe_->readBytes(room, count) != count) {
        stop(Fault::Unread);
    }
    block_.extend(count);
    blockStart_ = start;
}

} // namespace Libraries::Files::PDF::Import
