#include <host/stripe.h>
#include <host/stripe_adapters.h>

#include <algorithm>
#include <array>

namespace Interfaces {

namespace {

using Element = std::uint32_t;
using Carry = Utils::Convert<Element, std::uint8_t>;

constexpr std::uint64_t blockElements = 1024;

bool holdsBytesIn32Bits(const Stripe& stripe) noexcept {
    if (stripe.elementSize() == sizeof(Element)) return true;
    Host::Error::set(Host::InvalidArgument);
    return false;
}

} // namespace

std::uint64_t Stripe::readBytes(std::uint8_t* buffer, std::uint64_t count) noexcept {
    if (elementSize() == 1) return std::min(read(buffer, count), count);
    if (!holdsBytesIn32Bits(*this)) return 0;
    std::array<Element, blockElements> block;
    std::uint64_t done = 0;
    while (done < count) {
        const std::uint64_t wanted = std::min(count - done, blockElements);
        const std::uint64_t got = std::min(read(block.data(), wanted), wanted);
        for (std::uint64_t index = 0; index < got; ++index) {
            if (!Carry::fits(block[index])) return done + index;
            buffer[done + index] = Carry::narrow(block[index]);
        }
        done += got;
        if (got != wanted) break;
    }
    return done;
}

std::uint64_t Stripe::writeBytes(const std::uint8_t* bytes, std::uint64_t count) noexcept {
    if (elementSize() == 1) return write(bytes, count);
    if (!holdsBytesIn32Bits(*this)) return 0;
    std::array<Element, blockElements> block;
    std::uint64_t done = 0;
    while (done < count) {
        const std::uint64_t wanted = std::min(count - done, blockElements);
        std::transform(bytes + done, bytes + done + wanted, block.begin(), Carry::widen);
        const std::uint64_t put = std::min(write(block.data(), wanted), wanted);
        done += put;
        if (put != wanted) break;
    }
    return done;
}

std::span<const std::uint8_t> Stripe::window(std::uint64_t) const noexcept {
    return {};
}

} // namespace Interfaces

namespace Adapters::Stripe {

namespace {

using Interfaces::Carry;
using Interfaces::Element;

std::uint64_t readWide(Interfaces::Stripe& bytes, Element* elements, std::uint64_t count) noexcept {
    // A caller may ask for more than is left, with room for just that. The bytes come through a
    // block of our own, so that the buffer stays untouched behind the elements it gets.
    std::array<std::uint8_t, Interfaces::blockElements> block;
    std::uint64_t done = 0;
    while (done < count) {
        const std::uint64_t wanted = std::min(count - done, Interfaces::blockElements);
        const std::uint64_t got = std::min(bytes.readBytes(block.data(), wanted), wanted);
        std::transform(block.begin(), block.begin() + got, elements + done, Carry::widen);
        done += got;
        if (got != wanted) break;
    }
    return done;
}

std::uint64_t writeWide(Interfaces::Stripe& bytes, const Element* elements,
                        std::uint64_t count) noexcept {
    std::array<std::uint8_t, Interfaces::blockElements> block;
    std::uint64_t done = 0;
    while (done < count) {
        const std::uint64_t wanted = std::min(count - done, Interfaces::blockElements);
        std::uint64_t fitting = 0;
        while (fitting < wanted && Carry::fits(elements[done + fitting])) {
            block[fitting] = Carry::narrow(elements[done + fitting]);
            ++fitting;
        }
        const std::uint64_t put = std::min(bytes.writeBytes(block.data(), fitting), fitting);
        done += put;
        if (put != wanted) break;
    }
    return done;
}

} // namespace

std::uint64_t Base::read(void* buffer, std::uint64_t count) noexcept {
    if (buffer == nullptr) return 0;
    return readWide(*this, static_cast<Element*>(buffer), count);
}

std::uint64_t Base::write(const void* buffer, std::uint64_t count) noexcept {
    if (buffer == nullptr) return 0;
    return writeWide(*this, static_cast<const Element*>(buffer), count);
}

Host::Ref<ElementSize> ElementSize::create(Host::Ref<Interfaces::Stripe> base,
                                           std::uint64_t elementSize) noexcept {
    const auto supported = [](std::uint64_t size) { return size == 1 || size == sizeof(Element); };
    if (!base) {
        Host::Error::set(Host::NullArgument);
        return nullptr;
    }
    if (!supported(elementSize) || !supported(base->elementSize())) {
        Host::Error::set(Host::InvalidArgument);
        return nullptr;
    }
    return Host::make<ElementSize>(std::move(base), elementSize);
}

std::uint64_t ElementSize::read(void* buffer, std::uint64_t count) noexcept {
    if (buffer == nullptr) return 0;
    return elementSize_ == 1 ? readBytes(static_cast<std::uint8_t*>(buffer), count)
                             : readWide(*base_, static_cast<Element*>(buffer), count);
}

std::uint64_t ElementSize::write(const void* buffer, std::uint64_t count) noexcept {
    if (buffer == nullptr) return 0;
    return elementSize_ == 1 ? writeBytes(static_cast<const std::uint8_t*>(buffer), count)
                             : writeWide(*base_, static_cast<const Element*>(buffer), count);
}

std::uint64_t ElementSize::readBytes(std::uint8_t* buffer, std::uint64_t count) noexcept {
    return base_->readBytes(buffer, count);
}

std::uint64_t ElementSize::writeBytes(const std::uint8_t* bytes, std::uint64_t count) noexcept {
    return base_->writeBytes(bytes, count);
}

std::span<const std::uint8_t> ElementSize::window(std::uint64_t position) const noexcept {
    return base_->window(position);
}

} // namespace Adapters::Stripe
