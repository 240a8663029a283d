#include <host/byte_buffer.h>
#include <host/error.h>
#include <host/stream.h>
#include <host/stripe.h>

#include <libdeflate.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace Host {

namespace {

constexpr std::uint32_t defaultLevel = 6;
constexpr std::uint32_t highestLevel = 12;

struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const noexcept {
        libdeflate_free_compressor(compressor);
    }
};
using Compressor = std::unique_ptr<libdeflate_compressor, FreeCompressor>;

class Deflater final : public Interfaces::BlockFilter {
public:
    explicit Deflater(Compressor compressor) noexcept : compressor_(std::move(compressor)) {}

    bool convert(std::span<const std::uint8_t> input, std::span<std::uint8_t> output,
                 Progress& progress) noexcept override;
    Flush flush(std::span<std::uint8_t> output, std::uint64_t& produced) noexcept override;

private:
    bool compress() noexcept;

    Compressor compressor_; // null once the input has ended
    ByteBuffer input_;
    ByteBuffer result_;
    std::size_t given_ = 0;
    bool failed_ = false;
};

bool Deflater::convert(std::span<const std::uint8_t> input, std::span<std::uint8_t>,
                       Progress& progress) noexcept {
    progress = {};
    failed_ = failed_ || !compressor_ || !input_.append(input.data(), input.size());
    if (failed_) return false;
    progress.consumed = input.size();
    return true;
}

Interfaces::BlockFilter::Flush Deflater::flush(std::span<std::uint8_t> output,
                                               std::uint64_t& produced) noexcept {
    produced = 0;
    failed_ = failed_ || (compressor_ && !compress());
    if (failed_) return Flush::Failed;
    if (given_ == result_.size()) return Flush::Finished;

    produced = std::min(output.size(), result_.size() - given_);
    if (produced != 0) std::memcpy(output.data(), result_.data() + given_, produced);
    given_ += produced;
    return Flush::More;
}

bool Deflater::compress() noexcept {
    const Compressor compressor = std::move(compressor_);
    const std::size_t bound = libdeflate_zlib_compress_bound(compressor.get(), input_.size());
    std::uint8_t* const room = result_.room(bound);
    if (room == nullptr) return false;
    const std::size_t size =
        libdeflate_zlib_compress(compressor.get(), input_.data(), input_.size(), room, bound);
    input_ = ByteBuffer();
    result_.extend(size);
    result_.shrink();
    return size != 0;
}

} // namespace

Ref<Interfaces::BlockFilter> ZlibFilter::createCompressorStream(std::uint32_t level) noexcept {
    if (level > highestLevel) {
        Error::set(InvalidArgument);
        return nullptr;
    }
    const int effort = static_cast<int>(level == 0 ? defaultLevel : level);
    Compressor compressor(libdeflate_alloc_compressor(effort));
    if (!compressor) {
        Error::set(OutOfMemory);
        return nullptr;
    }
    return make<Deflater>(std::move(compressor));
}

} // namespace Host
