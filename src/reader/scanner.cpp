#include "reader/scanner.h"

#include "host/numbers.h"
#include "reader/characters.h"
#include "values/failure.h"

#include <utility>

namespace Libraries::Files::PDF {

using Characters::isWhite;
using Host::Cursor;

Ref<Value> Scanner::readObjectValue() {
    int code = cursor_.next();
    while (isWhite(code))
        code = cursor_.next();
    if (code == Cursor::end) return nullptr;

    const std::uint64_t offset = cursor_.position() - 1;
    token_.clear();
    if (code != '<') return readStructure(code, offset);

    const int next = cursor_.next();
    if (next == Cursor::end) return nullptr;
    if (next == '<') return readDictionaryOrStream(offset);
    if (next == '>' || Characters::hexValue(next) >= 0) {
        Ref<Value> string = readHexString(next);
        if (!string) return refuse("Failed to read hex string in object at ", offset);
        return string;
    }
    cursor_.back();
    appendToToken('<', offset);
    return readObjectToken(offset);
}

Ref<Value> Scanner::readStructure(int code, std::uint64_t offset) {
    Ref<Value> value;
    if (code == '(') {
        value = readLiteralString();
        if (!value) return refuse("Failed to read string in object at ", offset);
    } else if (code == '/') {
        value = readName();
        if (!value) return refuse("Failed to read identifer in object at ", offset);
    } else if (code == '[') {
        value = readArray();
        if (!value) return refuse("Failed to read array in object at ", offset);
    } else {
        appendToToken(code, offset);
        value = readObjectToken(offset);
    }
    return value;
}

Ref<Value> Scanner::readObjectToken(std::uint64_t offset) {
    for (;;) {
        const int code = cursor_.next();
        if (code == Cursor::end) return nullptr;
        if (isWhite(code) || code == '(' || code == '/' || code == '[') break;
        if (code == '<') {
            const int next = cursor_.next();
            if (next == Cursor::end) return nullptr;
            if (next == '<' || next == '>' || Characters::hexValue(next) >= 0) break;
            cursor_.back();
        }
        token_.push_back(static_cast<char>(code));
    }
    return tokenAsValue(token_, offset);
}

Ref<Value> Scanner::tokenAsValue(std::string_view token, std::uint64_t offset) {
    if (token == "true" || token == "false") return boolean(token == "true");
    std::optional<Item> number = readNumber(token, offset, Place::Object);
    return number ? takeValue(*number) : nullptr;
}

Ref<Value> Scanner::readDictionaryOrStream(std::uint64_t offset) {
    Ref<Dictionary> dict = readDictionaryBody(offset);
    if (!dict) return refuse("Failed to read dictionary in object at ", offset);
    Ref<Value> value = readStreamStart(std::move(dict));
    if (!value) return refuse("Failed to read stream in object at ", offset);
    return value;
}

Ref<Value> Scanner::readStreamStart(Ref<Dictionary> dict) {
    constexpr std::string_view keyword = "stream";
    token_.clear();
    while (token_.size() < keyword.size()) {
        const int code = cursor_.next();
        if (code == Cursor::end) return nullptr;
        if (!isWhite(code)) token_.push_back(static_cast<char>(code));
    }
    if (token_ != keyword) return dict;
    if (!skipStreamLineEnding()) return nullptr;
    return makeOrThrow<StreamObj>(std::move(dict), cursor_.position());
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

Ref<Name> Scanner::readName() {
    const std::string_view ahead = cursor_.ahead();
    const std::size_t length = Characters::nameEnd.find(ahead);
    if (length != 0 && length < ahead.size()) {
        cursor_.skip(length);
        return names_.get(ahead.substr(0, length));
    }
    name_.clear();
    for (int code = cursor_.next(); code != Cursor::end; code = cursor_.next()) {
        if (Characters::nameEnd.has(code)) {
            cursor_.back();
            break;
        }
        name_.push_back(static_cast<char>(code));
    }
    if (name_.empty() || cursor_.failed()) return nullptr;
    return names_.get(name_);
}

namespace {

/// A whole number so short that it cannot overflow, without a sign: what most numbers are.
std::optional<std::int64_t> shortInteger(std::string_view token) noexcept {
    if (token.size() > 18) return std::nullopt;
    std::int64_t number = 0;
    for (char digit : token) {
        if (!Characters::isDigit(digit)) return std::nullopt;
        number = number * 10 + (digit - '0');
    }
    return number;
}

} // namespace

std::optional<Scanner::Item> Scanner::readNumber(std::string_view token, std::uint64_t offset,
                                                 Place place) {
    if (const auto number = shortInteger(token)) return Item{nullptr, *number, 0};
    const std::size_t point = token.find('.');
    const bool real = point != std::string_view::npos;
    const auto integer = Host::StrConv::num<std::int64_t>(token.substr(0, point));
    const auto fraction =
        real ? Host::StrConv::num<std::uint64_t>(token.substr(point + 1)) : std::uint64_t{0};
    if (integer && fraction) return Item{nullptr, *integer, *fraction};

    report(LogLevel::Error, real ? "Invalid real value " : "Invalid integer value ",
           Host::Codes{token},
           place == Place::Object ? " in object; offset: " : " in value list; offset: ", offset);
    return std::nullopt;
}

Ref<Value> Scanner::boolean(bool value) {
    Ref<Value>& shared = value ? true_ : false_;
    if (!shared) shared = makeOrThrow<BooleanObj>(value);
    return shared;
}

void Scanner::appendToToken(int code, std::uint64_t offset) {
    if (token_.empty()) tokenOffset_ = offset;
    token_.push_back(static_cast<char>(code));
}

} // namespace Libraries::Files::PDF
