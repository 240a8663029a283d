#include "structures/structure_data.h"

#include "host/guard.h"
#include "host/prediction.h"
#include "packed/entry.h"
#include "structures/flaw.h"
#include "structures/tokens.h"

#include <host/stream.h>

#include <algorithm>
#include <limits>
#include <new>

namespace Libraries::Files::PDF {

namespace {

/// How many times the source's size the streams may hold together, and what a small source may.
constexpr std::uint64_t mostDecoded = 64;
constexpr std::uint64_t smallSource = std::uint64_t{1} << 20;

/// Whether there is a filter; what is there must be the one that is read.
bool isDeflated(std::string_view dict, std::uint64_t offset) {
    const std::string_view filter = findPackedEntry(dict, "Filter");
    if (filter.empty() || filter == "[ ]") return false;
    if (filter == "/FlateDecode" || filter == "[ /FlateDecode ]") return true;
    throw Flaw{FilterUnsupported, offset, "the filter of this stream is not read"};
}

/// The DecodeParms of the only filter; empty where there are none.
std::string_view parametersOf(std::string_view dict, std::uint64_t offset) {
    std::string_view parameters = findPackedEntry(dict, "DecodeParms");
    if (parameters.starts_with("[")) {
        PackedElements list(parameters);
        parameters = list.next();
        if (!list.next().empty()) damaged(offset, "this stream has more parameters than filters");
    }
    if (parameters.empty() || parameters == "null" || parameters.starts_with("<<")) {
        return parameters == "null" ? std::string_view() : parameters;
    }
    throw Flaw{FilterUnsupported, offset, "the parameters of this stream's filter are not read"};
}

std::uint64_t parameter(std::string_view parameters, std::string_view key, std::uint64_t otherwise,
                        std::uint64_t offset) {
    const std::string_view entry = findPackedEntry(parameters, key);
    if (entry.empty()) return otherwise;
    const auto number = wholePacked(entry);
    if (!number) damaged(offset, "a parameter of this stream's filter is no number");
    return *number;
}

/// Undoes what the parameters say was done before deflating; rows have at most 1 MiB.
void predict(Host::ByteBuffer& data, std::string_view parameters, std::uint64_t offset) {
    constexpr std::uint64_t mostBits = std::uint64_t{8} << 20;
    constexpr std::uint64_t tiff = 2;
    if (parameters.empty()) return;
    const std::uint64_t predictor = parameter(parameters, "Predictor", 1, offset);
    if (predictor == 1) return;
    Host::Prediction prediction;
    prediction.kind =
        predictor == tiff ? Host::Prediction::Kind::Tiff : Host::Prediction::Kind::Png;
    prediction.colors = parameter(parameters, "Colors", 1, offset);
    prediction.bits = parameter(parameters, "BitsPerComponent", 8, offset);
    prediction.columns = parameter(parameters, "Columns", 1, offset);
    const std::uint64_t bits = prediction.bits;
    const bool known = predictor == tiff || (predictor >= 10 && predictor <= 15);
    const bool possible = known && prediction.colors != 0 && prediction.columns != 0 &&
                          (bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16) &&
                          prediction.colors <= mostBits && prediction.columns <= mostBits &&
                          prediction.colors * prediction.columns <= mostBits / bits;
    if (!possible) damaged(offset, "a parameter of this stream's predictor is out of range");
    if (!Host::undoPrediction(prediction, data)) {
        damaged(offset, "a row of this stream has an unknown filter");
    }
}

} // namespace

StructureData::StructureData(Host::Cursor& cursor) noexcept
    : cursor_(cursor),
      left_(std::min(cursor.size(), std::numeric_limits<std::uint64_t>::max() / mostDecoded / 2) *
                mostDecoded +
            smallSource) {}

Host::ByteBuffer StructureData::read(std::string_view dict, std::uint64_t offset,
                                     std::uint64_t length) {
    const bool deflated = isDeflated(dict, offset);
    const std::string_view parameters = deflated ? parametersOf(dict, offset) : std::string_view();
    if (length > left_) throw Flaw{LimitExceeded, offset, "the streams hold too much"};
    const std::span<const std::uint8_t> raw = stored(offset, length);
    Host::ByteBuffer data;
    if (deflated) {
        data = inflate(raw, offset);
        predict(data, parameters, offset);
    } else if (!data.append(raw.data(), raw.size())) {
        throw std::bad_alloc();
    }
    left_ -= std::min<std::uint64_t>(left_, std::max<std::uint64_t>(length, data.size()));
    return data;
}

/// The bytes as they are: valid until the next call, or until the cursor moves on.
std::span<const std::uint8_t> StructureData::stored(std::uint64_t offset, std::uint64_t length) {
    cursor_.seek(offset);
    stored_.clear();
    while (stored_.size() < length) {
        if (cursor_.next() == Host::Cursor::end) {
            throw Flaw{SourceNotRead, cursor_.position(), "the source cannot be read"};
        }
        const std::string_view held = cursor_.lastAndAhead(cursor_.ahead().size());
        const std::size_t count = std::min<std::uint64_t>(held.size(), length - stored_.size());
        if (count == length) return {reinterpret_cast<const std::uint8_t*>(held.data()), count};
        if (!stored_.append(held.data(), count)) throw std::bad_alloc();
        cursor_.skip(count - 1);
    }
    return stored_.span();
}

Host::ByteBuffer StructureData::inflate(std::span<const std::uint8_t> data, std::uint64_t offset) {
    constexpr std::uint64_t firstRoom = 4096;
    constexpr std::uint64_t timesLarger = 4;
    const auto filter = Host::orThrow(Host::ZlibFilter::createDecompressorStream());
    Host::ByteBuffer inflated;
    std::uint64_t capacity = std::max<std::uint64_t>(data.size() * timesLarger, firstRoom);
    for (bool ended = false; !ended;) {
        capacity = std::min(std::max<std::uint64_t>(capacity, inflated.size()), left_ + 1);
        if (!inflated.reserve(capacity)) throw std::bad_alloc();
        const std::span<std::uint8_t> room(inflated.data() + inflated.size(),
                                           capacity - inflated.size());
        std::uint64_t produced = 0;
        if (!data.empty()) {
            Interfaces::BlockFilter::Progress progress;
            if (!filter->convert(data, room, progress)) {
                damaged(offset, "the data of this stream cannot be inflated");
            }
            data = data.subspan(progress.consumed);
            produced = progress.produced;
        } else {
            const auto flushed = filter->flush(room, produced);
            if (flushed == Interfaces::BlockFilter::Flush::Failed) {
                damaged(offset, "the data of this stream ends too early");
            }
            ended = flushed == Interfaces::BlockFilter::Flush::Finished;
        }
        inflated.extend(produced);
        if (inflated.size() > left_) throw Flaw{LimitExceeded, offset, "the streams hold too much"};
        if (inflated.size() == capacity) capacity *= 2;
    }
    return inflated;
}

} // namespace Libraries::Files::PDF
