#include "compose/copied_data.h"

#include "values/failure.h"
#include "values/kind.h"

#include <host/byte_buffer.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace Libraries::Files::PDF {

namespace {

Ref<SharedBytes> readAll(Interfaces::Stripe& data, std::uint64_t size) {
    Host::ByteBuffer bytes;
    const bool read =
        bytes.resize(size) && (size == 0 || data.readBytes(bytes.data(), size) == size);
    if (!read) return fail(StepFailed, "Failed to read from to be cloned stream's data");
    Ref<SharedBytes> shared = Host::make<SharedBytes>(std::move(bytes));
    if (!shared) return fail(StepFailed, "Failed to create copied stream");
    return shared;
}

} // namespace

std::uint64_t CopiedData::readBytes(std::uint8_t* buffer, std::uint64_t count) noexcept {
    const std::uint64_t read = std::min(count, size() - position_);
    if (read != 0) std::memcpy(buffer, bytes_->span().data() + position_, read);
    position_ += read;
    return read;
}

std::span<const std::uint8_t> CopiedData::window(std::uint64_t position) const noexcept {
    if (position >= size()) return {};
    return bytes_->span().subspan(position);
}

Ref<SharedBytes> StreamBytes::of(const Ref<Stream>& stream, Interfaces::Stripe& data) {
    if (data.position(0) != 0) {
        return fail(InvalidArgument, "Failed to navigate in to be cloned stream's data");
    }
    const std::uint64_t size = data.size();
    if (size > std::numeric_limits<std::uint32_t>::max()) {
        return fail(OutOfRange, "Stream size is too large: ", size);
    }
    const auto known = entries_.find(stream.get());
    if (known != entries_.end()) return known->second.bytes;

    Ref<SharedBytes> bytes = readAll(data, size);
    if (bytes) entries_.emplace(stream.get(), Entry{stream, bytes});
    return bytes;
}

} // namespace Libraries::Files::PDF
