#include <host/error.h>
#include <host/stream.h>

#include <isa-l/igzip_lib.h>

#include <algorithm>

namespace Host {

namespace {

constexpr std::uint8_t presetDictionary = 0x20;

std::uint32_t clamped(std::size_t size) noexcept {
    return static_cast<std::uint32_t>(std::min<std::size_t>(size, UINT32_MAX / 2));
}

class Inflater final : public Interfaces::BlockFilter {
public:
    Inflater() noexcept {
        isal_inflate_init(&state_);
        state_.crc_flag = ISAL_ZLIB;
    }

    bool convert(std::span<const std::uint8_t> input, std::span<std::uint8_t> output,
                 Progress& progress) noexcept override;
    Flush flush(std::span<std::uint8_t> output, std::uint64_t& produced) noexcept override;

private:
    [[nodiscard]] bool finished() const noexcept { return state_.block_state == ISAL_BLOCK_FINISH; }
    [[nodiscard]] bool namesDictionary(std::span<const std::uint8_t> input) const noexcept;
    Progress step(std::span<const std::uint8_t> input, std::span<std::uint8_t> output) noexcept;

    inflate_state state_;
    std::uint64_t consumed_ = 0;
    bool failed_ = false;
};

bool Inflater::convert(std::span<const std::uint8_t> input, std::span<std::uint8_t> output,
                       Progress& progress) noexcept {
    progress = {};
    failed_ = failed_ || namesDictionary(input);
    if (failed_) return false;

    if (!finished() && !input.empty() && !output.empty()) {
        progress = step(input, output);
        failed_ = failed_ || (!finished() && progress.consumed + progress.produced == 0);
    }
    if (finished()) progress.consumed = input.size();
    consumed_ += progress.consumed;
    return !failed_;
}

Interfaces::BlockFilter::Flush Inflater::flush(std::span<std::uint8_t> output,
                                               std::uint64_t& produced) noexcept {
    produced = 0;
    if (failed_) return Flush::Failed;
    if (finished() || consumed_ == 0) return Flush::Finished;

    produced = step({}, output).produced;
    if (failed_) return Flush::Failed;
    if (produced != 0) return Flush::More;
    return finished() ? Flush::Finished : Flush::Failed;
}

bool Inflater::namesDictionary(std::span<const std::uint8_t> input) const noexcept {
    // The decoder would wait for a dictionary, or go on without one, depending on the block sizes.
    if (consumed_ > 1 || input.size() < 2 - consumed_) return false;
    return (input[1 - consumed_] & presetDictionary) != 0;
}

Interfaces::BlockFilter::Progress Inflater::step(std::span<const std::uint8_t> input,
                                                 std::span<std::uint8_t> output) noexcept {
    const std::uint32_t given = clamped(input.size());
    const std::uint32_t room = clamped(output.size());
    state_.next_in = const_cast<std::uint8_t*>(input.data());
    state_.avail_in = given;
    state_.next_out = output.data();
    state_.avail_out = room;
    const int result = isal_inflate(&state_);
    failed_ = result != ISAL_DECOMP_OK;
    return {given - state_.avail_in, room - state_.avail_out};
}

} // namespace

Ref<Interfaces::BlockFilter> ZlibFilter::createDecompressorStream() noexcept {
    return make<Inflater>();
}

} // namespace Host
