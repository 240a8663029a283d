#pragma once

#include "libqpdf.h"

#include <host/byte_buffer.h>
#include <host/ref.h>
#include <host/stripe.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace Libraries::Files::PDF::Import {

/// A stripe as libqpdf reads it, and what bounds libqpdf: all it does to a file it does between two
/// reads, so a read is where to see that it goes too deep or does too much.
///
/// libqpdf takes an exception for damage and goes on with a repair. So a fault stays: every later
/// read throws as well, and `check` tells in the end.
class Source final : public InputSource {
public:
    explicit Source(Host::Ref<Interfaces::Stripe> stripe);

    /// Throws `Failed` where reading had to be given up.
    void check() const;
    /// Whether that was the stripe's fault.
    [[nodiscard]] bool unread() const noexcept { return fault_ == Fault::Unread; }

    [[nodiscard]] std::uint64_t size() const noexcept { return size_; }

    qpdf_offset_t findAndSkipNextEOL() override;
    [[nodiscard]] std::string const& getName() const override { return name_; }
    qpdf_offset_t tell() override { return static_cast<qpdf_offset_t>(position_); }
    void seek(qpdf_offset_t offset, int whence) override;
    void rewind() override { position_ = 0; }
    size_t read(char* bytes, size_t length) override;
    void unreadCh(char) override;

private:
    enum class Fault { None, Unread, Exhausted, TooDeep };

    void guard(std::uint64_t count);
    [[noreturn]] void stop(Fault fault);
    [[nodiscard]] std::string_view ahead();
    void loadBlock(std::uint64_t start);

    Host::Ref<Interfaces::Stripe> stripe_;
    std::string name_ = "document";
    std::uint64_t size_;
    std::uint64_t position_ = 0;
    std::uint64_t budget_;
    std::uintptr_t stack_;
    Fault fault_ = Fault::None;
    Host::ByteBuffer block_;
    std::uint64_t blockStart_ = 0;
};

} // namespace Libraries::Files::PDF::Import
