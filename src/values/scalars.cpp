#include "values/scalars.h"

#include "host/guard.h"
#include "spelling/digits.h"
#include "values/failure.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string>
#include <vector>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

using Bytes = Host::TConstArray<unsigned char>;

bool isAscii(const Host::String& text) noexcept {
    if (!text.isNarrow()) return false;
    const std::string_view codes = text.narrow();
    return std::all_of(codes.begin(), codes.end(),
                       [](char code) { return static_cast<unsigned char>(code) <= 0x7F; });
}

Ref<Bytes> withByteOrderMark(const Host::String& text) {
    std::vector<unsigned char> bytes{0xFE, 0xFF};
    for (char16_t unit : text.utf16()) {
        bytes.push_back(static_cast<unsigned char>(unit >> 8));
        bytes.push_back(static_cast<unsigned char>(unit & 0xFF));
    }
    return Bytes::create(bytes);
}

Ref<Host::String> fromUtf16(std::span<const unsigned char> bytes, bool bigEndian) {
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t index = 0; index + 1 < bytes.size(); index += 2) {
        const unsigned high = bytes[bigEndian ? index : index + 1];
        const unsigned low = bytes[bigEndian ? index + 1 : index];
        units.push_back(static_cast<char16_t>(high << 8 | low));
    }
    return Host::String::create(std::u16string_view(units));
}

Ref<Host::String> hexadecimal(std::span<const unsigned char> bytes) {
    std::string text;
    text.reserve(bytes.size() * 2);
    for (unsigned char byte : bytes)
        Spelling::appendHex(text, byte);
    return Host::String::create(std::string_view(text));
}

Ref<Host::String> textOf(std::span<const unsigned char> bytes) {
    const auto mark = [bytes](unsigned char first, unsigned char second) {
        return bytes.size() % 2 == 0 && bytes.size() >= 2 && bytes[0] == first &&
               bytes[1] == second;
    };
    if (mark(0xFF, 0xFE)) return fromUtf16(bytes.subspan(2), false);
    if (mark(0xFE, 0xFF)) return fromUtf16(bytes.subspan(2), true);
    return hexadecimal(bytes);
}

} // namespace

Ref<Host::String> identityText(std::uint32_t id, std::uint16_t generation) noexcept {
    return Host::guarded([&] {
        Host::StringBuilder text;
        text.appendNumber(std::uint64_t{id});
        text.append(" (");
        text.appendNumber(std::uint64_t{generation});
        text.append(")");
        return text.build();
    });
}

Ref<Host::String> NullObj::asText() const noexcept {
    return "Null"_str;
}

bool NullObj::equal(Ref<Value> other) const noexcept {
    return ofKind<Null>(other) != nullptr;
}

Ref<Host::String> BooleanObj::asText() const noexcept {
    return value_ ? "true"_str : "false"_str;
}

bool BooleanObj::equal(Ref<Value> other) const noexcept {
    const Boolean* boolean = ofKind<Boolean>(other);
    return boolean != nullptr && boolean->value() == value_;
}

Ref<Host::String> Number::spelling() const noexcept {
    return nullptr;
}

Ref<Host::String> NumberObj::asText() const noexcept {
    return Host::guarded([&] {
        Host::StringBuilder text;
        text.appendNumber(integer_);
        text.append(".");
        text.appendNumber(fraction_);
        return text.build();
    });
}

bool NumberObj::equal(Ref<Value> other) const noexcept {
    const Number* number = ofKind<Number>(other);
    return number != nullptr && number->integer() == integer_ && number->fraction() == fraction_;
}

Ref<String> String::create(Ref<Host::String> text) noexcept {
    if (!text) return fail(NullArgument);
    if (isAscii(*text)) return Host::make<StringObj>(std::move(text));
    return Host::guarded([&]() -> Ref<String> {
        Ref<Bytes> bytes = withByteOrderMark(*text);
        if (!bytes) return nullptr;
        return Host::make<StringObj>(std::move(bytes));
    });
}

Ref<String> String::create(Ref<Bytes> bytes) noexcept {
    if (!bytes) return fail(NullArgument);
    return Host::make<StringObj>(std::move(bytes));
}

Ref<Host::String> String::value() const noexcept {
    return text();
}

Ref<Host::String> StringObj::asText() const noexcept {
    if (text_) return text_;
    if (!bytes_) return fail(StepFailed);
    return Host::guarded([&] { return textOf(bytes_->span()); });
}

bool StringObj::equal(Ref<Value> other) const noexcept {
    const String* string = ofKind<String>(other);
    if (string == nullptr) return false;
    const Ref<Host::String> text = string->text();
    if (text_) return text && *text_ == *text;

    const Ref<Bytes> bytes = string->bytes();
    return bytes_ && bytes && std::ranges::equal(bytes_->span(), bytes->span());
}

Ref<Name> Name::create(Ref<Host::String> name) noexcept {
    if (!name) return fail(NullArgument);
    if (name->empty()) return fail(InvalidArgument);
    return Host::make<NameObj>(std::move(name));
}

bool NameObj::equal(Ref<Value> other) const noexcept {
    const Name* name = ofKind<Name>(other);
    if (name == nullptr) return false;
    const Ref<Host::String> text = name->name();
    return text && name_ && *text == *name_;
}

Ref<Host::String> ObjectRefObj::asText() const noexcept {
    return identityText(id_, generation_);
}

bool ObjectRefObj::equal(Ref<Value> other) const noexcept {
    const ObjectRef* ref = ofKind<ObjectRef>(other);
    return ref != nullptr && ref->id() == id_ && ref->generation() == generation_;
}

} // namespace Libraries::Files::PDF
