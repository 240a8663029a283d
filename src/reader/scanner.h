#pragma once

#include "host/cursor.h"
#include "packed/packed_value.h"
#include "packed/packer.h"

#include <host/byte_buffer.h>
#include <pdf/values.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Libraries::Files::PDF {

/// Reads values in PDF syntax (ISO 32000-1, 7.3) and packs them. There is no tokenizer that runs
/// ahead: each routine decides from what it has seen and leaves the cursor just behind what it
/// consumed.
///
/// A routine that fails gives false, has logged why, sets no error code and leaves the cursor
/// anywhere. Offsets in messages are those of the first character of what is complained about.
/// Throws `std::bad_alloc`.
class Scanner {
public:
    explicit Scanner(Host::Cursor& cursor) noexcept : cursor_(cursor) {}

    /// The value of an indirect object, starting anywhere before its first character. A bare word
    /// is a truth value or a number here: neither null nor references are known at this level.
    [[nodiscard]] bool readObjectValue();

    /// A dictionary: skips forward to "<<", whatever stands before it.
    [[nodiscard]] bool readDictionary();

    /// The elements of an array up to its closing bracket, as an array: the opening one is not
    /// there.
    [[nodiscard]] bool readElements();

    /// Where a word stands that failed the reading; nothing where it was something else.
    [[nodiscard]] std::optional<std::uint64_t> unknownWord() const noexcept { return unknownWord_; }

    /// What was read: valid until the next reading.
    [[nodiscard]] PackedValue packed() const noexcept;
    /// Adds what was met in it that does not come back once it was written.
    void addLosses(Losses& losses, std::uint32_t object) const noexcept {
        if (packer_.lossy()) losses.add(packer_.losses(), object);
    }
    /// Gives the bytes of that away, with the memory they are in.
    [[nodiscard]] Host::ByteBuffer takeBytes() noexcept { return packer_.takeBytes(); }

private:
    enum class Mode { Array, Dictionary };
    enum class Place { Object, ValueList };

    void begin() noexcept;

    // Object level
    [[nodiscard]] bool readDictionaryOrStream(std::uint64_t offset);
    [[nodiscard]] bool readStreamStart();
    [[nodiscard]] bool skipStreamLineEnding() noexcept;
    [[nodiscard]] bool readStructureOrToken(int code, std::uint64_t offset);
    [[nodiscard]] bool readObjectToken(std::uint64_t offset);

    // Lists
    [[nodiscard]] bool readDictionaryBody(std::uint64_t offset);
    [[nodiscard]] bool endDictionary(Packer::List& list, std::uint64_t offset);
    [[nodiscard]] bool readArray();
    [[nodiscard]] bool readList(Mode mode);
    [[nodiscard]] bool readWord(int code, Mode mode);
    [[nodiscard]] bool readAngle();
    [[nodiscard]] bool readNested(int code, std::uint64_t offset);
    [[nodiscard]] bool readNestedDictionary(std::uint64_t offset);
    [[nodiscard]] bool skipComment() noexcept;
    [[nodiscard]] bool completeToken();
    [[nodiscard]] bool packToken(std::string_view token, std::uint64_t offset);
    [[nodiscard]] bool packWord(std::string_view token, std::uint64_t offset);

    // Scalars
    [[nodiscard]] bool readName();
    [[nodiscard]] bool readLiteralString();
    [[nodiscard]] bool readHexString(int firstDigit);
    [[nodiscard]] bool packNumber(std::string_view token, std::uint64_t offset, Place place);
    void appendToToken(int code, std::uint64_t offset);

    Host::Cursor& cursor_;
    Packer packer_;
    Value::Type kind_ = Value::Type::Invalid;
    std::uint64_t streamOffset_ = Stream::noOffset;
    std::string token_;
    std::uint64_t tokenOffset_ = 0;
    std::string name_;
    std::optional<std::uint64_t> unknownWord_;
    unsigned depth_ = 0;
};

/// What `Scanner::readObjectValue` reads, as a value; null where it fails.
[[nodiscard]] Ref<Value> scanValue(Host::Cursor& cursor);

} // namespace Libraries::Files::PDF
