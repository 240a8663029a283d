#include "reader/scanner.h"

#include "host/numbers.h"
#include "packed/short_number.h"
#include "packed/unpacker.h"
#include "reader/characters.h"
#include "spelling/digits.h"
#include "spelling/names.h"
#include "values/failure.h"

namespace Libraries::Files::PDF {

using Characters::isWhite;
using Host::Cursor;

void Scanner::begin() noexcept {
    packer_.clear();
    token_.clear();
    streamOffset_ = Stream::noOffset;
    unknownWord_.reset();
    depth_ = 0;
}

PackedValue Scanner::packed() const noexcept {
    return {packer_.bytes(), kind_, packer_.spelled(), packer_.unwritable(), streamOffset_};
}

bool Scanner::readObjectValue() {
    begin();
    int code = cursor_.next();
    while (isWhite(code))
        code = cursor_.next();
    if (code == Cursor::end) return false;

    const std::uint64_t offset = cursor_.position() - 1;
    if (code != '<') return readStructureOrToken(code, offset);

    const int next = cursor_.next();
    if (next == Cursor::end) return false;
    if (next == '<') return readDictionaryOrStream(offset);
    if (next == '>' || Spelling::hexValue(next) >= 0) {
        kind_ = Value::Type::String;
        return readHexString(next) || refuse("Failed to read hex string in object at ", offset);
    }
    cursor_.back();
    appendToToken('<', offset);
    return readObjectToken(offset);
}

bool Scanner::readStructureOrToken(int code, std::uint64_t offset) {
    switch (code) {
    case '(':
        kind_ = Value::Type::String;
        return readLiteralString() || refuse("Failed to read string in object at ", offset);
    case '/':
        kind_ = Value::Type::Name;
        return readName() || refuse("Failed to read identifer in object at ", offset);
    case '[':
        kind_ = Value::Type::Array;
        return readArray() || refuse("Failed to read array in object at ", offset);
    default:
        appendToToken(code, offset);
        return readObjectToken(offset);
    }
}

bool Scanner::readObjectToken(std::uint64_t offset) {
    for (;;) {
        const int code = cursor_.next();
        if (code == Cursor::end) return false;
        if (isWhite(code) || code == '(' || code == '/' || code == '[') break;
        if (code == '<') {
            const int next = cursor_.next();
            if (next == Cursor::end) return false;
            if (next == '<' || next == '>' || Spelling::hexValue(next) >= 0) break;
            cursor_.back();
        }
        token_.push_back(static_cast<char>(code));
    }
    if (token_ == "true" || token_ == "false") {
        kind_ = Value::Type::Boolean;
        packer_.keyword(token_);
        return true;
    }
    kind_ = Value::Type::Number;
    return packNumber(token_, offset, Place::Object);
}

bool Scanner::readDictionaryOrStream(std::uint64_t offset) {
    kind_ = Value::Type::Dictionary;
    if (!readDictionaryBody(offset)) {
        return refuse("Failed to read dictionary in object at ", offset);
    }
    return readStreamStart() || refuse("Failed to read stream in object at ", offset);
}

bool Scanner::readStreamStart() {
    constexpr std::string_view keyword = "stream";
    token_.clear();
    while (token_.size() < keyword.size()) {
        const int code = cursor_.next();
        if (code == Cursor::end) return false;
        if (!isWhite(code)) token_.push_back(static_cast<char>(code));
    }
    if (token_ != keyword) return true;
    if (!skipStreamLineEnding()) return false;
    kind_ = Value::Type::Stream;
    streamOffset_ = cursor_.position();
    return true;
}

bool Scanner::skipStreamLineEnding() noexcept {
    int code = cursor_.next();
    if (code == '\r') {
        code = cursor_.next();
        if (code != Cursor::end && code != '\n') cursor_.back();
    } else if (code != Cursor::end && code != '\n') {
        cursor_.back();
    }
    return code != Cursor::end;
}

bool Scanner::readName() {
    const std::string_view ahead = cursor_.ahead();
    const std::size_t length = Spelling::exactNameEnd.find(ahead);
    if (length != 0 && length < ahead.size()) {
        packer_.name(ahead.substr(0, length));
        cursor_.skip(length);
        return true;
    }
    name_.clear();
    for (int code = cursor_.next(); code != Cursor::end; code = cursor_.next()) {
        if (Spelling::exactNameEnd.has(code)) {
            cursor_.back();
            break;
        }
        name_.push_back(static_cast<char>(code));
    }
    if (name_.empty() || cursor_.failed()) return false;
    packer_.name(name_);
    return true;
}

bool Scanner::packNumber(std::string_view token, std::uint64_t offset, Place place) {
    if (ShortNumber number; number.parse(token)) {
        packer_.number(token, number.integer, number.fraction, number.canonical);
        return true;
    }
    const std::size_t point = token.find('.');
    const bool real = point != std::string_view::npos;
    const auto integer = Host::StrConv::num<std::int64_t>(token.substr(0, point));
    const auto fraction =
        real ? Host::StrConv::num<std::uint64_t>(token.substr(point + 1)) : std::uint64_t{0};
    if (integer && fraction) {
        packer_.number(token, *integer, *fraction, false);
        return true;
    }
    return refuse(
        real ? "Invalid real value " : "Invalid integer value ", Host::Codes{token},
        place == Place::Object ? " in object; offset: " : " in value list; offset: ", offset);
}

Ref<Value> scanValue(Host::Cursor& cursor) {
    Scanner scanner(cursor);
    PackedStore::Shared shared;
    return scanner.readObjectValue() ? unpack(scanner.packed(), shared) : nullptr;
}

void Scanner::appendToToken(int code, std::uint64_t offset) {
    if (token_.empty()) tokenOffset_ = offset;
    token_.push_back(static_cast<char>(code));
}

} // namespace Libraries::Files::PDF
