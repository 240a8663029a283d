#include "packed/packed_store.h"

#include <atomic>
#include <new>
#include <utility>

namespace Libraries::Files::PDF {

namespace {

std::string_view tail(const Host::ByteBuffer& buffer, std::size_t size) noexcept {
    const auto* end = reinterpret_cast<const char*>(buffer.data()) + buffer.size();
    return {end - size, size};
}

} // namespace

std::string_view PackedStore::keep(std::string_view bytes) {
    if (bytes.size() > left_) {
        Host::ByteBuffer chunk;
        if (!chunk.reserve(chunkSize)) throw std::bad_alloc();
        chunks_.push_back(std::move(chunk));
        filling_ = chunks_.size() - 1;
        left_ = chunkSize;
    }
    Host::ByteBuffer& chunk = chunks_[filling_];
    static_cast<void>(chunk.append(bytes.data(), bytes.size())); // there is room, and it stays
    left_ -= bytes.size();
    size_ += bytes.size();
    return tail(chunk, bytes.size());
}

// Documents are told apart by numbers, since a place in memory soon is another one's. They begin
// anew after 16 million: then a thing of a document that long gone may pass for one of the new one.
HomeNumber PackedStore::nextHome() noexcept {
    static std::atomic<std::uint32_t> last{0};
    HomeNumber home;
    while (!home.isKnown())
        home = HomeNumber(last.fetch_add(1, std::memory_order_relaxed) + 1);
    return home;
}

std::string_view PackedStore::adopt(Host::ByteBuffer bytes) {
    bytes.shrink();
    chunks_.push_back(std::move(bytes));
    size_ += chunks_.back().size();
    return tail(chunks_.back(), chunks_.back().size());
}

} // namespace Libraries::Files::PDF
