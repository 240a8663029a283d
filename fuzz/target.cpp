#include "target.h"

#include <host/log.h>
#include <host/memory_stripe.h>

#include <cstdio>
#include <cstdlib>

namespace Fuzzing {

namespace {

class PlainStripe final : public Interfaces::Stripe {
public:
    explicit PlainStripe(Ref<Interfaces::Stripe> base) noexcept : base_(std::move(base)) {}

    [[nodiscard]] std::uint64_t elementSize() const noexcept override { return 4; }
    [[nodiscard]] std::uint64_t size() const noexcept override { return base_->size(); }
    [[nodiscard]] std::uint64_t position() const noexcept override { return base_->position(); }
    std::uint64_t position(std::uint64_t position) noexcept override {
        return base_->position(position);
    }
    std::uint64_t read(void* buffer, std::uint64_t count) noexcept override {
        return base_->read(buffer, count);
    }
    std::uint64_t write(const void* buffer, std::uint64_t count) noexcept override {
        return base_->write(buffer, count);
    }

private:
    Ref<Interfaces::Stripe> base_;
};

} // namespace

void claim(bool holds, const char* what) noexcept {
    if (holds) return;
    std::fprintf(stderr, "claim failed: %s\n", what);
    std::abort();
}

void silenceLog() noexcept {
    static const bool silent = [] {
        for (const char* name : {"global", "PDF", "Lib.File.PDF.Form"})
            Host::SysLogFilter::state(Host::SysLogFilter::reg(name), false);
        return true;
    }();
    static_cast<void>(silent);
}

Ref<Interfaces::Stripe> stripeOf(Bytes bytes) {
    return Host::MemoryStripe::create(bytes);
}

Ref<Interfaces::Stripe> plainStripeOf(Bytes bytes) {
    return Host::make<PlainStripe>(stripeOf(bytes));
}

std::string contentsOf(Interfaces::Stripe& stripe) {
    std::string text(stripe.size(), '\0');
    claim(stripe.position(0) == 0, "a stripe goes to its start");
    const auto read = stripe.readBytes(reinterpret_cast<std::uint8_t*>(text.data()), text.size());
    claim(read == text.size(), "a stripe holds as much as it says");
    return text;
}

Written write(Libraries::Files::PDF::Document& document) {
    const Ref<Host::MemoryStripe> target = Host::MemoryStripe::create();
    const bool complete = document.write(target);
    return {complete, contentsOf(*target)};
}

} // namespace Fuzzing
