#pragma once

#include "host/cursor.h"
#include "packed/packed_value.h"
#include "structures/tokens.h"
#include "structures/value_scanner.h"

#include <cstdint>
#include <string_view>

namespace Libraries::Files::PDF {

/// Reads what stands in a file by itself: indirect objects (ISO 32000-1, 7.3.10), and trailers.
/// Offsets are those of the file, counted from its header. Throws `Flaw`, also where all that was
/// read together is much more than the file: objects that lie inside each other.
class IndirectObjects {
public:
    /// What an object says of itself.
    struct Head {
        std::uint64_t number;
        std::uint64_t generation;
    };

    IndirectObjects(Host::Cursor& cursor, ValueScanner& scanner) noexcept;

    /// Where the header begins, from which on offsets are counted.
    void countFrom(std::uint64_t header) noexcept { header_ = header; }
    /// Where an offset of the file leads in the source.
    [[nodiscard]] std::uint64_t inSource(std::uint64_t offset) const noexcept {
        return header_ + offset;
    }
    /// Goes to an offset of the file.
    void seek(std::uint64_t offset);
    [[nodiscard]] Tokens& tokens() noexcept { return tokens_; }

    /// The head of the object that begins at the cursor.
    [[nodiscard]] Head readHead();
    /// The value behind it, with a look at how it ends; that of a stream ends where its data
    /// begins.
    [[nodiscard]] PackedValue readValue();
    /// A dictionary with nothing around it.
    [[nodiscard]] PackedValue readDictionary();
    /// Checks that the data of a stream ends where `length` says. Its place is that of the source.
    void checkEnd(std::uint64_t data, std::uint64_t length);
    /// Takes what was read since the last call off what may be read.
    void charge();

private:
    void beginData();
    void checkObjectEnd(std::string_view word);

    Host::Cursor& cursor_;
    ValueScanner& scanner_;
    Tokens tokens_;
    std::uint64_t header_ = 0;
    std::uint64_t start_ = 0;
    std::uint64_t left_;
    std::uint64_t dataLeft_; // bytes of streams, counted each time
};

} // namespace Libraries::Files::PDF
