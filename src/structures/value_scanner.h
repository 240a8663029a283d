#pragma once

#include "host/cursor.h"
#include "packed/packed_value.h"
#include "packed/packer.h"
#include "structures/entries.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace Libraries::Files::PDF {

/// Reads values by the syntax of ISO 32000-1, 7.3, and packs them. What the exact rules of
/// `Scanner` take otherwise is spelled so that they read the same value: strings whose bytes a
/// literal does not keep become hexadecimal, names canonical, and numbers keep their spelling.
///
/// Throws `Flaw` for what is no value, and `std::bad_alloc`.
class ValueScanner {
public:
    /// References become those of the new numbers of `entries`, or null; where there are none they
    /// stay as they are.
    void numberBy(const Entries* entries) noexcept { entries_ = entries; }
    /// Whether all strings become hexadecimal: the exact rules look for the trailer's brackets
    /// without a look at what is a string.
    void onlyHexadecimal(bool hexadecimal) noexcept { hexadecimal_ = hexadecimal; }

    /// The value at the cursor, which is left right behind it: valid until the next call. Of a
    /// stream that is the dictionary.
    [[nodiscard]] PackedValue read(Host::Cursor& cursor);

    void addLosses(Losses& losses, std::uint32_t object) const noexcept {
        if (packer_.lossy()) losses.add(packer_.losses(), object);
    }
    /// Gives the bytes of what was read away, with the memory they are in.
    [[nodiscard]] Host::ByteBuffer takeBytes() noexcept { return packer_.takeBytes(); }

private:
    [[nodiscard]] Value::Type readValue(int code);
    [[nodiscard]] Value::Type readAngle();
    void readArray();
    void readDictionary();
    void skipComment() noexcept;
    [[nodiscard]] Value::Type readWord();
    [[nodiscard]] Value::Type packWord(std::string_view word, std::uint64_t offset);
    void packNumber(std::string_view word, std::uint64_t offset);
    void packReference(std::uint64_t offset);
    [[nodiscard]] Value::Type readName();
    void completeName();
    void readLiteral();
    void completeLiteral();
    void readEscape();
    void skipLineFeed() noexcept;
    void readHexadecimal(int code);
    void packString(std::string_view bytes);

    [[nodiscard]] Host::Cursor& cursor() const noexcept { return *cursor_; }
    /// Offset of the character just read.
    [[nodiscard]] std::uint64_t here() const noexcept { return cursor_->position() - 1; }

    Host::Cursor* cursor_ = nullptr;
    const Entries* entries_ = nullptr;
    Packer packer_;
    std::string text_;
    std::string canonical_;
    unsigned depth_ = 0;
    bool hexadecimal_ = false;
};

} // namespace Libraries::Files::PDF
