// Keeps documents in the application's own storage: opens one from there, writes one into it.

#include "program.h"

#include <array>
#include <memory>
#include <new>

namespace {

// page begin
/// A stripe over blocks of 4 KiB, as a cache or a database would keep them. The six operations of
/// its interface are all that a document needs.
class BlockStripe final : public Interfaces::Stripe {
public:
    [[nodiscard]] std::uint64_t elementSize() const noexcept override { return 4; }
    [[nodiscard]] std::uint64_t size() const noexcept override { return size_; }
    [[nodiscard]] std::uint64_t position() const noexcept override { return position_; }

    std::uint64_t position(std::uint64_t position) noexcept override {
        position_ = std::min(position, size_);
        return position_;
    }

    std::uint64_t read(void* buffer, std::uint64_t count) noexcept override {
        auto* elements = static_cast<std::uint32_t*>(buffer);
        const std::uint64_t available = std::min(count, size_ - position_);
        for (std::uint64_t index = 0; index < available; ++index)
            elements[index] = byteAt(position_++);
        return available;
    }

    std::uint64_t write(const void* buffer, std::uint64_t count) noexcept override {
        const auto* elements = static_cast<const std::uint32_t*>(buffer);
        for (std::uint64_t index = 0; index < count; ++index) {
            if (elements[index] > 0xFF || !makeRoom()) return index;
            byteAt(position_++) = static_cast<std::uint8_t>(elements[index]);
            size_ = std::max(size_, position_);
        }
        return count;
    }

private:
    using Block = std::array<std::uint8_t, 4096>;

    std::uint8_t& byteAt(std::uint64_t position) noexcept {
        return (*blocks_[position / sizeof(Block)])[position % sizeof(Block)];
    }

    /// Sees to a block at the position. Nothing may be thrown out of a stripe.
    bool makeRoom() noexcept {
        if (position_ / sizeof(Block) < blocks_.size()) return true;
        try {
            blocks_.push_back(std::make_unique<Block>());
            return true;
        } catch (const std::bad_alloc&) {
            Host::Error::set(Host::OutOfMemory);
            return false;
        }
    }

    std::vector<std::unique_ptr<Block>> blocks_;
    std::uint64_t size_ = 0;
    std::uint64_t position_ = 0;
};
// page end

// Carries all bytes of one stripe to another. False with the error code set.
bool copy(Interfaces::Stripe& from, Interfaces::Stripe& to) {
    std::vector<std::uint8_t> bytes(64 * 1024);
    if (from.position(0) != 0) return false;
    for (std::uint64_t left = from.size(); left != 0;) {
        const auto count = std::min<std::uint64_t>(left, bytes.size());
        if (from.readBytes(bytes.data(), count) != count) return false;
        if (to.writeBytes(bytes.data(), count) != count) return false;
        left -= count;
    }
    return true;
}

// What arrives from elsewhere goes into storage; the document is opened and written there, and what
// was written goes out once it opens and is sound. Fails as work that `Program::attempt` does.
bool rewriteInStorage(Interfaces::Stripe& in, Interfaces::Stripe& out) {
    using namespace Libraries::Files::PDF;
    const auto stored = Host::make<BlockStripe>();
    const auto written = Host::make<BlockStripe>();
    if (!stored || !written || !copy(in, *stored)) return false;
    const auto document = Tools::openFrom(stored).value();
    const auto losses = Tools::losses(document).value();
    if (std::ranges::any_of(losses, Tools::isGrave, &Tools::LossFound::kind))
        throw Tools::BadResultAccess(Tools::Failure(ResultUnsound));
    if (!document->write(written)) return false;
    Tools::openFrom(written).value();
    return copy(*written, out);
}

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv, {"custom_stripe IN OUT", "Rewrites a document through storage of its own."});
    if (!arguments.are(2)) return arguments.refuse();

    const auto source = Host::FileSource::open(arguments[0]);
    if (!source) return Program::failure(arguments[0]);
    const auto target = Host::FileTarget::create(arguments[1]);
    if (!target) return Program::failure(arguments[1]);
    const auto rewrite = [&] { return rewriteInStorage(*source, *target); };
    if (const int status = Program::attempt(arguments[0], rewrite)) return status;
    return target->commit() ? Program::done : Program::failure(arguments[1]);
}
