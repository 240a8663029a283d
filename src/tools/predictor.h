#pragma once

#include <host/byte_buffer.h>
#include <pdf/document.h>

#include <cstdint>
#include <optional>

namespace Libraries::Files::PDF::Tools {

/// What data went through before it was deflated (ISO 32000-1, 7.4.4.4).
struct Predictor {
    enum class Kind { None, Tiff, Png };

    Kind kind = Kind::None;
    std::uint64_t colors = 1;
    std::uint64_t bits = 8; ///< of one component
    std::uint64_t columns = 1;

    [[nodiscard]] std::uint64_t bytesOfRow() const noexcept {
        return (colors * bits * columns + 7) / 8;
    }
    /// Of one pixel, at least one.
    [[nodiscard]] std::uint64_t bytesOfPixel() const noexcept { return (colors * bits + 7) / 8; }
};

/// The predictor that decode parameters name, which may be null; nothing where their values are
/// none that the standard knows. Throws `std::bad_alloc`.
[[nodiscard]] std::optional<Predictor> predictorOf(const Document& document,
                                                   const Ref<Dictionary>& parameters);

/// Makes data what it was before the predictor, in place. False where it is no whole number of
/// rows, or a row is of an unknown kind; the data is of no use then. Takes no memory.
[[nodiscard]] bool undo(const Predictor& predictor, Host::ByteBuffer& data) noexcept;

} // namespace Libraries::Files::PDF::Tools
