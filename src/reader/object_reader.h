#pragma once

#include "host/cursor.h"
#include "reader/scanner.h"
#include "state/document_state.h"

#include <pdf/values.h>

#include <array>
#include <cstdint>
#include <string>

namespace Libraries::Files::PDF {

/// Reads indirect objects (ISO 32000-1, 7.3.10): a header line "12 0 obj", then a value, which may
/// begin on that line. What stands behind the value is not looked at.
class ObjectReader {
public:
    ObjectReader(Host::Cursor& cursor, Scanner& scanner) noexcept
        : cursor_(cursor), scanner_(scanner) {}

    /// Reads the object at `offset`, which must say that it is the one expected, into `state`.
    /// False, logged, with no code set, on failure. `id` may lie beyond the numbers that an object
    /// can have.
    [[nodiscard]] bool read(std::uint64_t id, std::uint16_t generation, std::uint64_t offset,
                            DocumentState& state);

    /// Characters that all calls together have gone through.
    [[nodiscard]] std::uint64_t charactersRead() const noexcept { return charactersRead_; }

private:
    [[nodiscard]] bool readAt(std::uint64_t id, std::uint16_t generation, std::uint64_t offset);
    [[nodiscard]] PackedValue keep(PackedStore& store);
    [[nodiscard]] bool readHeaderLine();
    void skipLineFeed() noexcept;
    [[nodiscard]] bool checkHeader(std::uint64_t id, std::uint16_t generation,
                                   std::uint64_t offset) const noexcept;

    Host::Cursor& cursor_;
    Scanner& scanner_;
    std::array<std::string, 3> parts_;
    std::uint64_t charactersRead_ = 0;
};

} // namespace Libraries::Files::PDF
