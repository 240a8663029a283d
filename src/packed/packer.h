#pragma once

#include "packed/losses.h"
#include "packed/packed_value.h"
#include "spelling/strings.h"

#include <host/byte_buffer.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace Libraries::Files::PDF {

/// Puts the packed spelling of one value after the other together, token by token, as a reader
/// comes across them. Keys may come in any order: a dictionary is put in order when it is complete.
///
/// Everything throws `std::bad_alloc`, a spelling of more than 4 GiB too.
class Packer {
public:
    /// A list that is being filled. It lives where its reader is, since lists nest as readers do.
    class List;

    /// How a dictionary ended.
    enum class Ending { Done, Uneven, KeyIsNoName };

    /// Begins a value.
    void clear() noexcept;
    /// What was put together since then: valid until the next call.
    [[nodiscard]] std::string_view bytes() const noexcept {
        return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()};
    }
    [[nodiscard]] bool spelled() const noexcept { return spelled_; }
    [[nodiscard]] bool unwritable() const noexcept { return unwritable_; }
    /// What was met that does not come back once it was written.
    [[nodiscard]] bool lossy() const noexcept { return lossy_; }
    [[nodiscard]] const Losses& losses() const noexcept { return losses_; }
    /// Gives the bytes away, with the memory they are in.
    [[nodiscard]] Host::ByteBuffer takeBytes() noexcept { return std::move(bytes_); }

    /// The two numbers of a reference.
    struct Reference {
        std::int64_t id;
        std::int64_t generation;
    };

    // Values: alone, or the next one of the innermost list.

    void keyword(std::string_view word) { next({}, word); }
    /// Null, which in a dictionary makes no entry (ISO 32000-1, 7.3.7).
    void nothing();
    /// The name of no characters, for which there is no spelling: it makes no entry either, and is
    /// null elsewhere.
    void emptyName();
    /// A reference to an object of generation 0.
    void reference(std::uint32_t id);
    /// Its characters, of which none may end a name.
    void name(std::string_view characters) {
        if (characters == "ByteRange") noteSignature();
        next("/", characters);
    }
    /// The number that `token` spells; `canonical` says that it is written just so.
    void number(std::string_view token, std::int64_t integer, std::uint64_t fraction,
                bool canonical);
    void beginText() { next("(", {}); }
    void beginHexadecimal() { next("<", {}); }
    void beginArray(List& list) { begin(list, false, "["); }
    void beginDictionary(List& list) { begin(list, true, "<<"); }

    // What stands in a text, a byte string, a list.

    /// Characters that stand in a text as they are.
    void plainText(std::string_view characters) { put(characters); }
    /// A character of a text, by the code that it was given by, 511 at most; those of the code page
    /// count as that.
    void character(std::uint32_t code);
    /// A backslash that the text has no character for.
    void lostBackslash() noexcept { backslash_ = true; }
    void endText();
    void byte(std::uint8_t byte);
    void endHexadecimal() { put('>'); }
    void endArray(List& list);
    [[nodiscard]] Ending endDictionary(List& list);
    /// Makes a reference of the last two values of the innermost list. False where they are no
    /// numbers that can be one.
    [[nodiscard]] bool reference();
    /// Takes the last two values of the innermost list back, which are those of a reference.
    /// Nothing where they are no whole numbers.
    [[nodiscard]] std::optional<Reference> takeReference();

private:
    friend class List;

    /// An entry of a dictionary: where it begins, with the space before its key, and how long it
    /// is.
    struct Entry {
        std::uint32_t start;
        std::uint32_t length;
    };

    void begin(List& list, bool dictionary, std::string_view bracket);
    /// The next value, or its beginning: `mark` and `text`.
    void next(std::string_view mark, std::string_view text);
    /// Notes that a value of the innermost list begins.
    void enter();
    void note(Loss kind, std::uint64_t count = 1) noexcept;
    /// Of a signature, where the next name is a key.
    void noteSignature() noexcept;
    [[nodiscard]] char* room(std::size_t size);
    [[nodiscard]] Entry* entries(const List& list) noexcept;
    [[nodiscard]] std::size_t entryCount(const List& list) const noexcept;
    void order(std::span<Entry> entries, bool withNothing);
    void rebuild(std::span<const Entry> entries, bool withNothing);
    [[nodiscard]] bool isNothing(const Entry& entry) const noexcept;
    [[nodiscard]] int compareKeys(const Entry& left, const Entry& right) const noexcept;

    void put(std::string_view text);
    void put(char character) { put(std::string_view(&character, 1)); }
    void put(const Spelling::LiteralCode& code);
    template <class Number>
    void putDigits(Number number);

    Host::ByteBuffer bytes_;
    Host::ByteBuffer
        entries_; // of all lists that are being filled, the innermost behind the others
    Host::ByteBuffer ordered_;
    List* list_ = nullptr;
    bool spelled_ = false;
    bool unwritable_ = false;
    bool lossy_ = false;
    bool backslash_ = false; // in the text that is being put together
    bool unassigned_ = false;
    Losses losses_;
};

class Packer::List {
public:
    List() noexcept = default;
    List(const List&) = delete;
    List& operator=(const List&) = delete;

    /// Values in it so far.
    [[nodiscard]] std::uint64_t count() const noexcept { return count_; }

private:
    friend class Packer;

    /// What may yet become part of a reference.
    struct Last {
        std::uint32_t start = 0;
        std::int64_t integer = 0;
        bool whole = false; ///< it is a number without a fraction
        bool plain = false; ///< its bytes are digits alone
    };

    [[nodiscard]] Last& last() noexcept { return latest_[turn_]; }
    [[nodiscard]] Last& beforeLast() noexcept { return latest_[turn_ ^ 1U]; }

    List* outer_ = nullptr;
    std::uint64_t count_ = 0;
    std::size_t firstEntry_ = 0; // in bytes
    Last latest_[2];             // by turns, so that none has to be moved
    unsigned turn_ = 0;
    bool dictionary_ = false;
    bool withNothing_ = false; // some entries of the dictionary may be none
};

} // namespace Libraries::Files::PDF
