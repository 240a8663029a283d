#include "packed/packer.h"

#include "host/windows_1252.h"
#include "spelling/digits.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <new>
#include <span>
#include <utility>

namespace Libraries::Files::PDF {

using Libraries::Strings::Encodings::ANSI::Windows_1252;

namespace {

constexpr std::size_t longest = std::numeric_limits<std::uint32_t>::max();

/// Dictionaries are mostly small, and mostly nearly in order.
constexpr std::size_t smallDictionary = 24;

} // namespace

void Packer::clear() noexcept {
    bytes_.clear();
    entries_.clear();
    list_ = nullptr;
    spelled_ = unwritable_ = false;
    backslash_ = unassigned_ = false;
    if (lossy_) losses_ = {};
    lossy_ = false;
}

void Packer::note(Loss kind, std::uint64_t count) noexcept {
    lossy_ = true;
    losses_.note(kind, count);
}

void Packer::noteSignature() noexcept {
    const bool isKey = list_ != nullptr && list_->dictionary_ && list_->count_ % 2 == 0;
    if (isKey) note(Loss::Signatures);
}

char* Packer::room(std::size_t size) {
    std::uint8_t* const room = size <= longest - bytes_.size() ? bytes_.room(size) : nullptr;
    if (room == nullptr) throw std::bad_alloc();
    return reinterpret_cast<char*>(room);
}

void Packer::put(std::string_view text) {
    std::memcpy(room(text.size()), text.data(), text.size());
    bytes_.extend(text.size());
}

template <class Number>
void Packer::putDigits(Number number) {
    constexpr std::size_t most = 20;
    char* const digits = room(most);
    bytes_.extend(
        static_cast<std::size_t>(std::to_chars(digits, digits + most, number).ptr - digits));
}

void Packer::enter() {
    const auto start = static_cast<std::uint32_t>(bytes_.size());
    list_->turn_ ^= 1U;
    list_->last().start = start;
    list_->last().whole = false;
    if (list_->dictionary_ && list_->count_ % 2 == 0) {
        const Entry entry{start, 0};
        if (!entries_.append(&entry, sizeof(entry))) throw std::bad_alloc();
    }
    ++list_->count_;
}

void Packer::next(std::string_view mark, std::string_view text) {
    char* const first = room(1 + mark.size() + text.size());
    char* next = first;
    if (list_ != nullptr) {
        enter();
        *next++ = ' ';
    }
    next = std::copy(mark.begin(), mark.end(), next);
    next = std::copy(text.begin(), text.end(), next);
    bytes_.extend(static_cast<std::size_t>(next - first));
}

void Packer::number(std::string_view token, std::int64_t integer, std::uint64_t fraction,
                    bool canonical) {
    if (canonical) {
        next({}, token);
    } else {
        spelled_ = true;
        if (fraction != 0 && token[token.find('.') + 1] == '0') note(Loss::Fractions);
        if (fraction != 0 && integer == 0 && token.front() == '-') note(Loss::Signs);
        next("\t", token);
        put('\n');
        putDigits(integer);
        if (fraction != 0) put('.');
        if (fraction != 0) putDigits(fraction);
    }
    if (list_ == nullptr) return;
    List::Last& last = list_->last();
    last.integer = integer;
    last.whole = fraction == 0;
    last.plain = canonical && integer >= 0;
}

void Packer::put(const Spelling::LiteralCode& code) {
    // To copy all of the array is faster than to look how much of it counts.
    std::memcpy(room(code.text.size()), code.text.data(), code.text.size());
    bytes_.extend(code.size);
}

void Packer::character(std::uint32_t code) {
    // What the code page does not assign becomes the code 0.
    if (Windows_1252::toUnicode(code) == 0) {
        unassigned_ = unassigned_ || code != 0;
        return put('\0');
    }
    backslash_ = backslash_ || code == '\\';
    if (code > 0xFF) {
        const auto byte = Windows_1252::fromUnicode(code);
        if (!byte) unwritable_ = true;
        if (byte) code = *byte;
    }
    put(Spelling::literalCodes[code]);
}

void Packer::endText() {
    put(')');
    if (backslash_) note(Loss::Backslashes);
    if (unassigned_) note(Loss::Characters);
    backslash_ = unassigned_ = false;
}

void Packer::byte(std::uint8_t byte) {
    const auto pair = Spelling::hexOf(byte);
    put({pair.data(), pair.size()});
}

void Packer::begin(List& list, bool dictionary, std::string_view bracket) {
    next(bracket, {});
    list.outer_ = std::exchange(list_, &list);
    list.dictionary_ = dictionary;
    list.firstEntry_ = entries_.size();
}

void Packer::endArray(List& list) {
    put(" ]");
    list_ = list.outer_;
}

Packer::Ending Packer::endDictionary(List& list) {
    if (list.count_ % 2 != 0) return Ending::Uneven;
    Entry* const first = entries(list);
    const std::size_t count = entryCount(list);
    for (std::size_t index = 0; index < count; ++index) {
        const std::size_t end = index + 1 < count ? first[index + 1].start : bytes_.size();
        first[index].length = static_cast<std::uint32_t>(end - first[index].start);
        if (bytes_.data()[first[index].start + 1] != '/') return Ending::KeyIsNoName;
    }
    order({first, count}, list.withNothing_);
    entries_.truncate(list.firstEntry_);
    list_ = list.outer_;
    put(" >>");
    return Ending::Done;
}

Packer::Entry* Packer::entries(const List& list) noexcept {
    return reinterpret_cast<Entry*>(entries_.data() + list.firstEntry_);
}

std::size_t Packer::entryCount(const List& list) const noexcept {
    return (entries_.size() - list.firstEntry_) / sizeof(Entry);
}

/// By the bytes of their keys. A key ends in a space, which comes before everything in a name.
int Packer::compareKeys(const Entry& left, const Entry& right) const noexcept {
    const std::uint8_t* a = bytes_.data() + left.start + 2;
    const std::uint8_t* b = bytes_.data() + right.start + 2;
    for (; *a == *b && *a != ' '; ++a)
        ++b;
    return int{*a} - int{*b};
}

void Packer::order(std::span<Entry> entries, bool withNothing) {
    const auto precedes = [this](const Entry& left, const Entry& right) {
        const int keys = compareKeys(left, right);
        return keys < 0 || (keys == 0 && left.start < right.start);
    };
    bool ascending = true;
    for (std::size_t index = 1; index < entries.size() && ascending; ++index)
        ascending = compareKeys(entries[index - 1], entries[index]) < 0;
    if (ascending && !withNothing) return;

    if (entries.size() <= smallDictionary) {
        for (std::size_t index = 1; index < entries.size(); ++index) {
            for (std::size_t place = index; place > 0; --place) {
                if (!precedes(entries[place], entries[place - 1])) break;
                std::swap(entries[place], entries[place - 1]);
            }
        }
    } else {
        std::ranges::sort(entries, precedes);
    }
    rebuild(entries, withNothing);
}

/// An entry with the empty key, or with null.
bool Packer::isNothing(const Entry& entry) const noexcept {
    const std::string_view text = bytes().substr(entry.start, entry.length);
    return text[2] == ' ' || text.ends_with(" null");
}

/// Puts the bytes of the entries in their new order; of each run of equal keys only the last one
/// stays, and only if it is one where that is asked.
void Packer::rebuild(std::span<const Entry> entries, bool withNothing) {
    const std::uint32_t begin = std::ranges::min(entries, {}, &Entry::start).start;
    ordered_.clear();
    std::uint64_t dropped = 0;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const bool shadowed =
            index + 1 < entries.size() && compareKeys(entries[index], entries[index + 1]) == 0;
        if (shadowed) {
            ++dropped;
            continue;
        }
        if (withNothing && isNothing(entries[index])) continue;
        if (!ordered_.append(bytes_.data() + entries[index].start, entries[index].length)) {
            throw std::bad_alloc();
        }
    }
    if (!ordered_.empty()) std::memcpy(bytes_.data() + begin, ordered_.data(), ordered_.size());
    bytes_.truncate(begin + ordered_.size());
    if (dropped != 0) note(Loss::EqualKeys, dropped);
}

void Packer::nothing() {
    next({}, "null");
    if (list_ != nullptr) list_->withNothing_ = true;
}

void Packer::emptyName() {
    const bool isKey = list_ != nullptr && list_->dictionary_ && list_->count_ % 2 == 0;
    if (!isKey) return nothing();
    next("/", {});
    list_->withNothing_ = true;
}

void Packer::reference(std::uint32_t id) {
    constexpr std::string_view rest = " 0 R";
    char text[16];
    char* const end = std::to_chars(text, text + sizeof(text) - rest.size(), id).ptr;
    std::ranges::copy(rest, end);
    next({}, {text, static_cast<std::size_t>(end - text) + rest.size()});
}

std::optional<Packer::Reference> Packer::takeReference() {
    List& list = *list_;
    const List::Last& id = list.beforeLast();
    const List::Last& generation = list.last();
    if (list.count_ < 2 || !id.whole || !generation.whole) return std::nullopt;
    const Reference taken{id.integer, generation.integer};
    bytes_.truncate(id.start);
    list.count_ -= 2;
    // One of the two was taken for a key.
    if (list.dictionary_) entries_.truncate(entries_.size() - sizeof(Entry));
    list.last().whole = false;
    list.beforeLast().whole = false;
    return taken;
}

bool Packer::reference() {
    List& list = *list_;
    const List::Last& id = list.beforeLast();
    const List::Last& generation = list.last();
    if (list.count_ < 2 || !id.whole || !generation.whole ||
        id.integer > std::numeric_limits<std::uint32_t>::max() ||
        generation.integer > std::numeric_limits<std::uint16_t>::max()) {
        return false;
    }
    if (!id.plain || !generation.plain) {
        // Negative numbers pass and wrap, as the bounds above are the only ones.
        bytes_.truncate(id.start + std::size_t{1});
        putDigits(static_cast<std::uint32_t>(id.integer));
        put(' ');
        putDigits(static_cast<std::uint16_t>(generation.integer));
    }
    put(" R");
    // The generation was the last value, and may have been taken for a key.
    --list.count_;
    if (list.dictionary_ && list.count_ % 2 == 0)
        entries_.truncate(entries_.size() - sizeof(Entry));
    list.turn_ ^= 1U; // the reference begins where the id did
    list.last().whole = false;
    list.beforeLast().whole = false;
    return true;
}

} // namespace Libraries::Files::PDF
