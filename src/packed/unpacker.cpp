#include "packed/unpacker.h"

#include "host/numbers.h"
#include "host/windows_1252.h"
#include "packed/short_number.h"
#include "spelling/digits.h"
#include "spelling/strings.h"
#include "values/array.h"
#include "values/dictionary.h"
#include "values/scalars.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF {

using Libraries::Strings::Encodings::ANSI::Windows_1252;
using Spelling::hexValue;
using Spelling::isDigit;

namespace {

/// Reads packed spellings, which are always well-formed.
class Unpacker {
public:
    Unpacker(std::string_view bytes, PackedStore::Shared& shared) noexcept
        : next_(bytes.data()),
          end_(next_ + bytes.size()),
          shared_(shared),
          elements_(shared.elements),
          entries_(shared.entries) {}
    Unpacker(const Unpacker&) = delete;
    Unpacker& operator=(const Unpacker&) = delete;
    ~Unpacker() {
        elements_.clear();
        entries_.clear();
    }

    [[nodiscard]] Ref<Value> value();

private:
    [[nodiscard]] std::string_view token() noexcept;
    [[nodiscard]] const Ref<NameObj>& name();
    [[nodiscard]] Ref<Value> keyword();
    [[nodiscard]] Ref<Value> numberOrReference();
    [[nodiscard]] Ref<Value> spelledNumber();
    [[nodiscard]] Ref<Value> text();
    [[nodiscard]] char32_t escaped() noexcept;
    [[nodiscard]] Ref<Value> bytes();
    [[nodiscard]] Ref<Value> array();
    [[nodiscard]] Ref<Value> dictionary();

    const char* next_;
    const char* end_;
    PackedStore::Shared& shared_;
    // Of all lists that are being read, the innermost behind the others.
    std::vector<Ref<Value>>& elements_;
    std::vector<DictionaryObj::Entry>& entries_;
};

Ref<Value> Unpacker::value() {
    switch (*next_) {
    case '/':
        return name();
    case '(':
        return text();
    case '[':
        return array();
    case '<':
        return next_[1] == '<' ? dictionary() : bytes();
    case '\t':
        return spelledNumber();
    default:
        return *next_ == '-' || isDigit(*next_) ? numberOrReference() : keyword();
    }
}

std::string_view Unpacker::token() noexcept {
    const char* const first = next_;
    next_ = std::find(next_, end_, ' ');
    return {first, static_cast<std::size_t>(next_ - first)};
}

const Ref<NameObj>& Unpacker::name() {
    ++next_;
    return shared_.names.get(token());
}

Ref<Value> Unpacker::keyword() {
    const std::string_view word = token();
    if (word == "null") {
        if (!shared_.null) shared_.null = makeOrThrow<NullObj>();
        return shared_.null;
    }
    const bool truth = word == "true";
    Ref<Value>& known = truth ? shared_.truth : shared_.falsehood;
    if (!known) known = makeOrThrow<BooleanObj>(truth);
    return known;
}

Ref<Value> makeNumber(std::string_view token, Ref<Host::String> spelling = nullptr) {
    if (ShortNumber number; !spelling && number.parse(token)) {
        return makeOrThrow<NumberObj>(number.integer, number.fraction);
    }
    const std::size_t point = token.find('.');
    const auto integer = Host::StrConv::num<std::int64_t>(token.substr(0, point));
    const auto fraction = Host::StrConv::num<std::uint64_t>(
        point == std::string_view::npos ? std::string_view() : token.substr(point + 1));
    if (spelling) return makeOrThrow<SpelledNumberObj>(*integer, *fraction, std::move(spelling));
    return makeOrThrow<NumberObj>(*integer, *fraction);
}

Ref<Value> Unpacker::numberOrReference() {
    const std::string_view first = token();
    // Of a reference: a space, digits, and " R".
    if (end_ - next_ < 4 || !isDigit(next_[1])) return makeNumber(first);
    const char* const second = next_ + 1;
    const char* digit = second + 1;
    while (digit != end_ && isDigit(*digit))
        ++digit;
    if (end_ - digit < 2 || digit[0] != ' ' || digit[1] != 'R') return makeNumber(first);
    next_ = digit + 2;
    ShortNumber id;
    ShortNumber generation;
    static_cast<void>(id.parse(first));
    static_cast<void>(generation.parse({second, static_cast<std::size_t>(digit - second)}));
    return makeOrThrow<ObjectRefObj>(static_cast<std::uint32_t>(id.integer),
                                     static_cast<std::uint16_t>(generation.integer));
}

Ref<Value> Unpacker::spelledNumber() {
    const char* const first = next_ + 1;
    const char* const end = std::find(first, end_, '\n');
    next_ = end + 1;
    const std::string_view spelling(first, static_cast<std::size_t>(end - first));
    return makeNumber(token(), orThrow(Host::String::create(spelling)));
}

Ref<Value> Unpacker::text() {
    const char* const first = ++next_;
    while (*next_ != ')' && *next_ != '\\')
        ++next_;
    if (*next_ == ')') {
        const auto* codes = reinterpret_cast<const std::uint8_t*>(first);
        const auto length = static_cast<std::size_t>(next_++ - first);
        return makeOrThrow<StringObj>(orThrow(Host::String::create(std::span(codes, length))));
    }
    Host::StringBuilder characters;
    characters.append(std::string_view(first, static_cast<std::size_t>(next_ - first)));
    while (*next_ != ')') {
        const char code = *next_++;
        characters.append(code == '\\' ? escaped() : static_cast<unsigned char>(code));
    }
    ++next_;
    return makeOrThrow<StringObj>(orThrow(characters.build()));
}

char32_t Unpacker::escaped() noexcept {
    if (isDigit(*next_)) {
        const unsigned code = Spelling::octalValue({next_, 3});
        next_ += 3;
        return Windows_1252::toUnicode(code);
    }
    const char letter = *next_++;
    return Spelling::codeOf(Spelling::escapedBy(letter).value_or(letter));
}

Ref<Value> Unpacker::bytes() {
    const char* digit = ++next_;
    next_ = std::find(next_, end_, '>') + 1;
    std::vector<unsigned char> bytes;
    bytes.reserve(static_cast<std::size_t>(next_ - digit) / 2);
    for (; *digit != '>'; digit += 2)
        bytes.push_back(static_cast<unsigned char>(hexValue(digit[0]) << 4 | hexValue(digit[1])));
    return makeOrThrow<StringObj>(orThrow(Host::TConstArray<unsigned char>::create(bytes)));
}

Ref<Value> Unpacker::array() {
    const std::size_t first = elements_.size();
    for (next_ += 2; *next_ != ']'; ++next_) // behind a bracket or an element stands a space
        elements_.push_back(value());
    ++next_;
    const auto begin = elements_.begin() + static_cast<std::ptrdiff_t>(first);
    ArrayObj::Elements elements(std::make_move_iterator(begin),
                                std::make_move_iterator(elements_.end()));
    elements_.resize(first);
    return makeOrThrow<ArrayObj>(std::move(elements));
}

Ref<Value> Unpacker::dictionary() {
    const std::size_t first = entries_.size();
    for (next_ += 3; *next_ != '>'; ++next_) {
        entries_.push_back({name()->text(), nullptr});
        ++next_;
        entries_.back().value = value();
    }
    next_ += 2;
    const auto begin = entries_.begin() + static_cast<std::ptrdiff_t>(first);
    DictionaryObj::Entries entries(std::make_move_iterator(begin),
                                   std::make_move_iterator(entries_.end()));
    entries_.resize(first);
    return makeOrThrow<DictionaryObj>(std::move(entries), DictionaryObj::inOrder);
}

} // namespace

Ref<Value> unpack(const PackedValue& packed, PackedStore::Shared& shared) {
    Ref<Value> value = Unpacker(packed.bytes, shared).value();
    if (packed.kind != Value::Type::Stream) return value;
    return makeOrThrow<StreamObj>(Ref<Dictionary>(as<Dictionary>(value)), packed.streamOffset);
}

} // namespace Libraries::Files::PDF
