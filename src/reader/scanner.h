#pragma once

#include "host/cursor.h"
#include "reader/name_table.h"
#include "values/dictionary.h"

#include <host/string.h>
#include <pdf/values.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF {

/// Reads values in PDF syntax (ISO 32000-1, 7.3). There is no tokenizer that runs ahead: each
/// routine decides from what it has seen and leaves the cursor just behind what it consumed.
///
/// A routine that fails gives null or false, has logged why, sets no error code and leaves the
/// cursor anywhere. Offsets in messages are those of the first character of what is complained
/// about. Throws `std::bad_alloc`.
class Scanner {
public:
    explicit Scanner(Host::Cursor& cursor) noexcept : cursor_(cursor) {}

    /// The value of an indirect object, starting anywhere before its first character. A bare word
    /// is a truth value or a number here: neither null nor references are known at this level.
    [[nodiscard]] Ref<Value> readObjectValue();

    /// A dictionary: skips forward to "<<", whatever stands before it.
    [[nodiscard]] Ref<Dictionary> readDictionary();

private:
    enum class List { Array, Dictionary };
    enum class Place { Object, ValueList };

    /// An element of a list under construction. Numbers become objects only when the list is
    /// complete, since two of them may yet turn out to be a reference.
    struct Item {
        Ref<Value> value;
        std::int64_t integer = 0;
        std::uint64_t fraction = 0;

        [[nodiscard]] bool isNumber() const noexcept { return !value; }
    };

    // Object level
    [[nodiscard]] Ref<Value> readDictionaryOrStream(std::uint64_t offset);
    [[nodiscard]] Ref<Value> readStreamStart(Ref<Dictionary> dict);
    [[nodiscard]] bool skipStreamLineEnding() noexcept;
    [[nodiscard]] Ref<Value> readStructure(int code, std::uint64_t offset);
    [[nodiscard]] Ref<Value> readObjectToken(std::uint64_t offset);
    [[nodiscard]] Ref<Value> tokenAsValue(std::string_view token, std::uint64_t offset);

    // Containers
    [[nodiscard]] Ref<Dictionary> readDictionaryBody(std::uint64_t offset);
    [[nodiscard]] Ref<Array> readArray();
    [[nodiscard]] Ref<Dictionary> takeDictionary(std::size_t first, std::uint64_t offset);
    [[nodiscard]] Ref<Array> takeArray(std::size_t first);
    [[nodiscard]] Ref<Value> takeValue(Item& item);

    // Value lists
    [[nodiscard]] bool readValueList(List mode, std::size_t first);
    [[nodiscard]] bool readWord(int code, List mode, std::size_t first);
    [[nodiscard]] bool readAngle(std::size_t first);
    [[nodiscard]] bool readNested(int code, std::uint64_t offset);
    [[nodiscard]] bool pushDictionary(std::uint64_t offset);
    [[nodiscard]] bool skipComment() noexcept;
    [[nodiscard]] bool completeToken(std::size_t first);
    [[nodiscard]] bool pushToken(std::string_view token, std::uint64_t offset, std::size_t first);
    [[nodiscard]] bool pushReference(std::uint64_t end, std::size_t first);
    void push(Ref<Value> value) { items_.push_back({std::move(value), 0, 0}); }

    // Scalars
    [[nodiscard]] Ref<Name> readName();
    [[nodiscard]] Ref<String> readLiteralString();
    [[nodiscard]] Ref<String> readHexString(int firstDigit);
    [[nodiscard]] std::optional<Item> readNumber(std::string_view token, std::uint64_t offset,
                                                 Place place);
    [[nodiscard]] Ref<Value> boolean(bool value);
    void appendToToken(int code, std::uint64_t offset);

    Host::Cursor& cursor_;
    NameTable names_;
    Ref<Value> true_;
    Ref<Value> false_;
    Ref<Value> null_;
    std::vector<Item> items_;
    std::string token_;
    std::uint64_t tokenOffset_ = 0;
    std::string name_;
    Host::StringBuilder text_;
    std::vector<unsigned char> bytes_;
    unsigned depth_ = 0;
};

} // namespace Libraries::Files::PDF
